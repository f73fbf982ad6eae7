// The desktop program without its windows: its files, its parameters and its control points.
#include "desktop/desktop_form.h"

#include <gtest/gtest.h>

#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/forms/dialogs.h"

namespace kv_tr::test {
namespace {

using desktop::DesktopForm;
using Kind = DesktopForm::FileKind;

class Desktop : public testing::Test {
protected:
    RecordingPlatform platform;
    const TemporaryFolder folder;
    DesktopForm form{*platform.texts};

    explicit Desktop(std::unique_ptr<Dialogs> dialogs = {})
        : platform(kEnglish, std::move(dialogs)) {}
    std::string File(const std::string& name, const std::string& text) const {
        WriteFile(folder.File(name), text);
        return folder.File(name);
    }
};

TEST_F(Desktop, TakesEveryKindOfFileForWhatItIsAndRemembersTheGoodOnes) {
    const std::string points = "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n";
    const std::tuple<std::string, std::string, Kind, bool, std::string> cases[] = {
        // name, text, kind, whether there are parameters then, beginning of the message
        {"coordinates.txt", "\nA 1 2 3\n", Kind::kCoordinates, false, ""},
        {"bad.trp", "0 1 x", Kind::kParameters, false, "Invalid file format!\r\n"},
        {"broken.dat", points + "D 5 x 1 1\n", Kind::kControlPoints, false, ""},
        {"header.csv", "id;y1;x1;y2;x2\nA;0;0;100;x\n", Kind::kControlPoints, false, ""},
        {"town.kvtr", "{}", Kind::kProject, false, ""},
        {"heights.csv", "id;y1;x1;h\nA;0;0;100\n", Kind::kCoordinates, false, ""},
        {"commas.dat", "A 1,5 2,5 3,5 4,5\nB 9,5 2,5 11,5 4,5\n", Kind::kControlPoints, false, ""},
        {"shift.trp", "100,000\n1,0\n0,0\n200,000\n0,0\n1,0\n", Kind::kParameters, true, ""},
        {"proj.txt", "+proj=affine +xoff=5\n", Kind::kParameters, true, ""},
        {"town.json", "{\"format\":\"plane-transformation\",\"version\":2}", Kind::kParameters,
         true, "Invalid file format!\r\n"},
        {"m.tfw", "1\n0\n0\n-1\n5\n6\n", Kind::kParameters, true, ""},
        {"pairs.json", "{\"type\":\"FeatureCollection\",\"features\":0}", Kind::kControlPoints,
         true, ""},
        {"order1.all", "t\n\n sy = 0 sx = 0\n1 5 6\n2 1 0\n3 0 1\n", Kind::kParameters, true, ""},
    };
    for (const auto& [name, text, kind, parameters, message] : cases) {
        SCOPED_TRACE(name);
        const std::string path = File(name, text);
        EXPECT_EQ(form.OpenFile(path), kind);
        EXPECT_EQ(form.HasParameters(), parameters);
        auto texts = platform.TakeTexts();
        texts.resize(1);
        EXPECT_TRUE(texts[0].starts_with(message));
        EXPECT_EQ(texts[0].empty(), message.empty());
    }
    EXPECT_EQ(form.Image({"1", "2"}).first, "6.000");
    platform.choices = {FileChoice{File("six.txt", "1 2 3 4 5 6")}};
    form.OpenParameters();
    EXPECT_EQ(form.Image({"1", "2"}).first, "9.000") << "whatever the name says";

    EXPECT_EQ(DesktopForm(*platform.texts).Recent(),
              (std::vector{folder.File("six.txt"), folder.File("order1.all"), folder.File("m.tfw"),
                           folder.File("proj.txt"), folder.File("shift.trp")}));
}

TEST_F(Desktop, TransformsWhatIsTypedAndKeepsParametersThatNoDialogConfirmed) {
    form.OpenFile(File("turn.trp", "100\n0\n-1\n200\n1\n0\n"));
    EXPECT_EQ(form.Image({"1,5", " 2.5"}).first, "97.500");
    EXPECT_EQ(form.ImageOfDirection("100", app::AngleUnits()[2], "9", {"0", "0"}).image,
              "200.0000000");
    form.Invert();
    EXPECT_EQ(form.Image({"97.5", "201.5"}).first, "1.500");
    platform.nationalChoice = TR_HER_STG;
    for (const bool confirmed : {false, true}) {
        platform.confirm = confirmed;
        form.ChooseNational();
        EXPECT_EQ(form.Record().eType == TR_HER_STG, confirmed);
        EXPECT_EQ(form.CanInvert(), !confirmed);
    }
    form.SwitchLanguage(kHungarian);
    EXPECT_EQ(DesktopForm::RememberedLanguage(kEnglish), kHungarian);
}

TEST_F(Desktop, RefusesNamesThatBelongToTheOtherKindOfParameters) {
    const auto save = [&](const std::string& name) {
        platform.choices = {FileChoice{folder.File(name)}};
        form.SaveParameters();
        return std::filesystem::exists(folder.File(name));
    };
    form.OpenFile(File("linear.trp", "100\n0\n-1\n200\n1\n0\n"));
    EXPECT_TRUE(!save("linear.ALL") && save("other.PRM"));
    platform.nationalChoice = TR_STG_HER;
    form.ChooseNational();
    EXPECT_TRUE(!save("polynomial.trp") && !save("polynomial.prm") && save("polynomial.all"));
    EXPECT_EQ(platform.TakeTexts().size(), 3U);
    form.OpenFile(folder.File("other.PRM"));
    EXPECT_EQ(form.Image({"1.5", "2.5"}).first, "97.500") << "reads what was saved";
}

/// The desktop program with the adjustment dialog played by a script.
class DesktopAdjustment : public Desktop {
protected:
    using Script = std::function<void(frmTr&)>;

    Script script;
    std::function<void(frmChoosePrm&)> choose;
    const std::vector<ControlPoint> points{{"A", {0, 0}, {1000, 200}},
                                           {"B", {10, 0}, {1010, 200}},
                                           {"C", {0, 10}, {1000, 210}},
                                           {"D", {10, 10}, {1010, 210.3}},
                                           {"E", {20, 10}, {1020, 210}, false}};
    const std::string others = File("others.dat", "X 0 0 5 5\nY 9 0 14 5\nZ 0 9 5 14\n");

    DesktopAdjustment()
        : Desktop(
              MakeDialogs({.tr = [this](frmTr& dialog) { script(dialog); },
                           .chooseParameters = [this](frmChoosePrm& chooser) { choose(chooser); },
                           .controlPoints = [](frmXY4Tr& list) { list.cmdOk(); }})) {}
    static void Apply(frmTr& dialog) { dialog.cmdApplyResult(); }
};

TEST_F(DesktopAdjustment, TakesTheParametersThatAreAppliedAndNoOthers) {
    std::string table;
    script = [&table](frmTr& dialog) {
        table = dialog.Table().TableText(std::vector{5});
        dialog.RadioTrType(0);
        dialog.Grid1DblClick(4, 1);
        dialog.cmdExit();
    };
    form.Adjust(points, Type::kAffine);
    EXPECT_NE(table.find("E\t20\t10\t1020\t210"), table.npos) << table;
    EXPECT_FALSE(form.HasParameters());
    script = [](frmTr& dialog) {
        dialog.Grid1DblClick(4, 1);
        Apply(dialog);
    };
    form.Adjust(points, Type::kAffine);
    EXPECT_EQ(form.Record().eType, TR_AFFIN);
    EXPECT_EQ(form.Image({"5", "7"}).second, "207.000") << "without D, which is 0.3 m off";
    script = [](frmTr& dialog) { dialog.RadioTrType(0), dialog.cmdExit(); };
    form.Adjust(points, Type::kAffine);
    EXPECT_EQ(form.Record().eType, TR_AFFIN);
    choose = [&](frmChoosePrm& chooser) {
        if (!chooser.cmdCalc()) chooser.cmdOk();  // the present parameters stay
    };
    for (const bool taken : {false, true}) {
        platform.choices = {FileChoice{others}};
        script = [taken](frmTr& dialog) { taken ? dialog.cmdApplyResult() : dialog.cmdExit(); };
        form.ChooseParameters();
        EXPECT_EQ(form.Image({"5", "7"}).first, taken ? "10.000" : "1005.000");
    }
    form.TakeFit({.type = Type::kHelmert, .a = {7, 1}, .b = {8, 0, 1}});
    EXPECT_EQ(form.Image({"5", "7"}).first, "12.000");
}

TEST_F(Desktop, AsksBeforeItTakesWhatMayBeHeightsForControlPoints) {
    const std::string likely[] = {
        "A 0 0 200 1000\nB 10 0 200 1010\nC 0 10 210 1000\n",  // axes exchanged
        "A 650000 240000 -342.1 -126.6\nB 651896 240000 657.9 -126.6\nC 650000 241896 -342 873\n",
        "A 0 0 100 200\nB 1 90 101 290\nC 2 30 102 230\n",  // along the second axis
    };
    const std::string unlikely[] = {
        "1 650012.31 240001.17 112.40 155.3\n2 650420.02 240310.50 118.11 161.0\n",
        "1 650012,31 240001,17\n2 650420,02 240310,50\n3 650100,12 240800,77\n",
        "1 650012.31 240001.17 112.40 5\n2 650420 240310 118.11 507\n3 650100 240800 109 340\n",
        "1 5 5 100 100\n1 5 5 100 100\n",
        "1 650012.31 240001.17 112.40 5\n2 650420.02 240310.50 118.11 5\n3 650100 240800 109.2\n",
    };
    for (const std::string& text : likely)
        EXPECT_EQ(form.OpenFile(File("likely.txt", text)), Kind::kControlPoints);
    EXPECT_EQ(form.OpenFile(EXAMPLES "/swiss_helmert_9.dat"), Kind::kControlPoints);
    EXPECT_EQ(platform.messages.size(), 0U);
    for (const std::string& text : unlikely) {
        SCOPED_TRACE(text);
        const std::string file = File("unlikely.txt", text);
        for (const auto& [answer, kind] : {std::pair{Answer::kCancel, Kind::kUnwanted},
                                           {Answer::kNo, Kind::kCoordinates},
                                           {Answer::kYes, Kind::kControlPoints}}) {
            platform.answers = {answer};
            EXPECT_EQ(form.OpenFile(file), kind);
            EXPECT_TRUE(platform.TakeTexts().at(0).starts_with(file));
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
