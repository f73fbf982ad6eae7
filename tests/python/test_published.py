"""The published classes, records and functions from Python, and what refuses bad input."""

import decimal
import fractions
import math
import pickle
import re
import sys
import threading

import kv_tr
import numpy as np
import pytest
from conftest import LAYOUTS


def test_the_usual_calling_order(engine, tmp_path):
    with kv_tr.clsTr() as tr:
        tr.oCalcTr.AddXY4Tr(engine.GetAllXYs(), False)
        tr.oCalcTr.eTrType = kv_tr.TR_HELMERT
        tr.oCalcTr.DoCalcTr()
        tr.udtTrPrm = tr.oCalcTr.udtTrPrm
        ok, inverse = tr.bGetInversePrm()
        assert ok and (inverse.dA0, inverse.dB0) == pytest.approx((-100, 50))
        assert tr.bGetHelmertPrm()[1:] == pytest.approx((100, 1, 0, -50, 0, 1), abs=1e-9)
        tr.oCalcTr.SaveLog(tmp_path / "log.txt")
        assert tr.bSaveAffinTrPrm(tmp_path / "town.trp")
        kept = tr.oCalcTr
    assert kept.lFullCnt == 5  # valid, though torn down
    loaded = kv_tr.clsTr()
    assert loaded.bLoadAffinTrPrmFromFile(str(tmp_path / "town.trp"))
    assert loaded.gName == str(tmp_path) and loaded.sTrTypeName == "HELMERT transformation"
    assert "HELMERT transformation" in (tmp_path / "log.txt").read_text(encoding="cp1250")


def test_outputs_come_back_as_values(engine, tmp_path):
    assert engine.GetRect4Dest() == (100, -50, 1100, 750)
    engine.ExcludeByIx(1, True)
    sets = [[(pair.sId, pair.bNotUsed) for pair in engine.GetXYs(used)] for used in (True, False)]
    assert sets == [[(name, False) for name in "ACDE"], [("B", True)]]
    other, tr, file = kv_tr.clsTrCalc(), kv_tr.clsTr(), tmp_path / "points.dat"
    assert engine.bSaveXYs4Tr(file) and other.bLoadXYsFromFile(file, False)
    assert other.sListXYs() == engine.sListXYs()
    assert other.Solution == "documented" and other.Truth.undetermined and other.Outcome.succeeded
    other.Solution = "accurate"
    other.DoCalcTr()
    assert (other.Solution, other.Truth.rank, other.Outcome.trouble) == ("accurate", 4, "none")
    with pytest.raises(ValueError, match="Solution must be"):
        other.Solution = "best"
    assert tr.TrAngle(-np.pi / 2, 0, 0) == pytest.approx(1.5 * np.pi)
    tr.udtTrPrmByDAT2M1 = kv_tr.TR_STG_HER
    linear, *coefficients = tr.bGetAffinPrm()
    assert not linear and np.isnan(coefficients).all() and tr.bGetInversePrm()[0] is False
    tr.udtTrAffinPrm = kv_tr.AFFIN_PRM(kv_tr.TR_AFFIN, dA1=2, dB2=3, dB0=5, dB1=7)
    assert (tr.udtTrPrm.dB0, tr.udtTrPrm.dB1) == (5, 7)


def test_arrays_have_the_bits_of_single_points_whatever_their_layout(engine):
    tr, x = kv_tr.clsTr(), np.linspace(-1000.0, 2000.0, 20_001)  # in parts, the last one short
    tr.udtTrPrmByDAT2M1 = kv_tr.TR_EOV_STG_10e
    engine.udtTrPrm = record = tr.udtTrPrm
    ok, first, second = engine.bTrXYArr(x, x[::-1])
    assert ok is True and first.dtype == second.dtype == np.float64
    points = [engine.TrXY(y, x) for y, x in zip(x, x[::-1])]
    assert (np.column_stack([first, second]) == points).all()
    assert (kv_tr.EvalTrPrm(record, x, x[::-1])[1] == second).all()
    assert kv_tr.EvalTrPrm(record, x[7], x[-8]) == points[7]
    images = engine.bTrXYArr(range(8), range(8))[1]
    for layout in LAYOUTS:
        given = layout(np.arange(8.0))
        assert (engine.bTrXYArr(given, given)[1] == images).all() and [*given] == [*range(8)]
    assert engine.bTrXYArr(x[:0], [])[1].shape == (0,)


def test_images_go_where_the_caller_wants_them(engine):
    x, a, b, frozen = np.arange(10.0), np.empty(10), np.empty(10), np.zeros(10)
    frozen.flags.writeable = False
    ok, first, second = engine.bTrXYArr(x, x, out=(a, b))
    assert ok and first is a and second is b
    assert [list(a), list(b)] == [list(images) for images in engine.bTrXYArr(x, x)[1:]]
    unaligned = np.ndarray(10, "f8", bytearray(81), 1)
    for wrong in [x, a, frozen, b[:9], np.empty(20)[::2], x.astype("f4"), unaligned, list(b)]:
        with pytest.raises(ValueError, match=r"float64 with shape \(10,\)"):
            engine.bTrXYArr(x, x, out=(a, wrong))
    with pytest.raises(TypeError, match="two arrays"):
        kv_tr.EvalTrPrm(engine.udtTrPrm, x, x, out=a)


WORKS = [
    lambda engine, xy: engine.bTrXYArr(xy.ravel(), xy.ravel()),
    lambda engine, xy: kv_tr.Transformation("poly1", [], []).transform(xy),
    lambda engine, xy: kv_tr.fit(xy[:100], xy[:100], "poly1"),  # numpy copies few in one go
]


@pytest.mark.parametrize("work", WORKS)
def test_other_threads_run_during_bulk_work(engine, work):
    xy = np.random.default_rng(1).random((100_000, 2))
    go, ran, interval = threading.Event(), threading.Event(), sys.getswitchinterval()
    sys.setswitchinterval(1000)  # nobody is made to give way
    try:
        threading.Thread(target=lambda: go.wait() and ran.set()).start()
        go.set()
        assert not ran.is_set()
        assert any((work(engine, xy), ran.is_set())[1] for _ in range(3000))
    finally:
        sys.setswitchinterval(interval)


def test_functions_of_general_use(tmp_path):
    assert kv_tr.GetFileExt("a.tar.gz") + kv_tr.StripFileExt("a.tar.gz") == "gza.tar"
    design = np.array([[1.0, 2.0], [3.0, 4.0], [5.0, 7.0]])
    assert (kv_tr.MatrixTimesTranspose(design) == design.T @ design).all()
    assert (kv_tr.fMAtrix_Mul_Vector(design, [1, -1]) == [-1, -1, -2]).all()
    file = tmp_path / "town.TRP"
    for text in ("A 1,5 2,5 3,5 4,5", "A 1.5 2.5 3.5 4.5", "0,5\n" * 6):
        file.write_text(text)
        assert kv_tr.PointsMayHaveDecimalCommas(file) is text.startswith("A 1,")
        assert kv_tr.ParametersHaveDecimalCommas(str(file)) is text.startswith("0,")
    infos = {info.type: info for info in kv_tr.NationalInfos()}
    first, second = infos[kv_tr.TR_STG_HER], infos[kv_tr.TR_BOV_HKR]
    assert (first.source, first.destination, first.area) == ("STG", "HÉR", "Hungary")
    assert (second.name, second.area) == ("BOV_HKR", "Budapest") and 0 < first.accuracy < 10


def test_any_real_number_is_a_coordinate(engine):
    for kind in (int, np.float32, np.int8, np.longdouble, decimal.Decimal, fractions.Fraction):
        engine.gdErrLimit = two = kind(2)
        assert engine.gdErrLimit == kv_tr.typeXYs4Tr("A", two).dXsour == 2.0
        assert kv_tr.EvalTrPrm(kv_tr.TR_PRM(dA1=3), two, 1.0)[0] == 6


@pytest.mark.parametrize("record", [kv_tr.TR_PRM, kv_tr.AFFIN_PRM, kv_tr.typeXYs4Tr])
def test_every_field_of_a_record_is_its_own(record):
    special = {"eType": kv_tr.TR_POLI_3, "sId": "é", "bNotUsed": True}
    fields = [name for name in vars(record) if not name.startswith("_")]
    values = {name: special.get(name, float(k + 1)) for k, name in enumerate(fields)}
    made = record(**values)
    assert {name: getattr(made, name) for name in fields} == values
    assert all(record(**{name: value}) != record() for name, value in values.items())
    assert made == eval(repr(made), vars(kv_tr)) == record(*values.values())
    for protocol in range(pickle.HIGHEST_PROTOCOL + 1):
        assert pickle.loads(pickle.dumps(made, protocol)) == made


def bare(kind):
    return kind.__new__(kind)


def test_objects_that_were_not_made_are_refused():
    kinds = [kind for kind in vars(kv_tr).values() if type(kind).__name__ == "pybind11_type"]
    members = [(k, m) for k in kinds for m, p in vars(k).items() if getattr(p, "fget", None)]
    assert len(kinds) == 12 and len(members) > 40
    uses = [lambda k=kind, m=member: getattr(bare(k), m) for kind, member in members]
    uses.append(lambda: kv_tr.clsTrCalc().AddXY4Tr([bare(kv_tr.typeXYs4Tr)], False))
    uses += [lambda: bare(kv_tr.TypeEvent).Subscribe(print), bare(kv_tr.Connection).Disconnect]
    for use in uses:
        with pytest.raises(TypeError, match="is empty: its __init__ was not called"):
            use()


NAN_LATE = np.append(np.zeros(20_000), math.nan)
GRID = np.array([(y, x) for y in range(6) for x in range(5)], float)
POINTS = kv_tr.ControlPoints(tuple(range(30)), GRID, GRID)
NATIONAL = kv_tr.Transformation.national("STG_HER")


def install(**ports):
    kv_tr.install_platform(**{"settings": {}} | ports)


def fit(*types, source=GRID, target=GRID, **options):
    return kv_tr.fit(source, target, *types, **options)


# What is called with an engine, the error, and a regular expression for its text.
CASES = [
    (lambda e: e.bTrXYArr([1, 2, 3], [1, 2]), ValueError, r"dX.*\(3,\).*dY.*\(2,\)"),
    (lambda e: e.bTrXYArr(NAN_LATE, np.zeros(20_001)), ValueError, r"dX\[20000\] is nan"),
    (lambda e: e.bTrXYArr([0, 0], [0, -math.inf]), ValueError, r"dY\[1\] is -inf"),
    (lambda e: e.bTrXYArr(["1"], [2]), TypeError, "dX.*numbers.*<U1"),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, 1, math.nan), ValueError, "second is nan"),
    (lambda e: e.TrXY(decimal.Decimal("nan"), 1), ValueError, "dXsour is nan"),
    (lambda e: kv_tr.clsTr().TrXY("1", 0), TypeError, "TrXY.*dX: float.*'1'"),
    (lambda e: e.AddXY4Tr([*e.GetXYs(1), ("P", 1, 2, math.nan, 4)], 1), ValueError, "5.*'P'.*dXd"),
    (lambda e: kv_tr.TR_PRM(dA22=1), TypeError, "dA22"),
    (lambda e: setattr(e, "eTrType", True), TypeError, "eTrType"),
    (lambda e: setattr(e, "etrtype", 0), AttributeError, "etrtype"),
    (lambda e: e.ExcludeByIx(2**31, True), OverflowError, "2147483648 is out of range"),
    (lambda e: install(settings=print), TypeError, "settings"),
    (lambda e: [install(settings={"KV_Tr/Settings/Path": 7}), kv_tr.clsTr()], TypeError, "str"),
    (lambda e: install(dialogs={"Adjust": print}), ValueError, "'adjust'"),
    (lambda e: [install(messages=str), kv_tr.MatrixInverse([[0]])], ValueError, "not None .*'ok'"),
    (lambda e: [install(choose_to_open=id), e.bChooseFile4LoadXYs4Tr()], TypeError, "choose.* int"),
    (lambda e: [install(texts=divmod), kv_tr.GetMlString(97)], TypeError, "texts.* not tuple"),
    (lambda e: [e.TearDown(), e.DoCalcTr()], kv_tr.RuntimeError, "released"),
    (lambda e: [t := kv_tr.clsTr(), t.__exit__(), t.oCalcTr], kv_tr.RuntimeError, "torn down"),
    (lambda e: fit("affine", target=GRID[1:]), ValueError, "30 points, target has 29"),
    (lambda e: fit("affine", source=GRID.T), ValueError, r"\(n, 2\), not \(2, 30\)"),
    (lambda e: fit("affine", source=[[0, math.inf]]), ValueError, r"source\[0, 1\] is inf"),
    (lambda e: fit("poly6"), ValueError, "'poly6' is not .*helmert, affine"),
    (lambda e: fit(kv_tr.Type.STG_HER), ValueError, "STG_HER' cannot be fitted"),
    (lambda e: fit(), TypeError, "source, target and type"),
    (lambda e: kv_tr.fit(POINTS, "affine", ids=range(30)), TypeError, "type and used only"),
    (lambda e: fit("affine", ids="A" * 30), TypeError, "not one text"),
    (lambda e: fit("affine", ids=range(29)), ValueError, "30 points, ids has 29"),
    (lambda e: fit("affine", used=[0, 2]), ValueError, r"\(30,\), not \(2,\)"),
    (lambda e: fit("affine", used=range(30)), TypeError, "hold bools, not int"),
    (lambda e: fit("affine").exclude(3, 77), KeyError, "identifier 77"),
    (lambda e: kv_tr.Transformation("affine", range(23), []), ValueError, r"a .* 22 .*\(23,\)"),
    (lambda e: kv_tr.Transformation("affine", [], [math.nan]), ValueError, "finite"),
    (lambda e: kv_tr.Transformation.national("EOV"), ValueError, "'EOV' is no national"),
    (lambda e: NATIONAL.transform([1, math.nan]), ValueError, r"xy\[1\]"),
]


@pytest.mark.parametrize("call, kind, text", CASES)
def test_bad_input_is_refused_with_the_true_reason(engine, call, kind, text):
    with pytest.raises(kind) as raised:
        call(engine)
    assert re.search(text, str(raised.value), re.DOTALL), raised.value
    assert getattr(raised.value, "number", 9) in (9, 91) and engine.lFullCnt == 5
