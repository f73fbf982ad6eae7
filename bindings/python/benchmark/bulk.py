"""A million points through bTrXYArr, from Python and from C++: times and their ratio.

    cmake --preset release -DKV_TR_PYTHON=ON && cmake --build --preset release --target bulk
    PYTHONPATH=build/release/python /usr/bin/python3 bindings/python/benchmark/bulk.py \\
        build/release/bindings/python/bulk
"""

import subprocess
import sys
import time

import kv_tr
import numpy as np

RUNS = 30


def from_python(kind):
    engine = kv_tr.clsTrCalc()
    engine.eTrType = kind
    first = np.arange(1_000_000.0)
    second = np.arange(1_000_000.0)
    best = 1e9
    for _ in range(RUNS):
        start = time.perf_counter()
        images = engine.bTrXYArr(first, second)
        best = min(best, time.perf_counter() - start)
        del images
    return best * 1000


def main():
    print("milliseconds, best of many    C++  Python  ratio")
    for kind in (kv_tr.TR_HELMERT, kv_tr.TR_BILINEAR, kv_tr.TR_POLI_3, kv_tr.TR_POLI_5):
        command = [sys.argv[1], str(int(kind)), str(RUNS)]
        compiled = min(float(subprocess.check_output(command)) for _ in range(3))
        python = min(from_python(kind) for _ in range(3))
        print(f"{kind.name:<27} {compiled:6.2f}  {python:6.2f}  {python / compiled:5.2f}")


if __name__ == "__main__":
    main()
