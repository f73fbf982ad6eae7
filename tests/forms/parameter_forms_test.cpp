// The rules of the parameter editors, the choosers and the control-point list, as plain calls.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmAffinTrPrm.h"
#include "kv_tr/forms/frmChooseDAT2M1.h"
#include "kv_tr/forms/frmChoosePrm.h"
#include "kv_tr/forms/frmPoliTrPrm.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/working_folder.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::test {
namespace {

constexpr char kPoints[] = "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n";

/// Each plays a dialog on the transformation and closes it when the script is over.
class ParameterForms : public testing::Test {
protected:
    using Texts = std::vector<std::string>;

    RecordingPlatform platform;
    const TemporaryFolder folder;
    clsTr transformation;

    ParameterForms() { setenv("XDG_CACHE_HOME", folder.File("caches").c_str(), 1); }

    template <class Form>
    bool Open(const std::function<void(Form&)>& script) {
        Form form;
        return form.bDoModal(transformation, [&] { script(form); });
    }
    bool OpenPoints(const std::function<void(frmXY4Tr&)>& script, const std::string& title = {}) {
        frmXY4Tr form;
        return form.bDoModal(*transformation.oCalcTr(), title, [&] { script(form); });
    }

    /// The name of a file with this text, which the next chooser yields.
    std::string Choose(const std::string& name, const std::string& text) {
        if (!text.empty()) WriteFile(folder.File(name), text);
        platform.choices.push_back(FileChoice{.path = folder.File(name)});
        return folder.File(name);
    }
    std::vector<Message> TakeMessages() { return std::exchange(platform.messages, {}); }
    /// Expects that the user was told this with an exclamation mark, and nothing else.
    void ExpectTold(const std::string& beginning) {
        const auto messages = TakeMessages();
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_TRUE(messages[0].text.starts_with(beginning)) << messages[0].text;
        EXPECT_EQ(messages[0].icon, Icon::kExclamation);
    }
};

using AffinTrPrm = ParameterForms;

TEST_F(AffinTrPrm, TakesNumbersAndWritesThemBackWhicheverWayItIsClosed) {
    TR_PRM exact = RecordOf({});
    exact.eType = TR_AFFIN;
    exact.dA0 = 1.00049;
    transformation.udtTrPrm(exact);
    EXPECT_FALSE(Open<frmAffinTrPrm>([&](frmAffinTrPrm& form) {
        EXPECT_EQ(form.BoxText(0), "1.000");
        EXPECT_TRUE(form.txtTrPrm(0, "1.000"));
        EXPECT_TRUE(form.txtTrPrm(2, " -0,5"));
        EXPECT_TRUE(form.txtTrPrm(4, "2e1"));
        EXPECT_FALSE(form.txtTrPrm(1, "one"));
        EXPECT_EQ(TakeMessages().back().title, "Wrong value!");
        EXPECT_EQ(form.SampleText(0), " Y' = [1.000] + [1.00000000] * Y + [-0.50000000] * X");
        EXPECT_EQ(form.SampleText(1), " X' = [0.000] + [20.00000000] * Y + [1.00000000] * X");
        EXPECT_FALSE(form.FathomButtonsVisible());
    }));
    const TR_PRM record = transformation.udtTrPrm();
    EXPECT_EQ(record.eType, TR_AFFIN);
    EXPECT_EQ(double{record.dA0}, 1.00049) << "a box that was left as it is does not round";
    EXPECT_EQ(double{record.dA2}, -0.5);
    EXPECT_EQ(double{record.dB1}, 20.0);
}

TEST_F(AffinTrPrm, AsksOnlyBeforeTheExactIdentity) {
    const auto ok = [](frmAffinTrPrm& form) { form.cmdOk(); };
    EXPECT_FALSE(Open<frmAffinTrPrm>(ok));
    const Message question = TakeMessages().back();
    EXPECT_EQ(question.defaultAnswer, Answer::kNo);
    EXPECT_TRUE(question.text.ends_with("!\r\nStart transformation?"));
    platform.answers = {Answer::kYes};
    EXPECT_TRUE(Open<frmAffinTrPrm>(ok));
    EXPECT_EQ(TakeMessages().size(), 1U);
    EXPECT_TRUE(Open<frmAffinTrPrm>([](frmAffinTrPrm& form) {
        form.txtTrPrm(1, "1.000000001");
        EXPECT_TRUE(form.cmdOk());
    }));
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(AffinTrPrm, LoadsAndSavesInTheOrderOfTheExtension) {
    platform.texts->SwitchLanguage(kHungarian, {});
    Open<frmAffinTrPrm>([&](frmAffinTrPrm& form) {
        EXPECT_TRUE(form.FathomButtonsVisible());
        form.cmdOlMeter();
        EXPECT_EQ(form.BoxText(5), "1.89648384");
        Choose("bad.trp", "7 x");
        form.cmdLoad();
        ExpectTold(GetMlString(74, {}));
        Choose("gone.trp", "");
        form.cmdLoad();
        ExpectTold(GetMlString(70, {}));
        form.cmdLoad();  // cancelled
        EXPECT_EQ(form.BoxText(1), "1.89648384");
        Choose("in.prm", "1 2 3 4 5 6");
        form.cmdLoad();
        EXPECT_EQ(form.SampleText(0), " Y' = [1.000] + [3.00000000] * Y + [5.00000000] * X");
        form.txtTrPrm(0, "99");
        const std::string refused = Choose("out.all", "");
        form.cmdSave();
        EXPECT_FALSE(std::filesystem::exists(refused));
        EXPECT_EQ(TakeMessages().size(), 1U);
        const std::string saved = Choose("out.PRM", "");
        form.cmdSave();
        EXPECT_EQ(ReadFile(saved).substr(0, 14), "1.000\r\n2.000\r\n") << "what was loaded";
    });
    EXPECT_EQ(double{transformation.udtTrPrm().dA0}, 99.0);
    EXPECT_EQ(double{transformation.udtTrPrm().dB0}, 2.0);

    transformation.udtTrPrmByDAT2M1(TR_STG_HER);
    Open<frmAffinTrPrm>([&](frmAffinTrPrm& form) {
        EXPECT_EQ(form.BoxText(1), "1.00000000");
        const std::string saved = Choose("none.trp", "");
        form.cmdSave();
        EXPECT_EQ(TakeMessages().size(), 1U);
        EXPECT_FALSE(std::filesystem::exists(saved));
    });
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_HELMERT);
}

using PoliTrPrm = ParameterForms;

TEST_F(PoliTrPrm, AsksOnlyAboutAChangedTextAndTakesItWholeOrNotAtAll) {
    transformation.udtTrPrmByDAT2M1(TR_STG_HER);
    const TR_PRM before = transformation.udtTrPrm();
    EXPECT_TRUE(Open<frmPoliTrPrm>([](frmPoliTrPrm& form) {
        form.rtBox(form.rtBox() + "x");
        form.rtBox(form.rtBox().substr(0, form.rtBox().size() - 1));
        EXPECT_TRUE(form.cmdOk());
    }));
    EXPECT_EQ(double{transformation.udtTrPrm().dA4}, double{before.dA4});
    EXPECT_TRUE(TakeMessages().empty());

    const std::string order1 = "t\r\n\r\n sy = 7 sx = 8\r\n1 1 2\r\n2 3 4\r\n3 5 6\r\n";
    const struct {
        std::string text;
        std::deque<Answer> answers;
        bool accepted;
        enuTR_TYPE type;
        std::size_t messages;
    } cases[] = {
        {order1, {}, true, TR_STG_HER, 1},  // the default is to drop the change
        {order1, {Answer::kCancel}, false, TR_STG_HER, 1},
        {order1 + "4 7 x\r\n", {Answer::kYes}, false, TR_STG_HER, 2},
        {"", {Answer::kYes}, false, TR_STG_HER, 2},
        {order1, {Answer::kYes}, true, TR_POLI_1, 1},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.text);
        platform.answers = expected.answers;
        EXPECT_EQ(Open<frmPoliTrPrm>([&](frmPoliTrPrm& form) {
                      form.rtBox(expected.text);
                      EXPECT_EQ(form.cmdOk(), expected.accepted);
                      EXPECT_EQ(form.rtBox(), expected.text);
                  }),
                  expected.accepted);
        EXPECT_EQ(transformation.udtTrPrm().eType, expected.type);
        EXPECT_EQ(TakeMessages().size(), expected.messages);
    }
    EXPECT_EQ(double{transformation.udtTrPrm().dB2}, 4.0);
}

TEST_F(PoliTrPrm, LoadsChoosesAndSavesTheTextAsItStands) {
    const std::string cases[] = {"", "t\n\n1 2\n1 1 1\n2 2 2\n3 3 3\n4 4 4\n5 5 5\n",
                                 "t\n\n1 2\n1 1 1\n2 2 2\n3 3 3\n4 4 1..2\n"};
    transformation.udtTrPrmByDAT2M1(TR_STG_HKR);
    Open<frmPoliTrPrm>([&](frmPoliTrPrm& form) {
        const std::string listing = form.rtBox();
        for (const std::string& text : cases) {
            Choose("bad" + std::to_string(text.size()), text);
            form.cmdLoad();
            EXPECT_EQ(form.rtBox(), listing);
            ExpectTold(GetMlString(text.empty() ? 70 : 74, {}));
        }
        platform.confirm = false;
        platform.nationalChoice = TR_EOV_HDR_10e;
        form.cmdDAT2M1();
        EXPECT_EQ(form.rtBox(), listing);
        platform.confirm = true;
        form.cmdDAT2M1();
        EXPECT_EQ(platform.opened.back(), "national from 11");
        EXPECT_TRUE(form.rtBox().starts_with("EOV-HDR (országos)\r\n"));
        const std::string refused = Choose("saved.trp", "");
        form.cmdSave();
        EXPECT_FALSE(std::filesystem::exists(refused)) << "would not be read as a polynomial";
        EXPECT_EQ(TakeMessages().size(), 1U);
        const std::string saved = Choose("saved.all", "");
        form.rtBox("no\tpolynomial");
        form.cmdSave();
        EXPECT_EQ(ReadFile(saved), "no\tpolynomial");
        EXPECT_EQ(InitDir(), folder.File("").substr(0, folder.File("").size() - 1));
        form.cmdDAT2M1();
        EXPECT_TRUE(form.cmdOk());
    });
    EXPECT_TRUE(TakeMessages().empty());
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_EOV_HDR_10e);
}

using ChooseDAT2M1 = ParameterForms;

TEST_F(ChooseDAT2M1, ListsEveryTypeWithSystemsAccuracyAndOrigin) {
    const auto rows = frmChooseDAT2M1::Rows();
    ASSERT_EQ(rows.size(), 24U);
    EXPECT_EQ(rows[16], (Texts{"STG-EOV (országos)", "STG", "EOV", "0.400", "Hungary"}));
    EXPECT_EQ(frmChooseDAT2M1::Headings().size(), rows[0].size());
    const auto choose = [](enuTR_TYPE type, const std::function<void(frmChooseDAT2M1&)>& script) {
        frmChooseDAT2M1 form;
        const bool confirmed = form.bDoModal(type, [&] { script(form); });
        return confirmed ? type : type * 1000;
    };
    for (const int row : {0, 23}) {
        EXPECT_EQ(choose(TR_POLI_2,
                         [row](frmChooseDAT2M1& form) {
                             EXPECT_FALSE(form.cmdOk()) << "nothing is selected yet";
                             form.lstTr(row);
                             EXPECT_NE(form.Origin(), "");
                             EXPECT_TRUE(form.cmdOk());
                         }),
                  10 + row);
    }
    EXPECT_EQ(choose(TR_BOV_HKR, [](frmChooseDAT2M1& form) { EXPECT_TRUE(form.cmdOk()); }), 22);
    EXPECT_EQ(choose(TR_BOV_HKR, [](frmChooseDAT2M1& form) { form.lstTr(0); }), 22000);
}

using XY4Tr = ParameterForms;

TEST_F(XY4Tr, TakesAChangedTextOnlyWhenItIsWantedAndReadToItsEnd) {
    clsTrCalc& engine = *transformation.oCalcTr();
    engine.AddXY4Tr(ShiftedPairs(4), false);
    engine.ExcludeByIx(1, false);
    const std::string listing = engine.sListXYs();
    EXPECT_TRUE(OpenPoints([&](frmXY4Tr& form) {
        EXPECT_EQ(form.ControlTexts().TextOf("frmXY4Tr"), " GCPs");
        EXPECT_EQ(form.rtBox(), listing);
        EXPECT_TRUE(form.cmdOk());
    }));
    EXPECT_TRUE(TakeMessages().empty());

    const struct {
        std::string text;
        std::deque<Answer> answers;
        bool confirmed;
        std::int32_t pairs;
        std::string line{};  // that is told to be bad
    } cases[] = {
        {kPoints, {}, true, 4},
        {kPoints, {Answer::kCancel}, false, 4},
        {std::string(kPoints) + "D 1 2 3\n", {Answer::kYes}, false, 4, "3.line"},
        {"A 0 0\n", {Answer::kYes}, false, 4, "1.line"},
        {kPoints, {Answer::kYes}, true, 3},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.text);
        platform.answers = expected.answers;
        EXPECT_EQ(OpenPoints(
                      [&](frmXY4Tr& form) {
                          EXPECT_EQ(form.ControlTexts().TextOf("frmXY4Tr"), "title");
                          form.rtBox(expected.text);
                          EXPECT_EQ(form.cmdOk(), expected.confirmed);
                      },
                      "title"),
                  expected.confirmed);
        EXPECT_EQ(engine.lFullCnt(), expected.pairs);
        EXPECT_EQ(engine.lNotUsedCnt(), expected.pairs == 4 ? 1 : 0);
        const auto messages = TakeMessages();
        EXPECT_EQ(messages.front().title, "Data of GCPs");
        EXPECT_EQ(messages.size(), expected.line.empty() ? 1U : 2U);
        if (expected.line.empty()) continue;
        EXPECT_EQ(messages.back().text, "Invalid file format!\r\n" + expected.line);
        EXPECT_EQ(messages.back().icon, Icon::kExclamation);
    }
}

TEST_F(XY4Tr, LeavesTheNameOfALoadedFileOutOfThePoints) {
    const std::string loaded = Choose("loaded.dat", "α 0 0 100 200\nB 10 0 110 200\n");
    platform.answers = {Answer::kYes};
    EXPECT_TRUE(OpenPoints([&](frmXY4Tr& form) {
        form.cmdLoad();
        EXPECT_TRUE(form.rtBox().starts_with(loaded + "\r\n"));
        EXPECT_EQ(transformation.oCalcTr()->lFullCnt(), 0);
        const std::string saved = Choose("saved.dat", "");
        form.cmdSave();
        EXPECT_EQ(platform.requests.back().initialFolder, "");
        EXPECT_TRUE(ReadFile(saved).starts_with(loaded + "\r\n"));
        const std::string text = form.rtBox();
        form.cmdLoad();  // cancelled
        EXPECT_EQ(form.rtBox(), text);
        form.rtBox(loaded + "\r\nα 0 0 100 200\nB 10 0 110 200\n");
        EXPECT_TRUE(form.cmdOk());
    }));
    const auto pairs = transformation.oCalcTr()->Pairs();
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].sId, "α") << "no code page may lose a letter";

    DecimalSeparator(',');
    platform.answers = {Answer::kYes};
    EXPECT_TRUE(OpenPoints([](frmXY4Tr& form) {
        form.rtBox(form.rtBox() + "C 1,5 2,5 3,5 4,5");
        EXPECT_TRUE(form.cmdOk());
    }));
    ASSERT_EQ(transformation.oCalcTr()->lFullCnt(), 3);
    EXPECT_EQ(transformation.oCalcTr()->Pairs()[1].dXdest, 110.0);
    EXPECT_EQ(transformation.oCalcTr()->Pairs()[2].dYdest, 4.5);
}

using WorkingFolder = ParameterForms;
TEST_F(WorkingFolder, IsTheUsersOnlyAndKeepsTheLastText) {
    WriteWorkingFile("tmp-PoliPrm.all", "a longer text");
    const std::string path = WriteWorkingFile("tmp-PoliPrm.all", "text");
    EXPECT_EQ(ReadFile(path), "\xEF\xBB\xBFtext");
    struct stat status {};
    ASSERT_EQ(stat(std::filesystem::path(path).parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_THROW(WriteWorkingFile("tmp-PoliPrm.all", "text"), RuntimeError);
}

}  // namespace
}  // namespace kv_tr::test
