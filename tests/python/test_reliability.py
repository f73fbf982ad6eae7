"""What must neither end the interpreter nor read memory that is not its own."""

import decimal
import fractions
import os
import pickle
import subprocess
import sys

import kv_tr
import numpy as np
import pytest

HUGE = 10**400


def run(program):
    """Runs a program to its end; only what it prints may be seen."""
    ended = subprocess.run(
        [sys.executable, "-c", program], capture_output=True, text=True, timeout=100
    )
    assert (ended.returncode, ended.stderr) == (0, "")
    return ended.stdout


@pytest.mark.parametrize(
    "work",
    [
        "kv_tr.EvalTrPrm(record, x, x)",
        "kv_tr.MatrixInverse([[0.0]]), engine.eTrType, engine.AddXY4Tr(iter(pairs), False)",
    ],
)
def test_the_interpreter_ends_while_daemon_threads_work(work):
    program = f"""if True:
        import kv_tr, numpy as np, sys, threading
        sys.setswitchinterval(1e-5)
        kv_tr.install_platform(messages=lambda message: [*range(100)].clear(), settings={{}})
        record, x = kv_tr.TR_PRM(), np.zeros(200_000)
        pairs = [(str(i), i, i % 7, i, i % 7) for i in range(20)]
        started = threading.Semaphore(0)
        def run():
            engine = kv_tr.clsTrCalc()
            while True:
                {work}
                started.release()
        for _ in range(4):
            threading.Thread(target=run, daemon=True).start()
        for _ in range(40):
            started.acquire()
        print("end")
    """
    assert [run(program) for _ in range(3)] == ["end\n"] * 3


def test_arrays_stay_where_they_are_while_they_are_read():
    """Resizing without counting references frees the memory that another thread works on."""
    program = """if True:
        import kv_tr, numpy as np, sys, threading
        sys.setswitchinterval(1000)  # nobody runs in between unless the call lets them
        about, zeros = threading.Event(), np.zeros(8_000_000)
        class Second:
            def __array__(self, dtype=None):
                about.set()
                return zeros
        def resize(array):
            about.wait()
            try:
                array.resize(10, refcheck=False)
            except ValueError:
                pass
        for part in (False, True):
            about.clear()
            whole = np.ones(8_000_000)
            other = threading.Thread(target=resize, args=(whole,))
            other.start()
            first = whole[:] if part else whole
            image = kv_tr.EvalTrPrm(kv_tr.TR_PRM(dA1=2), first, Second())[0]
            other.join()
            print(len(image), (image == 2).all())
    """
    assert run(program) == "8000000 True\n" * 2


def test_installing_again_and_again_keeps_nothing():
    program = """if True:
        import atexit, kv_tr
        kv_tr.install_platform(settings={})
        before = atexit._ncallbacks()
        for _ in range(100):
            kv_tr.install_platform(settings={})
        print(atexit._ncallbacks() - before)
    """
    assert run(program) == "0\n"


RECORDS = [
    kv_tr.TR_PRM(kv_tr.TR_POLI_2, 1, dB21=2),
    kv_tr.AFFIN_PRM(kv_tr.TR_AFFIN, 1, dB0=5),
    kv_tr.typeXYs4Tr("é", 1, 2, 3, 4, bNotUsed=True),
]


class Marked(kv_tr.typeXYs4Tr):
    def __init__(self, name):
        super().__init__(name, dXsour=7)


@pytest.mark.parametrize("protocol", range(pickle.HIGHEST_PROTOCOL + 1))
def test_records_are_pickled_with_every_protocol(protocol):
    if protocol < 2:  # what failed here ended the interpreter
        run(f"import kv_tr, pickle; pickle.loads(pickle.dumps(kv_tr.TR_PRM(), {protocol}))")
    for record in [*RECORDS, Marked("M")]:
        again = pickle.loads(pickle.dumps(record, protocol))
        assert again == record and type(again) is type(record)
    for kind in (kv_tr.clsTr, kv_tr.clsTrCalc):
        with pytest.raises(TypeError, match="pickle"):
            pickle.dumps(kind(), protocol)


def bare(kind):
    return kind.__new__(kind)


class Early(kv_tr.clsTrCalc):
    def __init__(self):
        self.lFullCnt  # before there is anything to count
        super().__init__()


USES = [
    lambda: bare(kv_tr.clsTr).TrXY(1, 2),
    lambda: bare(kv_tr.clsTr).gName,
    lambda: bare(kv_tr.clsTr).__enter__().TearDown(),
    lambda: bare(kv_tr.clsTrCalc).lFullCnt,
    lambda: bare(kv_tr.clsTrCalc).TypeChanched,
    lambda: bare(kv_tr.typeXYs4Tr).sId,
    lambda: repr(bare(kv_tr.TR_PRM)),
    lambda: bare(kv_tr.AFFIN_PRM) == kv_tr.AFFIN_PRM(),
    lambda: kv_tr.AFFIN_PRM() == bare(kv_tr.AFFIN_PRM),
    lambda: pickle.dumps(bare(kv_tr.TR_PRM)),
    lambda: kv_tr.EvalTrPrm(bare(kv_tr.TR_PRM), 1, 2),
    lambda: kv_tr.clsTrCalc().AddXY4Tr([bare(kv_tr.typeXYs4Tr)], False),
    lambda: setattr(kv_tr.clsTr(), "udtTrAffinPrm", bare(kv_tr.AFFIN_PRM)),
    lambda: bare(kv_tr.Message).text,
    lambda: bare(kv_tr.FileRequest).filters,
    lambda: bare(kv_tr.TypeEvent).Subscribe(print),
    lambda: bare(kv_tr.Connection).Disconnect(),
    lambda: bare(kv_tr.NationalInfo).accuracy,
    lambda: bare(kv_tr.Transformation).transform([1, 2]),
    lambda: kv_tr.Transformation.national("STG_HER") == bare(kv_tr.Transformation),
    lambda: bare(Early).lFullCnt,
    Early,
]


@pytest.mark.parametrize("use", USES)
def test_objects_that_were_not_made_are_refused(use):
    with pytest.raises(TypeError, match="is empty: its __init__ was not called"):
        use()


def test_every_class_is_among_the_refused():
    used = " ".join(str(constant) for use in USES[:-2] for constant in use.__code__.co_names)
    for name, kind in vars(kv_tr).items():
        if isinstance(kind, type) and type(kind).__name__ == "pybind11_type":
            assert name in used, name


SCALARS = [
    2,
    np.float32(2),
    np.int8(2),
    np.longdouble(2),
    np.array(2.0),
    decimal.Decimal(2),
    fractions.Fraction(2),
]


@pytest.mark.parametrize("two", SCALARS, ids=lambda two: type(two).__name__)
def test_any_real_number_is_a_coordinate(engine, two):
    engine.DoCalcTr()
    image = engine.TrXY(2.0, 2.0)
    assert engine.TrXY(two, two) == image
    assert kv_tr.EvalTrPrm(kv_tr.TR_PRM(dA1=3), two, 1.0)[0] == 6
    assert engine.bTrXYArr([two], [two])[1] == image[0]
    assert kv_tr.typeXYs4Tr("A", two).dXsour == kv_tr.TR_PRM(dB3=two).dB3 == 2.0
    engine.gdErrLimit = two
    assert engine.gdErrLimit == 2.0


WITH_SURROGATE = "a\ud800"

TRUTHS = [
    (lambda e: e.TrXY(HUGE, 1), OverflowError, "401 digits is too large"),
    (lambda e: e.TrXY(1, 10**5000), OverflowError, "thousands of digits is too large"),
    (lambda e: e.TrXY(1, fractions.Fraction(HUGE)), OverflowError, "Fraction is too large"),
    (lambda e: e.bTrXYArr([1, -HUGE], [1, 2]), OverflowError, r"dX\[1\]: .* 402 .*too large"),
    (lambda e: e.bTrXYArr([1, 2], [3, None]), TypeError, r"dY\[1\] must be a number, not None"),
    (lambda e: e.bTrXYArr(None, None), TypeError, "dX must be a number, not NoneType"),
    (lambda e: e.AddXY4Tr([("a", HUGE, 2, 3, 4)], True), OverflowError, r"\[0\]: dXsour: .*large"),
    (lambda e: kv_tr.TR_PRM(dB7=HUGE), OverflowError, "dB7: .* too large"),
    (lambda e: setattr(e, "eTrType", 2**70), ValueError, f"{2**70} is not a transformation type"),
    (lambda e: setattr(e, "eTrType", 10**5000), ValueError, "thousands of digits is not a tr"),
    (lambda e: e.ExcludeByIx(2**31, True), OverflowError, "2147483648 is out of range"),
    (lambda e: e.setLanguageID(-(2**70)), OverflowError, "is out of range"),
    (lambda e: kv_tr.FormatFixed(1.0, 256, 0), OverflowError, "256 .* 0 to 255"),
    (lambda e: kv_tr.typeXYs4Tr(WITH_SURROGATE), ValueError, r"sId: 'a\\ud800' has lone surrog"),
    (lambda e: kv_tr.PadLeft(WITH_SURROGATE, 3), ValueError, "lone surrogates"),
    (lambda e: setattr(kv_tr.clsTr(), "gName", WITH_SURROGATE), ValueError, "lone surrogates"),
    (lambda e: e.TrXY(decimal.Decimal("nan"), 1), ValueError, "dXsour is nan"),
    (lambda e: kv_tr.typeXYs4Tr("A", 1j), TypeError, "must be a number, not complex"),
    (lambda e: kv_tr.typeXYs4Tr("A", np.complex64(1)), TypeError, "not complex64"),
    (lambda e: kv_tr.typeXYs4Tr("A", np.str_("5")), TypeError, "dXsour .* not str_"),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, np.complex64(1), 2), TypeError, "first must be a num"),
    (lambda e: kv_tr.EvalTrPrm(e.udtTrPrm, "1", 2), TypeError, "first must hold numbers, not <U1"),
]


@pytest.mark.parametrize("call, kind, text", TRUTHS)
def test_refusals_say_the_true_reason(engine, call, kind, text):
    with pytest.raises(kind, match=text):
        call(engine)
    assert engine.lFullCnt == 5


def test_what_a_number_raises_reaches_the_caller(engine):
    class Broken:
        def __float__(self):
            raise KeyError("mine")

    with pytest.raises(KeyError, match="mine"):
        engine.TrXY(Broken(), 1)


def test_decimal_commas_are_noticed(tmp_path):
    points, parameters = tmp_path / "points.dat", tmp_path / "town.TRP"
    for separator in ".,":
        kv_tr.DecimalSeparator(".")
        pair = kv_tr.typeXYs4Tr("A", 1.25, 2.5, 3.75, 4.5)
        engine = kv_tr.clsTrCalc()
        engine.AddXY4Tr([pair, pair], False)
        points.write_text(engine.sListXYs().replace(".", separator))
        parameters.write_text("\n".join(["1.304"] * 6).replace(".", separator))
        assert kv_tr.PointsMayHaveDecimalCommas(points) is (separator == ",")
        assert kv_tr.ParametersHaveDecimalCommas(str(parameters)) is (separator == ",")
    assert kv_tr.ParametersHaveDecimalCommas(os.fspath(tmp_path / "nothing")) is False


def test_polynomials_with_decimal_commas_are_noticed(tmp_path):
    tr, file = kv_tr.clsTr(), tmp_path / "town.ALL"
    tr.udtTrPrm = kv_tr.TR_PRM(kv_tr.TR_POLI_1, 1000.25, 1.304, 2.5, 3.5, dB0=2000.5)
    tr.bSavePoliTrPrm(file)
    assert not kv_tr.ParametersHaveDecimalCommas(file)
    file.write_text(file.read_text().replace(".", ","))
    assert kv_tr.ParametersHaveDecimalCommas(file)


def test_national_types_tell_their_accuracy():
    infos = {info.type: info for info in kv_tr.NationalInfos()}
    assert list(infos) == [kind for kind in kv_tr.enuTR_TYPE if kind >= kv_tr.TR_STG_HER]
    assert all("TR_" + info.name == kind.name for kind, info in infos.items())
    first = infos[kv_tr.TR_STG_HER]
    assert (first.source, first.destination, first.area) == ("STG", "HÉR", "Hungary")
    assert infos[kv_tr.TR_BOV_HKR].area == "Budapest" and 0 < first.accuracy < 10
