"""Python callables in the place of the surroundings, and the event."""

import gc
import weakref

import kv_tr
import pytest
from conftest import ENGLISH, run


def test_messages_describe_themselves_and_take_an_answer(engine):
    shown = []

    def answer(message):
        shown.append((message.text, message.title, message.icon, message.buttons))
        return message.default_answer

    kv_tr.install_platform(messages=answer, settings={}, language=ENGLISH)
    kv_tr.MatrixInverse([[0.0]])
    engine.setLanguageID(ENGLISH)
    engine.AddXY4Tr(engine.GetAllXYs()[:2], False)
    engine.ExcludeByIx(0, True)
    assert shown == [
        ("KORVANEL --> matrix inv.: DET=0 !", "", "none", ("ok",)),
        ("There must be at least 2 points!", "", "exclamation", ("ok",)),
    ]
    kv_tr.install_platform(messages=lambda message: "yes", settings={})
    with pytest.raises(ValueError, match="'yes'.*'ok'"):
        kv_tr.MatrixInverse([[0.0]])


def test_without_a_callable_messages_go_to_standard_error(capsys):
    kv_tr.install_platform(settings={})
    kv_tr.MatrixInverse([[0.0]])
    assert capsys.readouterr().err == "KORVANEL --> matrix inv.: DET=0 !\n"


class Refusal(Exception):
    pass


def test_what_a_callable_raises_reaches_the_caller_unchanged(engine):
    refusal = Refusal("not now")

    def refuse(*_):
        raise refusal

    ports = ["messages", "choose_to_open", "choose_to_save", "texts"]
    kv_tr.install_platform(**dict.fromkeys(ports, refuse), dialogs={"adjust": refuse}, settings={})
    engine.TypeChanched.Subscribe(refuse)
    engine.eTrType = kv_tr.TR_BILINEAR
    tr_calls = [
        lambda: kv_tr.MatrixInverse([[0.0]]),
        lambda: engine.bLoadXYsFromFile("/nowhere", False),
        lambda: engine.bChooseFile4LoadXYs4Tr(),
        lambda: engine.bDoModal(True),
        lambda: kv_tr.GetMlString(97),
        lambda: [engine.ExcludeByIx(index, True) for index in (0, 1)],
    ]
    for call in tr_calls:
        with pytest.raises(Refusal) as raised:
            call()
        assert raised.value is refusal
    engine.eTrType = kv_tr.TR_HELMERT
    engine.DoCalcTr()
    assert engine.TrXY(0, 0) == pytest.approx((100, -50), abs=1e-9)


def test_the_event_tells_each_step_until_it_is_disconnected(engine):
    steps, more = [], []
    engine.eTrType = kv_tr.TR_POLI_5
    connection = engine.TypeChanched.Subscribe(steps.append)
    engine.TypeChanched.Subscribe(more.append)  # stays connected although nobody keeps it
    gc.collect()
    engine.ExcludeByIx(0, False)
    assert steps == [kv_tr.TR_POLI_4, kv_tr.TR_POLI_3, kv_tr.TR_POLI_2, kv_tr.TR_BILINEAR]
    connection.Disconnect()
    connection.Disconnect()
    engine.ExcludeByIx(1, False)
    assert len(steps) == 4 and more[4:] == [kv_tr.TR_POLI_1]


def test_files_are_chosen_by_callables(tmp_path):
    requests = []

    def choose(request):
        requests.append(request)
        return tmp_path / "town.trp"

    kv_tr.install_platform(choose_to_open=choose, choose_to_save=choose, language=ENGLISH)
    tr = kv_tr.clsTr()
    assert tr.bChooseFileAndSaveTrPrm("", "/old") == (str(tmp_path / "town.trp"), "/old")
    assert (tmp_path / "town.trp").exists()
    assert (requests[0].initial_folder, requests[0].default_extension) == ("/old", "trp")
    engine = tr.oCalcTr
    assert engine.bChooseFile4LoadXYs4Tr()[:2] == (True, str(tmp_path / "town.trp"))
    assert ("File of GCPs (*.dat)", "*.dat") in requests[1].filters
    kv_tr.install_platform(choose_to_open=lambda request: None, settings={})
    assert engine.bChooseFile4LoadXYs4Tr("a.dat") == (False, "", "")


@pytest.mark.parametrize(
    "ports, call",
    [
        ({"choose_to_open": lambda request: 7}, lambda tr: tr.oCalcTr.bChooseFile4LoadXYs4Tr()),
        ({"texts": lambda *_: 7}, lambda tr: tr.sTrTypeName),
        ({"dialogs": {"choose_national": lambda kind: "7"}}, lambda tr: tr.bLoadByDAT2M1()),
        ({"settings": {"KV_Tr/Settings/Path": 7}}, lambda tr: kv_tr.clsTrCalc()),
    ],
)
def test_a_port_that_yields_the_wrong_type_is_told_so(ports, call):
    tr = kv_tr.clsTr()
    kv_tr.install_platform(**{"settings": {}} | ports)
    with pytest.raises(TypeError, match="(choose|texts|settings).* not (int|str)"):
        call(tr)


def test_dialogs_receive_the_objects_themselves(messages):
    opened = []

    def adjust(engine, show_apply_button):
        opened.append((engine, show_apply_button))
        engine.eTrType = kv_tr.TR_POLI_2
        return True

    tr = kv_tr.clsTr()
    kv_tr.install_platform(
        dialogs={
            "adjust": adjust,
            "choose_parameters": lambda tr: tr.oCalcTr.bDoModal(False),
            "choose_national": lambda kind: kv_tr.TR_HER_STG,
            "list_control_points": lambda tr, title: opened.append((tr, title)),
        },
        messages=lambda message: messages.append(message.text),
        settings={},
        language=ENGLISH,
    )
    assert tr.bChooseTrPrm() is True
    assert tr.bShowXYs4Tr("Points") is False
    assert opened == [(tr.oCalcTr, False), (tr, "Points")]
    assert tr.oCalcTr.eTrType is kv_tr.TR_POLI_2
    assert tr.bLoadByDAT2M1() is False
    assert tr.udtTrPrm.eType is kv_tr.TR_STG_HKR
    assert tr.bShowAffinTrPrm() is False and len(messages) == 1  # there are no windows


def test_settings_and_texts():
    store = {"KV_Tr/Settings/Path": "/"}
    texts = {72: " öffnen"}
    kv_tr.install_platform(
        settings=store, texts=lambda id, language: texts.get(id), language=ENGLISH
    )
    assert kv_tr.GetMlString(72) == " öffnen"
    assert kv_tr.GetMlString(97) == "To few GCPs for this transformation!"
    engine = kv_tr.clsTrCalc()
    engine.sInitDir = "/tmp"
    del engine
    assert store == {"KV_Tr/Settings/Path": "/tmp"}


def test_a_callable_may_replace_the_platform_or_the_engine(engine):
    def replace(*_):
        kv_tr.install_platform(settings={})
        gc.collect()

    for port in ("messages", "choose_to_open", "texts"):
        kv_tr.install_platform(**{port: replace}, settings={})
        kv_tr.MatrixInverse([[0.0]])
        engine.bChooseFile4LoadXYs4Tr()
        assert kv_tr.GetMlString(72)
    engine.eTrType = kv_tr.TR_POLI_5
    engine.TypeChanched.Subscribe(lambda kind: engine.TearDown())
    with pytest.raises(kv_tr.RuntimeError) as raised:
        engine.ExcludeByIx(0, True)
    assert raised.value.number == 9


def test_what_a_port_held_is_let_go():
    class Messages:
        __call__ = print

    callable_object = Messages()
    alive = weakref.ref(callable_object)
    kv_tr.install_platform(messages=callable_object, settings={})
    kv_tr.install_platform(settings={})
    del callable_object
    gc.collect()
    assert alive() is None


def test_the_interpreter_ends_cleanly_with_everything_alive(tmp_path):
    """Ports, handlers and engines that still live; the folder is remembered all the same."""
    program = """if True:
        import atexit
        @atexit.register
        def late():  # after the package's own end
            kv_tr.install_platform(messages=print, settings={}, texts=lambda *_: None)
        import collections, kv_tr, sys
        class Store(collections.UserDict):
            def __setitem__(self, key, value):
                super().__setitem__(key, value)
                print(key, value)
        kv_tr.install_platform(messages=print, settings=Store(), texts=lambda *_: None,
                               dialogs={"adjust": print}, choose_to_open=print)
        tr = kv_tr.clsTr()
        tr.oCalcTr.TypeChanched.Subscribe(lambda kind: tr)
        engine = tr.oCalcTr
        tr.sInitDir = sys.argv[1]
    """
    assert run("-c", program, tmp_path) == f"KV_Tr/Settings/Path {tmp_path}\n"
