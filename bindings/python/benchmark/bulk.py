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


def from_python(kind, out):
    engine = kv_tr.clsTrCalc()
    engine.eTrType = kind
    first = np.arange(1_000_000.0)
    second = np.arange(1_000_000.0)
    best = 1e9
    for _ in range(RUNS):
        start = time.perf_counter()
        images = engine.bTrXYArr(first, second, out)
        best = min(best, time.perf_counter() - start)
        del images
    return best * 1000


def main():
    print("milliseconds, best of many       C++  Python  ratio")
    for kind in (kv_tr.TR_HELMERT, kv_tr.TR_BILINEAR, kv_tr.TR_POLI_3, kv_tr.TR_POLI_5):
        command = [sys.argv[1], str(int(kind)), str(RUNS)]
        runs = [subprocess.check_output(command).split() for _ in range(3)]
        given = (np.empty(1_000_000), np.empty(1_000_000))
        for place, (name, out) in enumerate((("new arrays", None), ("the same", given))):
            compiled = min(float(run[place]) for run in runs)
            python = min(from_python(kind, out) for _ in range(3))
            times = f"{compiled:7.2f} {python:7.2f} {python / compiled:6.2f}"
            print(f"{kind.name:<15} {name:<12} {times}")


if __name__ == "__main__":
    main()
