"""Python callables in the place of the surroundings, and the event."""

import gc
import weakref

import kv_tr
import pytest
from conftest import ENGLISH


def test_messages_describe_themselves_and_take_an_answer(capsys):
    shown = []

    def answer(message):
        shown.append((message.text, message.title, message.icon, message.buttons))
        return message.default_answer

    kv_tr.install_platform(messages=answer, settings={}, language=ENGLISH)
    kv_tr.MatrixInverse([[0.0]])
    assert shown == [("KORVANEL --> matrix inv.: DET=0 !", "", "none", ("ok",))]
    kv_tr.install_platform(settings={})
    kv_tr.MatrixInverse([[0.0]])
    assert capsys.readouterr().err == shown[0][0] + "\n"


def test_what_a_callable_raises_reaches_the_caller_unchanged(engine):
    refusal = KeyError("not now")

    def refuse(*_):
        raise refusal

    ports = ["messages", "choose_to_open", "choose_to_save", "texts"]
    kv_tr.install_platform(**dict.fromkeys(ports, refuse), dialogs={"adjust": refuse}, settings={})
    engine.TypeChanched.Subscribe(refuse)
    engine.eTrType = kv_tr.TR_BILINEAR
    for call, *arguments in [
        (kv_tr.MatrixInverse, [[0.0]]),
        (engine.bChooseFile4LoadXYs4Tr,),
        (engine.bDoModal, True),
        (kv_tr.GetMlString, 97),
        (lambda: [engine.ExcludeByIx(index, True) for index in (0, 1)],),
    ]:
        with pytest.raises(KeyError) as raised:
            call(*arguments)
        assert raised.value is refusal
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
    engine.ExcludeByIx(1, False)
    assert len(steps) == 4 and more[4:] == [kv_tr.TR_POLI_1]


def test_files_are_chosen_settings_kept_and_texts_given_by_callables(tmp_path):
    requests, town = [], tmp_path / "town.trp"
    store, texts = {"KV_Tr/Settings/Path": "/"}, {72: " öffnen"}
    kv_tr.install_platform(
        choose_to_open=lambda request: requests.append(request),
        choose_to_save=lambda request: requests.append(request) or town,
        settings=store,
        texts=lambda id, language: texts.get(id),
        language=ENGLISH,
    )
    tr = kv_tr.clsTr()
    assert tr.bChooseFileAndSaveTrPrm("", "/old") == (str(town), "/old") and town.exists()
    assert (requests[0].initial_folder, requests[0].default_extension) == ("/old", "trp")
    assert tr.oCalcTr.bChooseFile4LoadXYs4Tr("a.dat") == (False, "", "")
    assert ("File of GCPs (*.dat)", "*.dat") in requests[1].filters
    assert kv_tr.GetMlString(72) == " öffnen" and kv_tr.GetMlString(97).startswith("To few GCPs")
    tr.oCalcTr.sInitDir = "/tmp"
    del tr
    assert store == {"KV_Tr/Settings/Path": "/tmp"}


def test_dialogs_receive_the_objects_themselves():
    opened, tr = [], kv_tr.clsTr()
    dialogs = {
        "adjust": lambda engine, apply: opened.append((engine, apply)) or True,
        "choose_parameters": lambda tr: tr.oCalcTr.bDoModal(False),
        "choose_national": lambda kind: kv_tr.TR_HER_STG,
        "list_control_points": lambda tr, title: opened.append((tr, title)),
    }
    kv_tr.install_platform(dialogs=dialogs, settings={})
    assert tr.bChooseTrPrm() is True
    assert tr.bShowXYs4Tr("Points") is False
    assert opened == [(tr.oCalcTr, False), (tr, "Points")]
    assert tr.bLoadByDAT2M1() is False and tr.udtTrPrm.eType is kv_tr.TR_STG_HKR


def test_a_callable_may_replace_the_platform_or_the_engine_and_is_let_go(engine):
    def replace(*_):
        kv_tr.install_platform(settings={})
        gc.collect()

    for port in ("messages", "choose_to_open", "texts"):
        kv_tr.install_platform(**{port: replace}, settings={})
        kv_tr.MatrixInverse([[0.0]])
        engine.bChooseFile4LoadXYs4Tr()
        assert kv_tr.GetMlString(72)
    alive = weakref.ref(replace)
    del replace
    gc.collect()
    assert alive() is None
    engine.eTrType = kv_tr.TR_POLI_5
    engine.TypeChanched.Subscribe(lambda kind: engine.TearDown())
    with pytest.raises(kv_tr.RuntimeError, match="released"):
        engine.ExcludeByIx(0, True)
