"""The stubs, by the tools of those who rely on them."""

import os
import pathlib
import subprocess
import sys

import kv_tr
import pytest

HERE = pathlib.Path(__file__).parent
PACKAGE = pathlib.Path(kv_tr.__file__).parent

USE = """
import kv_tr
import numpy as np
from numpy.typing import NDArray

points = kv_tr.read_points("points.dat", decimal_comma=True)
result: kv_tr.FitResult = kv_tr.fit(points, "affine")
result = kv_tr.fit(points, type=kv_tr.Type.POLY2, used=[True] * len(points))
result = kv_tr.fit([[0, 1]], np.zeros((1, 2)), kv_tr.TR_AFFIN, ids=[7]).exclude(7)
images: NDArray[np.float64] = result.transformation.inverse().transform((1, 2))
rms: float = result.statistics.rms
if result.outcome.trouble is kv_tr.FitTrouble.SINGULAR:
    raise kv_tr.FitError(result)
"""
MISUSE = """
import kv_tr

kv_tr.fit([[0, 1]], "affine")
kv_tr.read_points(5)
kv_tr.Transformation.load("town.trp").a = ()
kv_tr.clsTr().sInitDir.upper()
"""


def run(module, *arguments):
    pytest.importorskip("mypy", reason="needs python3-mypy")
    return subprocess.run(
        [sys.executable, "-m", module, *map(str, arguments)],
        capture_output=True,
        text=True,
        cwd=PACKAGE.parent,
        env={**os.environ, "MYPYPATH": str(PACKAGE.parent)},
    )


def check(*arguments):
    return run("mypy", "--config-file", HERE / "mypy.ini", "--cache-dir", os.devnull, *arguments)


def test_the_stub_is_strictly_typed_and_so_is_what_uses_it(tmp_path):
    use, misuse = tmp_path / "use.py", tmp_path / "misuse.py"
    use.write_text(USE)
    ended = check(PACKAGE / "__init__.pyi", use)
    assert ended.returncode == 0, ended.stdout + ended.stderr
    misuse.write_text(MISUSE)
    found = {line.split(":")[1] for line in check(misuse).stdout.splitlines() if ": error:" in line}
    assert found == {"4", "5", "6", "7"}


def test_the_stub_agrees_with_the_package():
    options = ("--mypy-config-file", HERE / "mypy.ini")
    ended = run("mypy.stubtest", "kv_tr", *options, "--allowlist", HERE / "stubtest_allowlist.txt")
    assert ended.returncode == 0, ended.stdout + ended.stderr
