"""What must neither end the interpreter nor read memory that is not its own."""

import atexit
import decimal
import fractions
import pickle

import kv_tr
import numpy as np
import pytest
from conftest import run


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
    assert [run("-c", program) for _ in range(3)] == ["end\n"] * 3


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
    assert run("-c", program) == "8000000 True\n" * 2


def test_installing_again_and_again_keeps_nothing():
    before = atexit._ncallbacks()
    for _ in range(100):
        kv_tr.install_platform(settings={})
    assert atexit._ncallbacks() == before


RECORDS = [
    kv_tr.TR_PRM(kv_tr.TR_POLI_2, 1, dB21=2),
    kv_tr.AFFIN_PRM(kv_tr.TR_AFFIN, 1, dB0=5),
    kv_tr.typeXYs4Tr("é", 1, 2, 3, 4, bNotUsed=True),
]


class Marked(kv_tr.typeXYs4Tr):
    def __init__(self, name):
        super().__init__(name, dXsour=7)


def test_records_are_pickled_with_every_protocol():
    # With the oldest ones, what failed ended the interpreter.
    run("-c", "import kv_tr, pickle; pickle.loads(pickle.dumps(kv_tr.TR_PRM(), 0))")
    for protocol in range(pickle.HIGHEST_PROTOCOL + 1):
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
    lambda: bare(kv_tr.clsTr).__enter__().TearDown(),
    lambda: repr(bare(kv_tr.TR_PRM)),
    lambda: bare(kv_tr.AFFIN_PRM) == kv_tr.AFFIN_PRM(),
    lambda: kv_tr.AFFIN_PRM() == bare(kv_tr.AFFIN_PRM),
    lambda: pickle.dumps(bare(kv_tr.TR_PRM)),
    lambda: kv_tr.EvalTrPrm(bare(kv_tr.TR_PRM), 1, 2),
    lambda: kv_tr.clsTrCalc().AddXY4Tr([bare(kv_tr.typeXYs4Tr)], False),
    lambda: setattr(kv_tr.clsTr(), "udtTrAffinPrm", bare(kv_tr.AFFIN_PRM)),
    lambda: bare(kv_tr.TypeEvent).Subscribe(print),
    lambda: bare(kv_tr.Connection).Disconnect(),
    lambda: bare(kv_tr.Transformation).transform([1, 2]),
    lambda: kv_tr.Transformation.national("STG_HER") == bare(kv_tr.Transformation),
    lambda: bare(Early).lFullCnt,
    Early,
]
for kind in vars(kv_tr).values():  # every property of every class
    if type(kind).__name__ == "pybind11_type":
        readable = [name for name, m in vars(kind).items() if isinstance(m, property) and m.fget]
        USES += [lambda kind=kind, name=name: getattr(bare(kind), name) for name in readable]


def test_objects_that_were_not_made_are_refused():
    assert len(USES) > 40
    for use in USES:
        with pytest.raises(TypeError, match="is empty: its __init__ was not called"):
            use()


def test_any_real_number_is_a_coordinate(engine):
    engine.DoCalcTr()
    image = engine.TrXY(2.0, 2.0)
    kinds = [int, np.float32, np.int8, np.longdouble, np.array, decimal.Decimal, fractions.Fraction]
    for two in [kind(2) for kind in kinds]:
        assert engine.TrXY(two, two) == image
        assert kv_tr.EvalTrPrm(kv_tr.TR_PRM(dA1=3), two, 1.0)[0] == 6
        assert engine.bTrXYArr([two], [two])[1] == image[0]
        assert kv_tr.typeXYs4Tr("A", two).dXsour == kv_tr.TR_PRM(dB3=two).dB3 == 2.0
        engine.gdErrLimit = two
        assert engine.gdErrLimit == 2.0
