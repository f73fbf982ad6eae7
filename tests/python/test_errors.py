"""Bad input raises what says what and which, and leaves a component that works."""

import builtins
import decimal
import fractions
import math
import re

import kv_tr
import numpy as np
import pytest


def released_pairs(engine):
    engine.TearDown()
    engine.DoCalcTr()


def released_engine(_):
    tr = kv_tr.clsTr()
    tr.TearDown()
    return tr.oCalcTr


def no_inverse(_):
    tr = kv_tr.clsTr()
    tr.udtTrPrm = kv_tr.TR_PRM()
    tr.bGetInversePrm()


class Broken:
    def __float__(self):
        raise KeyError("mine")


HUGE = 10**400
SURROGATE = "a\ud800"
NAN_LATE = np.append(np.zeros(4000), math.nan)
GRID = np.array([(y, x) for y in range(6) for x in range(5)], float)
NATIONAL = kv_tr.Transformation.national("STG_HER")


def fit(*types, source=GRID, target=GRID, **options):
    return kv_tr.fit(source, target, *types, **options)


def install(**ports):
    kv_tr.install_platform(**ports)


# What is called with an engine, the error or its number, and a regular expression for its text.
CASES = [
    (lambda e: e.bTrXYArr([1, 2, 3], [1, 2]), ValueError, r"dX.*\(3,\).*dY.*\(2,\)"),
    (lambda e: e.bTrXYArr(np.zeros((2, 3)), [1] * 6), ValueError, r"\(2, 3\).*\(6,\)"),
    (lambda e: e.bTrXYArr(1.0, 2.0), ValueError, r"dX has shape \(\)"),
    (lambda e: e.bTrXYArr(NAN_LATE, np.zeros(4001)), ValueError, r"dX\[4000\] is nan"),
    (lambda e: e.bTrXYArr([0, 0], [0, -math.inf]), ValueError, r"dY\[1\] is -inf"),
    (lambda e: e.bTrXYArr(["1"], [2]), TypeError, "dX.*numbers.*<U1"),
    (lambda e: e.bTrXYArr([1j], [2]), TypeError, "dX.*complex128"),
    (lambda e: e.bTrXYArr([1, -HUGE], [1, 2]), OverflowError, r"dX\[1\]: .* 402 .*too large"),
    (lambda e: e.bTrXYArr([1, 2], [3, None]), TypeError, r"dY\[1\] must be a number, not None"),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, [1], 2), ValueError, r"second has shape \(\)"),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, 1, math.nan), ValueError, "second is nan"),
    (lambda e: e.TrXY(decimal.Decimal("nan"), 1), ValueError, "dXsour is nan"),
    (lambda e: e.TrXY(1, 10**5000), OverflowError, "thousands of digits is too large"),
    (lambda e: e.TrXY(1, fractions.Fraction(HUGE)), OverflowError, "Fraction is too large"),
    (lambda e: e.TrXY(Broken(), 1), KeyError, "mine"),
    (lambda e: kv_tr.clsTr().TrXY("1", 0), TypeError, "TrXY.*dX: float.*'1'"),
    (lambda e: kv_tr.clsTr().TrAngle(math.inf, 0, 0), ValueError, "dAngle is inf"),
    (lambda e: e.AddXY4Tr([("P", 1, 2, math.nan, 4)], True), ValueError, r"\[0\].*'P'.*dXdest"),
    (lambda e: e.AddXY4Tr([("P", 1, "2", 3, 4)], True), TypeError, r"\[0\].*dYsour.*str"),
    (lambda e: e.AddXY4Tr([(7, 1, 2, 3, 4)], True), TypeError, r"\[0\].*sId.*int"),
    (lambda e: e.AddXY4Tr([("P",) * 9], True), TypeError, "8 fields.*9 values"),
    (lambda e: e.AddXY4Tr([("P", 4, 5)], True), TypeError, r"\[0\].*it has 3 fields"),
    (lambda e: e.AddXY4Tr([("a", HUGE, 2, 3, 4)], True), OverflowError, r"\[0\]: dXsour: .*large"),
    (lambda e: kv_tr.TR_PRM(eType=99), ValueError, "99.*enuTR_TYPE"),
    (lambda e: kv_tr.TR_PRM(eType=True), TypeError, "eType.*bool"),
    (lambda e: kv_tr.TR_PRM(0, eType=0), TypeError, "eType was given twice"),
    (lambda e: kv_tr.TR_PRM(dA22=1), TypeError, "dA22"),
    (lambda e: kv_tr.typeXYs4Tr(SURROGATE), ValueError, r"sId: 'a\\ud800' has lone surrog"),
    (lambda e: kv_tr.typeXYs4Tr("A", np.complex64(1)), TypeError, "not complex64"),
    (lambda e: kv_tr.typeXYs4Tr("A", np.str_("5")), TypeError, "dXsour .* not str_"),
    (lambda e: setattr(e, "eTrType", 7), ValueError, "7"),
    (lambda e: setattr(e, "eTrType", 2**70), ValueError, f"{2**70} is not a transformation type"),
    (lambda e: setattr(e, "eTrType", 10**5000), ValueError, "thousands of digits is not a tr"),
    (lambda e: setattr(e, "eTrType", "affine"), TypeError, "eTrType"),
    (lambda e: setattr(e, "udtTrPrm", kv_tr.AFFIN_PRM()), TypeError, "udtTrPrm"),
    (lambda e: setattr(e, "etrtype", 0), AttributeError, "etrtype"),
    (lambda e: setattr(kv_tr.clsTr(), "gName", SURROGATE), ValueError, "lone surrogates"),
    (lambda e: e.ExcludeByIx(2**31, True), OverflowError, "2147483648 is out of range"),
    (lambda e: e.setLanguageID(-(2**70)), OverflowError, "is out of range"),
    (lambda e: kv_tr.FormatFixed(1.0, 256, 0), OverflowError, "256 .* 0 to 255"),
    (lambda e: kv_tr.MatrixInverse([[1, 2]]), ValueError, r"\(1, 2\)"),
    (lambda e: kv_tr.MatrixTimesTranspose([1, 2]), ValueError, r"\(2,\)"),
    (lambda e: kv_tr.fMAtrix_Mul_Vector([[1, 2]], [1]), ValueError, r"\(1, 2\).*\(1,\)"),
    (lambda e: kv_tr.DecimalSeparator(";"), ValueError, ";"),
    (lambda e: install(language=5), ValueError, "5"),
    (lambda e: install(settings=print), TypeError, "settings"),
    (lambda e: install(dialogs={"Adjust": print}), ValueError, "'adjust'"),
    (lambda e: install(dialogs={"adjust": 1}), TypeError, r"dialogs\['adjust'\]"),
    (released_pairs, 9, "released"),
    (released_engine, 91, "engine.*torn down"),
    (no_inverse, 11, "Division by zero"),
    (lambda e: kv_tr.GetMlString(100000), 326, "100000"),
    (lambda e: e.bSaveXYs4Tr("/nowhere/points.dat"), 52, ""),
    (lambda e: fit("affine", target=GRID[1:]), ValueError, "30 points, target has 29"),
    (lambda e: fit("affine", source=GRID.T), ValueError, r"\(n, 2\), not \(2, 30\)"),
    (lambda e: fit("affine", target=[[1, 2, 3]]), ValueError, r"target .*\(1, 3\)"),
    (lambda e: fit("affine", source=[[0, math.inf]]), ValueError, r"source\[0, 1\] is inf"),
    (lambda e: fit("poly6"), ValueError, "'poly6' is not .*helmert, affine"),
    (lambda e: fit("\ud800"), ValueError, "is not a transformation type"),
    (lambda e: fit(kv_tr.Type.STG_HER), ValueError, "STG_HER' cannot be fitted"),
    (lambda e: fit(), TypeError, "source, target and type"),
    (lambda e: fit("affine", ids="A" * 30), TypeError, "not one text"),
    (lambda e: fit("affine", ids=range(29)), ValueError, "30 points, ids has 29"),
    (lambda e: fit("affine", used=[0, 2]), ValueError, r"\(30,\), not \(2,\)"),
    (lambda e: fit("affine", used=range(30)), TypeError, "hold bools, not int"),
    (lambda e: fit("affine").exclude(3, 77), KeyError, "identifier 77"),
    (lambda e: fit("affine").include([3]), TypeError, "unhashable"),
    (lambda e: kv_tr.Transformation("affine", range(23), []), ValueError, r"a .* 22 .*\(23,\)"),
    (lambda e: kv_tr.Transformation("affine", [], [math.nan]), ValueError, "finite"),
    (lambda e: kv_tr.Transformation.national("EOV"), ValueError, "'EOV' is no national"),
    (lambda e: NATIONAL.transform([1, math.nan]), ValueError, r"xy\[1\]"),
    (lambda e: NATIONAL.transform([1, 2, 3]), ValueError, r"\(3,\)"),
    (lambda e: NATIONAL.direction(0, GRID), ValueError, "one point"),
]


@pytest.mark.parametrize("call, kind, text", CASES)
def test_bad_input_is_refused_with_the_true_reason(engine, call, kind, text):
    number = kind if isinstance(kind, int) else None
    with pytest.raises(kv_tr.RuntimeError if number else kind) as raised:
        call(engine)
    assert re.search(text, str(raised.value), re.DOTALL), raised.value
    if number:
        assert raised.value.number == number and isinstance(raised.value, builtins.RuntimeError)
    assert engine.lFullCnt == 5
    other = kv_tr.clsTrCalc()
    other.AddXY4Tr([("A", 0, 0, 1, 1), ("B", 9, 0, 10, 1)], False)
    other.DoCalcTr()
    assert other.TrXY(5, 5) == pytest.approx((6, 6))


def test_a_refused_pair_leaves_the_set_as_it_was(engine):
    before = engine.GetAllXYs()
    with pytest.raises(ValueError):
        engine.AddXY4Tr([("F", 1, 2, 3, 4), ("G", 1, 2, 3, math.nan)], True)
    assert engine.GetAllXYs() == before
