"""The stubs by the tools that rely on them, the examples, and the end of the interpreter."""

import ast
import csv
import inspect
import os
import pathlib
import re

import kv_tr
import pytest
from conftest import run

HERE, PACKAGE = pathlib.Path(__file__).parent, pathlib.Path(kv_tr.__file__).parent
EXAMPLES = HERE.parents[1] / "examples" / "python"
POINTS, TABLE = EXAMPLES / "control_points.csv", EXAMPLES / "boundary_points.csv"

USE = """
import kv_tr
import numpy as np
from numpy.typing import NDArray

result: kv_tr.FitResult = kv_tr.fit(kv_tr.read_points("a.dat"), kv_tr.Type.POLY2, used=[True])
result = kv_tr.fit([[0, 1]], np.zeros((1, 2)), kv_tr.TR_AFFIN, ids=[7]).exclude(7)
images: NDArray[np.float64] = result.transformation.inverse().transform((1, 2))
rms: float = result.statistics.rms
result = kv_tr.fit([[0, 1]], [[0, 1]], "poly1", solution="accurate", sigma=[0.1])
sigmas: NDArray[np.float64] = result.adjustment.parameters.sigmas
texts: list[str] = [finding.text for finding in result.warnings if result.check.undetermined]
"""
MISUSE = """
import kv_tr
kv_tr.fit([[0, 1]], "affine")
kv_tr.Transformation.load("town.trp").a = ()
kv_tr.clsTr().sInitDir.upper()
kv_tr.fit([[0, 1]], [[0, 1]], "poly1", solution="best").check.level = "note"
"""


def test_the_stub_is_strictly_typed_agrees_with_the_package_and_finds_misuse(tmp_path):
    pytest.importorskip("mypy", reason="needs python3-mypy")
    use, misuse, ini = tmp_path / "use.py", tmp_path / "misuse.py", HERE / "mypy.ini"
    use.write_text(USE)
    misuse.write_text(MISUSE)
    place = {"cwd": PACKAGE.parent, "env": os.environ | {"MYPYPATH": str(PACKAGE.parent)}}
    check = ("-m", "mypy", "--config-file", ini, "--cache-dir", os.devnull)
    run(*check, PACKAGE / "__init__.pyi", use, **place)
    found = re.findall(r":(\d+): error:", run(*check, misuse, code=1, **place))
    assert set(found) == {"3", "4", "5", "6"}
    known = ("--mypy-config-file", ini, "--allowlist", HERE / "stubtest_allowlist.txt")
    run("-m", "mypy.stubtest", "kv_tr", *known, **place)


def test_functions_in_cpp_have_the_parameters_of_the_stub():
    for outer in ast.parse((PACKAGE / "__init__.pyi").read_text()).body:
        for node in ast.walk(outer):
            if isinstance(node, ast.FunctionDef) and node.name[0] != "_":
                actual = getattr(kv_tr if node is outer else getattr(kv_tr, outer.name), node.name)
                names = [a.arg for a in node.args.args + node.args.kwonlyargs if a.arg != "self"]
                known = inspect.isfunction(actual) or all(f"{n}: " in actual.__doc__ for n in names)
                assert known and actual.__doc__, node.name
    assert "RuntimeError" not in kv_tr.__all__  # Python's own stays under a star import


def test_a_fit_leaves_out_the_bad_point_and_its_parameters_transform_a_table(tmp_path):
    new = tmp_path / "new.csv"
    for name in (tmp_path / "town.trp", tmp_path / "saved.PRM"):
        output = run(EXAMPLES / "fit_from_csv.py", POINTS, "--limit", 0.05, "--save", name)
        assert [line.split()[0] for line in output.splitlines() if "left out" in line] == ["66.301"]
        run(EXAMPLES / "transform_table.py", TABLE, new, "--params", name)
    tr = kv_tr.clsTr()
    tr.bLoadAffinTrPrmFromFile(tmp_path / "town.trp")
    before, after = (list(csv.DictReader(open(name))) for name in (TABLE, new))
    for old, new in zip(before, after, strict=True):
        image = tr.TrXY(float(old["y"]), float(old["x"]))
        assert (float(new["y"]), float(new["x"])) == pytest.approx(image, abs=6e-4)
        assert (new["id"], new["remark"]) == (old["id"], old["remark"])


FAILURES = [
    ("fit_from_csv.py A.csv --save t.trp", "id,y1,x1,y2,x2\n" + "A,0,5,0,5,1,5,1,5\n" * 2, "point"),
    ("fit_from_csv.py A.csv --save t.trp", "id,y1,x1,y2,x2\nA,0,0,1,1\nB,1,,2,2\n", "line 3"),
    ("fit_from_csv.py A.csv --save t.trp", "id,y1,x1,y2,x2\n" + "A,5,5,1,1\n" * 3, "DET=0"),
    (f"transform_table.py {TABLE} new.csv --params A.csv", "1 2 3 4 5 6", "A.csv"),
    ("transform_table.py A.csv new.csv --national STG_EOV_10e", "id,y,x\nA,1,5,2,5\n", "line 2"),
]


@pytest.mark.parametrize("command, text, words", FAILURES)
def test_an_example_that_fails_says_why_and_writes_nothing(tmp_path, command, text, words):
    (tmp_path / "A.csv").write_text(text)
    script, *arguments = command.split()
    error = run(EXAMPLES / script, *arguments, code=1, cwd=tmp_path)
    assert words in error and "Traceback" not in error
    assert [path.name for path in tmp_path.iterdir()] == ["A.csv"]


def test_residuals_are_drawn(tmp_path):
    pytest.importorskip("matplotlib", reason="the picture needs python3-matplotlib")
    run(EXAMPLES / "plot_residuals.py", POINTS, tmp_path / "residuals.svg", "--limit", 0.05)
    drawn = (tmp_path / "residuals.svg").read_text()
    assert all(label in drawn for label in ("66.301", "92 mm", "rms 22.4 mm"))


ENDS = """if True:
    import collections, kv_tr, numpy as np, sys, threading
    sys.setswitchinterval(1e-5)
    class Store(collections.UserDict):
        def __setitem__(self, key, value):
            super().__setitem__(key, value)
            print(key, value)
    kv_tr.install_platform(messages=lambda message: [*range(100)].clear(), settings=Store(),
                           texts=lambda *_: None, dialogs={"adjust": print})
    tr, x = kv_tr.clsTr(), np.zeros(200_000)
    begun, done = threading.Barrier(5), threading.Semaphore(0)
    tr.oCalcTr.TypeChanched.Subscribe(lambda kind: tr)
    pairs = [(str(i), i, i % 7, i, i % 7) for i in range(20)]
    def work():
        engine = kv_tr.clsTrCalc()
        begun.wait()
        while True:
            kv_tr.MatrixInverse([[0.0]]), engine.AddXY4Tr(iter(pairs), False)
            kv_tr.EvalTrPrm(kv_tr.TR_PRM(), x, x)
            done.release()
    for _ in range(4):
        threading.Thread(target=work, daemon=True).start()
    begun.wait()
    tr.sInitDir = sys.argv[1]
    for _ in range(40):
        done.acquire()
"""


def test_the_interpreter_ends_while_threads_work_and_everything_is_alive(tmp_path):
    for _ in range(3):
        assert run("-c", ENDS, tmp_path) == f"KV_Tr/Settings/Path {tmp_path}\n"
