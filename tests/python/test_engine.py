"""The published classes from Python: members, numpy arrays, threads and functions."""

import sys
import threading
import time
import tracemalloc

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
        assert tr.TrXY(10, 20) == pytest.approx((110, -30), abs=1e-9)
        assert tr.sTrTypeName == "HELMERT transformation"
        ok, inverse = tr.bGetInversePrm()
        assert ok and (inverse.dA0, inverse.dB0) == pytest.approx((-100, 50))
        assert tr.bGetHelmertPrm()[1:] == pytest.approx((100, 1, 0, -50, 0, 1), abs=1e-9)
        tr.oCalcTr.SaveLog(tmp_path / "log.txt")
        assert tr.bSaveAffinTrPrm(tmp_path / "town.trp")
        kept = tr.oCalcTr
    assert kept.lFullCnt == 5  # valid, though torn down
    loaded = kv_tr.clsTr()
    assert loaded.bLoadAffinTrPrmFromFile(str(tmp_path / "town.trp"))
    assert loaded.gName == str(tmp_path)
    assert "HELMERT transformation" in (tmp_path / "log.txt").read_text(encoding="cp1250")


def test_outputs_come_back_as_values(engine, tmp_path):
    engine.eTrType = kv_tr.TR_AFFIN
    assert engine.GetRect4Dest() == (100, -50, 1100, 750)
    engine.ExcludeByIx(1, True)
    assert [pair.sId for pair in engine.GetXYs(True)] == list("ACDE")
    assert [(pair.sId, pair.bNotUsed) for pair in engine.GetXYs(False)] == [("B", True)]
    assert (engine.lFullCnt, engine.lNotUsedCnt) == (5, 1)
    engine.ResetAllNotUsed()
    assert engine.GetXYs(False) == []
    assert engine.bSaveXYs4Tr(tmp_path / "points.dat")
    other = kv_tr.clsTrCalc()
    assert other.bLoadXYsFromFile(tmp_path / "points.dat", False)
    assert other.sListXYs() == engine.sListXYs()
    tr = kv_tr.clsTr()
    tr.udtTrPrmByDAT2M1 = kv_tr.TR_STG_HER
    assert tr.bGetInversePrm()[0] is False
    linear, *coefficients = tr.bGetAffinPrm()
    assert not linear and np.isnan(coefficients).all()
    tr.udtTrAffinPrm = kv_tr.AFFIN_PRM(kv_tr.TR_AFFIN, dA1=2, dB2=3, dB0=5, dB1=7)
    assert (tr.udtTrPrm.dB0, tr.udtTrPrm.dB1) == (5, 7)
    assert kv_tr.clsTr().TrAngle(-np.pi / 2, 0, 0) == pytest.approx(1.5 * np.pi)


SOURCE = np.linspace(-1000.0, 2000.0, 5001)  # several parts of the bulk call, the last one short


def test_arrays_have_the_bits_of_single_points(engine):
    tr = kv_tr.clsTr()
    tr.udtTrPrmByDAT2M1 = kv_tr.TR_EOV_STG_10e
    engine.udtTrPrm = tr.udtTrPrm
    ok, first, second = engine.bTrXYArr(SOURCE, SOURCE[::-1])
    assert ok is True
    points = [engine.TrXY(y, x) for y, x in zip(SOURCE, SOURCE[::-1])]
    assert (np.column_stack([first, second]) == points).all()
    assert (kv_tr.EvalTrPrm(engine.udtTrPrm, SOURCE, SOURCE[::-1])[1] == second).all()
    assert kv_tr.EvalTrPrm(engine.udtTrPrm, SOURCE[7], SOURCE[-8]) == points[7]


def test_any_array_of_numbers_will_do(engine):
    engine.DoCalcTr()
    whole = np.arange(8.0)
    for layout in LAYOUTS:
        given = layout(whole)
        _, first, second = engine.bTrXYArr(given, given)
        assert first.dtype == second.dtype == np.float64
        assert (first == engine.bTrXYArr(whole, whole)[1]).all()
        assert list(given) == list(whole)
        assert engine.bTrXYArr(layout(whole[:0]), [])[1].shape == (0,)


def test_contiguous_arrays_are_not_copied(engine):
    x = np.zeros(1_000_000)
    x.flags.writeable = False
    tracemalloc.start()
    kept = engine.bTrXYArr(x, x)
    peak = tracemalloc.get_traced_memory()[1]
    tracemalloc.stop()
    assert len(kept[1]) == len(x)
    assert peak < 2.1 * x.nbytes  # the two results and nothing else of their size


def test_images_go_where_the_caller_wants_them(engine):
    engine.DoCalcTr()
    x = np.arange(10.0)
    a, b = np.empty(10), np.empty(10)
    ok, first, second = engine.bTrXYArr(x, x, out=(a, b))
    assert ok and first is a and second is b
    assert [list(a), list(b)] == [list(images) for images in engine.bTrXYArr(x, x)[1:]]
    read_only = np.empty(10)
    read_only.flags.writeable = False
    unaligned = np.ndarray(10, "f8", bytearray(81), 1)
    other_layouts = [b[:9], np.empty(20)[::2], x.astype("f4"), unaligned, list(b)]
    for wrong in [(a, array) for array in [x, a, read_only, *other_layouts]]:
        with pytest.raises(ValueError, match=r"float64 with shape \(10,\)"):
            engine.bTrXYArr(x, x, out=wrong)
    for wrong in (a, (a,)):
        with pytest.raises(TypeError, match="two arrays"):
            kv_tr.EvalTrPrm(engine.udtTrPrm, x, x, out=wrong)


def test_other_threads_run_during_bulk_work(engine):
    x = np.zeros(200_000)
    turns, done = 0, False

    def count():
        nonlocal turns
        while not done:
            turns += 1
            time.sleep(0)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)  # nobody is made to give way
    counter = threading.Thread(target=count)
    try:
        counter.start()
        before = turns
        for _ in range(2000):
            engine.bTrXYArr(x, x)
            if turns > before:
                break
        assert turns > before
    finally:
        done = True
        sys.setswitchinterval(interval)
        counter.join()


def test_functions_of_general_use(tmp_path):
    assert kv_tr.FormatFixed(1.0005, 3, 8) == "   1.001"
    assert kv_tr.FormatSci(1234.5) == " " * 9 + "1.234500000000000E+03"
    assert kv_tr.PadLeft("ő", 3) == "  ő"
    assert kv_tr.CleanNumberLine(" 1,5;'2'\t3 ", True) == "1.5 2 3"
    assert kv_tr.GetFileTitle(r"C:\data\pts.dat", False) == "pts"
    assert kv_tr.GetFileExt("a.tar.gz") + kv_tr.StripFileExt("a.tar.gz") == "gza.tar"
    assert kv_tr.GetFolderPart("/data/pts.dat") == "/data"
    assert kv_tr.PolyFormulaText(kv_tr.TR_POLI_2) == " + y^2*a4 + y*x*a5 + x^2*a6"
    design = np.array([[1.0, 2.0], [3.0, 4.0], [5.0, 7.0]])
    normal = kv_tr.MatrixTimesTranspose(design)
    assert (normal == design.T @ design).all()
    ok, inverse = kv_tr.MatrixInverse(normal)
    assert ok and inverse @ normal == pytest.approx(np.eye(2), abs=1e-12)
    assert (kv_tr.fMAtrix_Mul_Vector(design, [1, -1]) == [-1, -1, -2]).all()
    kv_tr.DecimalSeparator(",")
    assert kv_tr.FormatFixed(0.5, 1, 0) == "0,5" and kv_tr.DecimalSeparator() == ","
    kv_tr.DecimalSeparator(".")
    file = tmp_path / "town.TRP"
    for text in ("A 1,5 2,5 3,5 4,5", "A 1.5 2.5 3.5 4.5", "0,5\n" * 6):
        file.write_text(text)
        assert kv_tr.PointsMayHaveDecimalCommas(file) is text.startswith("A 1,")
        assert kv_tr.ParametersHaveDecimalCommas(str(file)) is text.startswith("0,")


def test_national_types_tell_their_accuracy():
    infos = {info.type: info for info in kv_tr.NationalInfos()}
    assert list(infos) == [kind for kind in kv_tr.enuTR_TYPE if kind >= kv_tr.TR_STG_HER]
    assert all("TR_" + info.name == kind.name for kind, info in infos.items())
    first = infos[kv_tr.TR_STG_HER]
    assert (first.source, first.destination, first.area) == ("STG", "HÉR", "Hungary")
    assert infos[kv_tr.TR_BOV_HKR].area == "Budapest" and 0 < first.accuracy < 10
