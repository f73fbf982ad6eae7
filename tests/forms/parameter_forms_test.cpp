// The parameter editors, the choosers and the control-point list as plain calls, and a whole
// request.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "helpers/engine_test.h"
#include "helpers/environment.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/dialogs.h"

namespace kv_tr::test {
namespace {

/// Each plays a dialog on the transformation and closes it when the script is over.
class ParameterForms : public EngineTest {
protected:
    clsTr transformation;

    ParameterForms() { SetVariable("XDG_CACHE_HOME", folder.File("caches").c_str()); }

    template <class Form>
    bool Open(const std::function<void(Form&)>& script) {
        Form form;
        return form.bDoModal(transformation, [&] { script(form); });
    }
    bool OpenPoints(const std::function<void(frmXY4Tr&)>& script) {
        frmXY4Tr form;
        return form.bDoModal(engine, {}, [&] { script(form); });
    }

    /// Presses a button that asks for a file, which is this one; what is in the file afterwards.
    template <class Form>
    std::string With(Form& form, void (Form::*button)(), const std::string& file,
                     const std::string& text = {}) {
        if (!text.empty()) WriteFile(folder.File(file), text);
        platform.choices = {FileChoice{.path = folder.File(file)}};
        (form.*button)();
        return ReadFile(folder.File(file));
    }
    /// Expects that the user was told these texts, each with an exclamation mark.
    void ExpectTold(const std::vector<std::string>& beginnings) {
        ASSERT_EQ(platform.messages.size(), beginnings.size());
        for (std::size_t i = 0; i < beginnings.size(); ++i) {
            EXPECT_TRUE(platform.messages[i].text.starts_with(beginnings[i]));
            EXPECT_EQ(platform.messages[i].icon, Icon::kExclamation);
        }
        platform.messages.clear();
    }
};

using AffinTrPrm = ParameterForms;

TEST_F(AffinTrPrm, TakesNumbersAndAsksOnlyBeforeTheExactIdentity) {
    transformation.udtTrAffinPrm({.eType = TR_AFFIN, .dA0 = 1.00049, .dA1 = 1, .dB2 = 1});
    EXPECT_FALSE(Open<frmAffinTrPrm>([&](frmAffinTrPrm& form) {
        EXPECT_TRUE(form.txtTrPrm(0, "1.000") && form.txtTrPrm(2, " -0,5") &&
                    form.txtTrPrm(4, "2e1"));
        EXPECT_FALSE(form.txtTrPrm(1, "one"));
        EXPECT_EQ(platform.messages.back().title, "Wrong value!");
        EXPECT_EQ(form.SampleText(0), " Y' = [1.000] + [1.00000000] * Y + [-0.50000000] * X");
        EXPECT_EQ(form.SampleText(1), " X' = [0.000] + [20.00000000] * Y + [1.00000000] * X");
        EXPECT_FALSE(form.FathomButtonsVisible());
    }));
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_AFFIN);
    EXPECT_EQ(double{transformation.udtTrPrm().dA0}, 1.00049) << "what is not changed is rounded";

    transformation.udtTrAffinPrm({.dA1 = 1, .dB2 = 1});
    const auto ok = [](frmAffinTrPrm& form) { form.cmdOk(); };
    EXPECT_FALSE(Open<frmAffinTrPrm>(ok));
    EXPECT_EQ(platform.messages.back().defaultAnswer, Answer::kNo);
    platform.answers = {Answer::kYes};
    EXPECT_TRUE(Open<frmAffinTrPrm>(ok));
    EXPECT_TRUE(Open<frmAffinTrPrm>([](frmAffinTrPrm& form) {
        form.txtTrPrm(1, "1.000000001");
        EXPECT_TRUE(form.cmdOk());
    }));
    EXPECT_EQ(platform.messages.size(), 3U);
}

TEST_F(AffinTrPrm, LoadsAndSavesInTheOrderOfTheExtension) {
    platform.texts->SwitchLanguage(kHungarian, {});
    Open<frmAffinTrPrm>([&](frmAffinTrPrm& form) {
        EXPECT_TRUE(form.FathomButtonsVisible());
        form.cmdOlMeter();
        With(form, &frmAffinTrPrm::cmdLoad, "bad.trp", "7 x");
        With(form, &frmAffinTrPrm::cmdLoad, "gone.trp");
        form.cmdLoad();  // cancelled
        ExpectTold({GetMlString(74, {}), GetMlString(70, {})});
        EXPECT_EQ(form.BoxText(1), "1.89648384");
        With(form, &frmAffinTrPrm::cmdLoad, "in.prm", "1 2 3 4 5 6");
        EXPECT_EQ(transformation.gName + "/", folder.File(""));
        EXPECT_EQ(form.SampleText(0), " Y' = [1.000] + [3.00000000] * Y + [5.00000000] * X");
        form.txtTrPrm(0, "99");
        EXPECT_EQ(form.cmdCopyAs(TransformationFormat::kGeotransform), "[99, 3, -5, 2, 4, -6]\n");
        EXPECT_EQ(form.cmdCopyAs(TransformationFormat::kProjHelmert), "");
        ExpectTold({"PROJ"});
        EXPECT_TRUE(With(form, &frmAffinTrPrm::cmdSave, "out.PRM").starts_with("1.000\r\n2.000"))
            << "what was loaded";
    });
    EXPECT_EQ(double{transformation.udtTrPrm().dA0}, 99.0) << "closing writes back";
}

using PoliTrPrm = ParameterForms;

TEST_F(PoliTrPrm, LoadsChoosesAndSavesTheTextAsItStandsAndTakesItWhole) {
    const std::string order1 = "t\r\n\r\n sy = 7 sx = 8\r\n1 1 2\r\n2 3 4\r\n3 5 6\r\n";
    Open<frmPoliTrPrm>([&](frmPoliTrPrm& form) {
        const std::string listing = form.rtBox();
        EXPECT_EQ(With(form, &frmPoliTrPrm::cmdSave, "identity.all"), listing);
        With(form, &frmPoliTrPrm::cmdLoad, "gone");
        With(form, &frmPoliTrPrm::cmdLoad, "bad", order1 + "4 4 1..2\n");
        ExpectTold({GetMlString(70, {}), GetMlString(74, {})});
        platform.confirm = false;
        platform.nationalChoice = TR_EOV_HDR_10e;
        form.cmdDAT2M1();
        EXPECT_EQ(form.rtBox(), listing);
        platform.confirm = true;
        form.cmdDAT2M1();
        EXPECT_TRUE(form.rtBox().starts_with("EOV-HDR (országos)\r\n"));
        EXPECT_NE(form.cmdCopyAs(TransformationFormat::kJson).find("\"type\": 33"),
                  std::string::npos);
        EXPECT_EQ(With(form, &frmPoliTrPrm::cmdSave, "saved.trp"), "") << "not for polynomials";
        ExpectTold({""});
        EXPECT_TRUE(form.cmdOk());
    });
    for (const bool whole : {false, true}) {
        EXPECT_EQ(transformation.udtTrPrm().eType, TR_EOV_HDR_10e);
        platform.answers = {Answer::kYes};
        EXPECT_EQ(
            Open<frmPoliTrPrm>([&](frmPoliTrPrm& form) {
                form.rtBox(order1 + (whole ? "" : "4 7 x\r\n"));
                EXPECT_EQ(
                    form.cmdCopyAs(TransformationFormat::kProj).starts_with("+proj=horner +deg=1 "),
                    whole);
                EXPECT_EQ(form.cmdOk(), whole);
            }),
            whole);
    }
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_POLI_1);
    EXPECT_EQ(double{transformation.udtTrPrm().dB2}, 4.0);
}

using ChooseDAT2M1 = ParameterForms;

TEST_F(ChooseDAT2M1, ListsEveryTypeWithSystemsAccuracyAndOrigin) {
    EXPECT_EQ(frmChooseDAT2M1::Rows().at(16),
              (Texts{"STG-EOV (országos)", "STG", "EOV", "0.400", "Hungary"}));
    frmChooseDAT2M1 form;
    enuTR_TYPE type = TR_POLI_2;
    EXPECT_TRUE(form.bDoModal(type, [&] {
        EXPECT_FALSE(form.cmdOk()) << "nothing is selected yet";
        form.lstTr(23);
        EXPECT_NE(form.Origin(), "");
        EXPECT_TRUE(form.cmdOk());
    }));
    EXPECT_EQ(type, 33);
    EXPECT_FALSE(form.bDoModal(type, [&] { EXPECT_EQ(form.lstTr(), 23); }));
}

using XY4Tr = ParameterForms;

TEST_F(XY4Tr, TakesAChangedTextOnlyWhenItIsWantedAndReadToItsEnd) {
    const std::string points = "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n";
    engine.AddXY4Tr(ShiftedPairs(4), false);
    engine.ExcludeByIx(1, false);
    engine.SwapSourDest();
    const std::tuple<std::string, Answer, bool, Texts> cases[] = {
        {points, Answer::kNo, true, {}},
        {points, Answer::kCancel, false, {}},
        {points + "D 1 2 3\n", Answer::kYes, false, {"Invalid file format!\r\n3.line"}},
        {points, Answer::kYes, true, {}}};
    for (const auto& [text, answer, confirmed, told] : cases) {
        EXPECT_EQ(engine.lFullCnt() * 10 + engine.lNotUsedCnt(), 41);
        platform.answers = {answer};
        EXPECT_EQ(OpenPoints([&](frmXY4Tr& form) {
                      form.rtBox(text);
                      EXPECT_EQ(form.cmdOk(), confirmed);
                  }),
                  confirmed);
        EXPECT_EQ(platform.messages.front().title, "Data of GCPs");
        platform.messages.erase(platform.messages.begin());
        ExpectTold(told);
    }
    EXPECT_EQ(engine.lFullCnt() * 10 + engine.lNotUsedCnt(), 30);
    EXPECT_TRUE(engine.Held().IsSwapped());
}

TEST_F(XY4Tr, LeavesTheNameOfALoadedFileOutOfThePoints) {
    const std::string points = "α 0 0 100 200\nB 10 0 110 200\n";
    DecimalSeparator(',');
    platform.answers = {Answer::kYes};
    EXPECT_TRUE(OpenPoints([&](frmXY4Tr& form) {
        With(form, &frmXY4Tr::cmdLoad, "loaded.dat", points);
        const std::string text = form.rtBox();
        EXPECT_TRUE(text.starts_with(folder.File("loaded.dat") + "\r\n"));
        EXPECT_EQ(engine.lFullCnt(), 0);
        EXPECT_TRUE(With(form, &frmXY4Tr::cmdSave, "saved.dat").starts_with(folder.File("")));
        form.cmdLoad();  // cancelled
        EXPECT_EQ(form.rtBox(), text);
        form.rtBox(text.substr(0, text.find('\n') + 1) + points + "C 1,5 2,5 3,5 4,5");
        EXPECT_TRUE(form.cmdOk());
    }));
    ASSERT_EQ(engine.lFullCnt(), 3);
    EXPECT_EQ(engine.Pairs()[0].sId, "α") << "no code page may lose a letter";
    const auto expectFile = [&](bool asItWas) {
        ASSERT_EQ(engine.Files().size(), 1U);
        EXPECT_EQ(engine.Files()[0].path, folder.File("loaded.dat"));
        EXPECT_EQ(IsUnchanged(engine.Files()[0]), asItWas);
    };
    expectFile(false);
    platform.answers = {Answer::kYes};
    OpenPoints([&](frmXY4Tr& form) {
        With(form, &frmXY4Tr::cmdLoad, "loaded.dat", points);
        form.cmdOk();
    });
    expectFile(true);
#ifndef _WIN32  // where the folder is below one of the user's already
    struct stat status {};
    ASSERT_EQ(stat(folder.File("caches/KV_Tr").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U) << "the working folder is the user's only";
#endif
}

TEST(bChooseTrPrm, TakesWhatIsConfirmedAndForgetsWhatACancelledDialogHasLeft) {
    std::string stopAt;
    bool (frmChoosePrm::*button)() = nullptr;
    const auto choose = [&](frmChoosePrm& form) {
        EXPECT_EQ((form.*button)(), stopAt.empty()) << stopAt << ": the button closes the dialog";
    };
    const auto edit = [&](frmAffinTrPrm& form) {
        form.txtTrPrm(0, "5");
        if (stopAt != "editor") form.cmdOk();
    };
    const auto view = [](frmPoliTrPrm& form) { form.cmdOk(); };
    const auto list = [&](frmXY4Tr& form) { stopAt != "list" && form.cmdOk(); };
    const auto adjust = [&](frmTr& form) {
        form.Grid1DblClick(1, 1);
        if (stopAt != "adjustment") form.cmdApplyResult();
    };
    RecordingPlatform platform(kEnglish, MakeDialogs({.tr = adjust,
                                                      .chooseParameters = choose,
                                                      .affine = edit,
                                                      .polynomial = view,
                                                      .controlPoints = list}));
    const TemporaryFolder folder;
    const std::string points = folder.File("points.dat");
    WriteFile(points, "Bad 5 5 9 9\nA 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n");
    clsTr transformation;
    using Chooser = frmChoosePrm;
    const std::tuple<bool (Chooser::*)(), const char*, double> steps[] = {
        {&Chooser::cmdAffin, "editor", 0}, {&Chooser::cmdAffin, "", 5},
        {&Chooser::cmdPoli, "", 5},        {&Chooser::cmdCalc, "file", 5},
        {&Chooser::cmdCalc, "list", 5},    {&Chooser::cmdCalc, "adjustment", 5},
        {&Chooser::cmdOk, "", 5},          {&Chooser::cmdCalc, "", 100}};
    for (const auto& [pressed, stop, shift] : steps) {
        button = pressed;
        stopAt = stop;
        platform.choices = {FileChoice{stopAt == "file" ? folder.File("gone.dat") : points}};
        EXPECT_EQ(transformation.bChooseTrPrm(), stopAt.empty()) << stop;
        EXPECT_NEAR(transformation.udtTrPrm().dA0, shift, 1e-9) << stop;
    }
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_AFFIN);
}

}  // namespace
}  // namespace kv_tr::test
