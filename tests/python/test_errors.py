"""Bad input raises what says what and which, and leaves a component that works."""

import builtins
import math

import kv_tr
import numpy as np
import pytest


def torn_down_pairs(engine):
    engine.TearDown()
    engine.DoCalcTr()


def torn_down_owner(_):
    tr = kv_tr.clsTr()
    tr.TearDown()
    return tr.oCalcTr


def no_inverse(_):
    tr = kv_tr.clsTr()
    tr.udtTrPrm = kv_tr.TR_PRM()
    tr.bGetInversePrm()


NAN_LATE = np.append(np.zeros(4000), math.nan)

CASES = [
    (lambda e: e.bTrXYArr([1, 2, 3], [1, 2]), ValueError, ["dX", "(3,)", "dY", "(2,)"]),
    (lambda e: e.bTrXYArr(np.zeros((2, 3)), [1] * 6), ValueError, ["(2, 3)", "(6,)"]),
    (lambda e: e.bTrXYArr(1.0, 2.0), ValueError, ["dX has shape ()"]),
    (lambda e: e.bTrXYArr(NAN_LATE, np.zeros(4001)), ValueError, ["dX[4000] is nan"]),
    (lambda e: e.bTrXYArr([0, 0], [0, -math.inf]), ValueError, ["dY[1] is -inf"]),
    (lambda e: e.bTrXYArr(["1"], [2]), TypeError, ["dX", "numbers", "<U1"]),
    (lambda e: e.bTrXYArr([1j], [2]), TypeError, ["dX", "complex128"]),
    (lambda e: e.bTrXYArr([{}], [2]), TypeError, ["dict"]),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, [1], 2), ValueError, ["second has shape ()"]),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, 1, math.nan), ValueError, ["second is nan"]),
    (lambda e: e.TrXY(math.nan, 0), ValueError, ["dXsour is nan"]),
    (lambda e: kv_tr.clsTr().TrXY("1", 0), TypeError, ["TrXY", "dX: float", "'1'"]),
    (lambda e: kv_tr.clsTr().TrAngle(math.inf, 0, 0), ValueError, ["dAngle is inf"]),
    (lambda e: e.AddXY4Tr([("P", 1, 2, math.nan, 4)], True), ValueError, ["[0]", "'P'", "dXdest"]),
    (lambda e: e.AddXY4Tr([("P", 1, "2", 3, 4)], True), TypeError, ["[0]", "dYsour", "str"]),
    (lambda e: e.AddXY4Tr([(7, 1, 2, 3, 4)], True), TypeError, ["[0]", "sId", "int"]),
    (lambda e: e.AddXY4Tr([("P",) * 9], True), TypeError, ["8 fields", "9 values"]),
    (lambda e: e.AddXY4Tr([("P", 4, 5)], True), TypeError, ["[0]", "it has 3 fields"]),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, 10**400, 2), OverflowError, ["too large"]),
    (lambda e: kv_tr.install_platform(language=5), ValueError, ["5"]),
    (lambda e: e.AddXY4Tr([1.5], True), TypeError, ["[0]", "float"]),
    (lambda e: kv_tr.TR_PRM(eType=99), ValueError, ["99", "enuTR_TYPE"]),
    (lambda e: kv_tr.TR_PRM(eType=True), TypeError, ["eType", "bool"]),
    (lambda e: kv_tr.TR_PRM(0, eType=0), TypeError, ["eType was given twice"]),
    (lambda e: kv_tr.TR_PRM(dA22=1), TypeError, ["dA22"]),
    (lambda e: setattr(e, "eTrType", 7), ValueError, ["7"]),
    (lambda e: setattr(e, "eTrType", "affine"), TypeError, ["eTrType"]),
    (lambda e: setattr(e, "udtTrPrm", kv_tr.AFFIN_PRM()), TypeError, ["udtTrPrm"]),
    (lambda e: setattr(e, "etrtype", 0), AttributeError, ["etrtype"]),
    (lambda e: kv_tr.MatrixInverse([[1, 2]]), ValueError, ["(1, 2)"]),
    (lambda e: kv_tr.MatrixTimesTranspose([1, 2]), ValueError, ["(2,)"]),
    (lambda e: kv_tr.fMAtrix_Mul_Vector([[1, 2]], [1]), ValueError, ["(1, 2)", "(1,)"]),
    (lambda e: kv_tr.DecimalSeparator(";"), ValueError, [";"]),
    (lambda e: kv_tr.install_platform(messages=1), TypeError, ["messages", "int"]),
    (lambda e: kv_tr.install_platform(settings=print), TypeError, ["settings"]),
    (lambda e: kv_tr.install_platform(dialogs={"Adjust": print}), ValueError, ["'adjust'"]),
    (lambda e: kv_tr.install_platform(dialogs={"adjust": 1}), TypeError, ["dialogs['adjust']"]),
    (torn_down_pairs, 9, ["released"]),
    (torn_down_owner, 91, ["engine", "torn down"]),
    (no_inverse, 11, ["Division by zero"]),
    (lambda e: kv_tr.GetMlString(100000), 326, ["100000"]),
    (lambda e: e.bSaveXYs4Tr("/nowhere/points.dat"), 52, []),
]


@pytest.mark.parametrize("call, kind, words", CASES)
def test_bad_input_is_refused(engine, messages, call, kind, words):
    number = kind if isinstance(kind, int) else None
    with pytest.raises(kv_tr.RuntimeError if number else kind) as raised:
        call(engine)
    assert all(word in str(raised.value) for word in words), raised.value
    if number:
        assert raised.value.number == number and isinstance(raised.value, builtins.RuntimeError)
    other = kv_tr.clsTrCalc()
    other.AddXY4Tr([("A", 0, 0, 1, 1), ("B", 9, 0, 10, 1)], False)
    other.DoCalcTr()
    assert other.TrXY(5, 5) == pytest.approx((6, 6))


def test_a_refused_pair_leaves_the_set_as_it_was(engine):
    before = engine.GetAllXYs()
    with pytest.raises(ValueError):
        engine.AddXY4Tr([("F", 1, 2, 3, 4), ("G", 1, 2, 3, math.nan)], True)
    assert engine.GetAllXYs() == before
