// What the desktop program does with control points: when it takes them, and when it lets them be.
#include <gtest/gtest.h>

#include <numeric>

#include "desktop/desktop_form.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/forms/dialogs.h"

namespace kv_tr::test {
namespace {

using desktop::DesktopForm;
using Kind = DesktopForm::FileKind;

/// The desktop program with the adjustment dialog played by a script.
class DesktopAdjustment : public testing::Test {
protected:
    using Script = std::function<void(frmTr&)>;

    Script script;
    std::function<void(frmChoosePrm&)> choose;
    RecordingPlatform platform{
        kEnglish,
        MakeDialogs({.tr = [this](frmTr& dialog) { script(dialog); },
                     .chooseParameters = [this](frmChoosePrm& chooser) { choose(chooser); },
                     .controlPoints = [](frmXY4Tr& list) { list.cmdOk(); }})};
    const TemporaryFolder folder;
    DesktopForm form{*platform.texts};
    const std::string points = File("points.dat",
                                    "A 0 0 1000 200\nB 10 0 1010 200\nC 0 10 1000 210\n"
                                    "D 10 10 1010 210.3\nE 20 10 1020 210\n");
    const std::string others = File("others.dat", "X 0 0 5 5\nY 9 0 14 5\nZ 0 9 5 14\n");

    std::string File(const std::string& name, const std::string& text) const {
        WriteFile(folder.File(name), text);
        return folder.File(name);
    }
    static void Apply(frmTr& dialog) { dialog.cmdApplyResult(); }

    /// What the table shows of the pairs when the adjustment is opened again, without changing it.
    std::string Table() {
        std::string table;
        const Script before = std::exchange(script, [&table](frmTr& dialog) {
            std::vector<int> rows(static_cast<std::size_t>(dialog.Table().RowCount() - 1));
            std::iota(rows.begin(), rows.end(), 1);
            table = dialog.Table().TableText(rows) + dialog.ControlTexts().TextOf("lblExtCnt") +
                    (dialog.InverseChecked() ? " inverse " : " ") +
                    std::to_string(dialog.SelectedType());
        });
        form.Adjust();
        script = before;
        return table;
    }
};

TEST_F(DesktopAdjustment, CancelPutsThePointsBack) {
    script = [](frmTr& dialog) {
        dialog.Grid1DblClick(4, 1);
        Apply(dialog);
    };
    form.OpenFile(points);
    const std::string before = Table();
    EXPECT_NE(before.find("Excluded:1"), std::string::npos) << before;
    const TR_PRM record = form.Record();

    const std::pair<const char*, Script> changes[] = {
        {"inverse", [](frmTr& dialog) { dialog.chkInverz(); }},
        {"exclusion", [](frmTr& dialog) { dialog.Grid1DblClick(1, 1); }},
        {"resumption", [](frmTr& dialog) { dialog.cmsResetExt(); }},
        {"deletion", [](frmTr& dialog) { dialog.cmdRemoveExt(); }},
        {"type", [](frmTr& dialog) { dialog.RadioTrType(0); }},
        {"edit", [](frmTr& dialog) { dialog.Table().SetCell(2, 2, "77"); }},
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        script = [&change](frmTr& dialog) {
            change(dialog);
            dialog.cmdExit();
        };
        form.Adjust();
        EXPECT_EQ(Table(), before);
        EXPECT_EQ(double{form.Record().dA0}, double{record.dA0});
    }
}

TEST_F(DesktopAdjustment, ShowsTheInverseBoxAsThePointsAre) {
    script = [](frmTr& dialog) {
        dialog.chkInverz();
        dialog.opMode(frmTr::Mode::kEdit);
        dialog.Table().SetCell(1, 1, "edited");
        dialog.Grid1DblClick(4, 1);
        dialog.cmdRemoveExt();
        EXPECT_TRUE(dialog.InverseChecked());
        Apply(dialog);
    };
    form.OpenFile(points);
    EXPECT_NE(Table().find(" inverse "), std::string::npos);
    script = [](frmTr& dialog) {
        dialog.chkInverz();
        dialog.cmdExit();
    };
    form.Adjust();
    EXPECT_NE(Table().find(" inverse "), std::string::npos) << "cancelled";
    script = Apply;
    form.OpenFile(others);
    EXPECT_EQ(Table().find(" inverse "), std::string::npos) << "other points";
}

TEST_F(DesktopAdjustment, KeepsThePointsUntilOthersAreFitted) {
    script = Apply;
    form.OpenFile(points);
    const std::string before = Table();
    script = [](frmTr& dialog) { dialog.cmdExit(); };
    form.OpenFile(others);
    EXPECT_EQ(Table(), before);
    platform.choices = {FileChoice{others}};
    form.OpenControlPoints();
    EXPECT_EQ(Table(), before);

    choose = [&](frmChoosePrm& chooser) {
        platform.choices = {FileChoice{others}};
        script = [](frmTr& dialog) { dialog.cmdExit(); };
        EXPECT_FALSE(chooser.cmdCalc());
        chooser.cmdOk();  // the present parameters stay, and so do their points
    };
    form.ChooseParameters();
    EXPECT_EQ(Table(), before);
    choose = [&](frmChoosePrm& chooser) {
        platform.choices = {FileChoice{others}};
        script = Apply;
        EXPECT_TRUE(chooser.cmdCalc());
    };
    form.ChooseParameters();
    EXPECT_NE(Table(), before) << "the fit was taken";
}

TEST_F(DesktopAdjustment, AsksBeforeItTakesWhatMayBeHeightsForControlPoints) {
    script = Apply;
    form.OpenFile(points);
    const std::string before = Table();
    const std::string likely[] = {
        "A 0 0 1000 200\nB 10 0 1010 200\nC 0 10 1000 210\n",
        "A 0 0 200 1000\nB 10 0 200 1010\nC 0 10 210 1000\n",  // axes exchanged
        "A 650000 240000 -342.1 -126.6\nB 651896 240000 657.9 -126.6\nC 650000 241896 -342 873\n",
    };
    const std::string unlikely[] = {
        "1 650012.31 240001.17 112.40 5\n2 650420.02 240310.50 118.11 5\n3 650100 240800 109.2 7\n",
        "1 650012.31 240001.17 112.40 155.3\n2 650420.02 240310.50 118.11 161.0\n",
        "1 650012,31 240001,17\n2 650420,02 240310,50\n3 650100,12 240800,77\n",
        "1 650012,31 240001,17\n2 650100,50 240010,20\n",
        "1 650012,31 240001,17 112,4 5\n2 650420,02 240310,50 118,11 5\n3 650100 240800 109 7\n",
        "1 650012.31 240001.17 112.40 5\n2 650420 240310 118.11 507\n3 650100 240800 109 340\n",
        "1 5 5 100 100\n1 5 5 100 100\n",
        "1 650012.31 240001.17 112.40 5\n2 650420.02 240310.50 118.11 5\n3 650100 240800 109.2\n",
    };
    int asked = 0;
    script = [](frmTr& dialog) { dialog.cmdExit(); };
    for (const std::string& text : likely) {
        EXPECT_EQ(form.OpenFile(File("likely.txt", text)), Kind::kControlPoints);
        EXPECT_EQ(platform.TakeTexts().size(), 0U) << text;
    }
    for (const char* name : {"swiss_helmert_9", "tidop_helmert_7", "georef_similarity_3"}) {
        form.OpenFile(EXAMPLES "/" + std::string(name) + ".dat");
        EXPECT_EQ(platform.TakeTexts().size(), 0U) << name;
    }
    script = [&asked](frmTr&) { ++asked; };
    for (const std::string& text : unlikely) {
        SCOPED_TRACE(text);
        const std::string file = File("unlikely.txt", text);
        for (const Answer answer : {Answer::kCancel, Answer::kNo}) {
            platform.answers = {answer};
            EXPECT_EQ(form.OpenFile(file),
                      answer == Answer::kNo ? Kind::kCoordinates : Kind::kControlPoints);
            const auto texts = platform.TakeTexts();
            ASSERT_EQ(texts.size(), 1U);
            EXPECT_TRUE(texts[0].starts_with(file + "\r\n\r\nDoes this file hold control points"));
        }
    }
    EXPECT_EQ(asked, 0) << "the adjustment was opened without being wanted";
    platform.answers = {Answer::kYes};
    form.OpenFile(File("unlikely.txt", unlikely[0]));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(Table(), before);
}

TEST_F(DesktopAdjustment, StaysOnTheStartPageUntilParametersAreTaken) {
    EXPECT_TRUE(form.OnStartPage());
    form.ShowStartPage(false);
    EXPECT_TRUE(form.OnStartPage()) << "there is nothing else to show";
    script = Apply;
    form.OpenFile(points);
    EXPECT_FALSE(form.OnStartPage());
    form.ShowStartPage(true);
    form.SwitchLanguage(kVietnamese);
    script = [](frmTr& dialog) { dialog.cmdExit(); };
    form.Adjust();
    EXPECT_TRUE(form.OnStartPage()) << "nothing was taken";
    form.ShowStartPage(false);
    EXPECT_FALSE(form.OnStartPage());
    form.ShowStartPage(true);
    script = Apply;
    form.Adjust();
    EXPECT_FALSE(form.OnStartPage());
}

}  // namespace
}  // namespace kv_tr::test
