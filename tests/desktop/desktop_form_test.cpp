// The desktop program without its windows.
#include "desktop/desktop_form.h"

#include <gtest/gtest.h>

#include "desktop/transform_form.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"

namespace kv_tr::test {
namespace {

using desktop::DesktopForm;
using desktop::TransformForm;
using Kind = DesktopForm::FileKind;

class Desktop : public testing::Test {
protected:
    RecordingPlatform platform;
    const TemporaryFolder folder;
    DesktopForm form{*platform.texts};

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
        {"gone.all", "", Kind::kParameters, false, "File open error:"},
        {"broken.dat", points + "D 5 x 1 1\n", Kind::kControlPoints, false, "{}, line 4: "},
        {"empty.dat", "\n\n", Kind::kCoordinates, false, ""},
        {"commas.dat", "A 1,5 2,5 3,5 4,5\nB 9,5 2,5 11,5 4,5\n", Kind::kControlPoints, false,
         "{}: commas "},
        {"shift.trp", "100,000\n1,0\n0,0\n200,000\n0,0\n1,0\n", Kind::kParameters, true, ""},
        {"order1.all", "t\n\n sy = 0 sx = 0\n1 5 6\n2 1 0\n3 0 1\n", Kind::kParameters, true, ""},
    };
    for (const auto& [name, text, kind, parameters, message] : cases) {
        SCOPED_TRACE(name);
        const std::string path = text.empty() ? folder.File(name) : File(name, text);
        EXPECT_EQ(form.OpenFile(path), kind);
        EXPECT_EQ(form.HasParameters(), parameters);
        const auto texts = platform.TakeTexts();
        ASSERT_EQ(texts.size(), message.empty() ? 0 : 1);
        if (!message.empty()) {
            EXPECT_TRUE(texts[0].starts_with(message.starts_with("{}") ? path + message.substr(2)
                                                                       : message))
                << texts[0];
        }
    }
    EXPECT_EQ(form.Image({"1", "2"}).first, "6.000");
    platform.choices = {FileChoice{File("six.txt", "1 2 3 4 5 6")},
                        FileChoice{folder.File("empty.dat")}};
    form.OpenParameters();
    EXPECT_EQ(form.Image({"1", "2"}).first, "9.000") << "whatever the name says";
    form.OpenControlPoints();
    EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{GetMlString(97, {})});
    EXPECT_TRUE(platform.opened.empty());

    platform.confirm = false;
    EXPECT_EQ(form.OpenFile(File("good.dat", points)), Kind::kControlPoints);
    EXPECT_EQ(platform.opened, std::vector<std::string>{"apply"});
    EXPECT_EQ(form.Image({"1", "2"}).first, "9.000") << "a cancelled fit takes nothing";
    EXPECT_FALSE(form.HasControlPoints());
    platform.confirm = true;
    form.OpenFile(folder.File("good.dat"));
    EXPECT_EQ(form.Record().eType, TR_AFFIN);

    const std::vector<std::string> recent{folder.File("good.dat"), folder.File("six.txt"),
                                          folder.File("order1.all"), folder.File("shift.trp")};
    EXPECT_EQ(form.Recent(), recent);
    EXPECT_EQ(DesktopForm(*platform.texts).Recent(), recent);
}

TEST_F(Desktop, TransformsWhatIsTypedAndKeepsParametersThatNoDialogConfirmed) {
    form.OpenFile(File("turn.trp", "100\n0\n-1\n200\n1\n0\n"));
    EXPECT_EQ(form.Image({"1,5", " 2.5"}).first, "97.500");
    EXPECT_EQ(form.Image({"1.5", ""}).second, "");
    const auto gon = app::AngleUnits()[2];
    EXPECT_EQ(form.ImageOfDirection("100", gon, "100", {"0", "0"}).image, "200.0000000");
    EXPECT_EQ(form.ImageOfDirection("50", gon, "x", {"0", "0"}).image, "");
    // At 600 km floats are 2^-4 m apart, at 100 m still 2^-17.
    EXPECT_EQ(form.ImageOfDirection("50", gon, "1000", {"0", "600000"}).uncertainty, "0.00398");

    form.Invert();
    EXPECT_EQ(form.Image({"97.5", "201.5"}).first, "1.500");
    platform.confirm = false;
    platform.nationalChoice = TR_HER_STG;
    const TR_PRM before = form.Record();
    form.EditAffine();
    form.ChooseNational();
    EXPECT_EQ(form.Record().eType, before.eType);
    platform.confirm = true;
    form.ChooseNational();
    EXPECT_EQ(form.Record().eType, TR_HER_STG) << "the one that was chosen";
    EXPECT_FALSE(form.CanInvert());

    form.SwitchLanguage(kHungarian);
    EXPECT_EQ(GetMlString(1160, {}), "Fájl");
    EXPECT_EQ(DesktopForm::RememberedLanguage(kEnglish), kHungarian);
}

TEST_F(Desktop, WritesAWholeResultFileOrNone) {
    TR_PRM shift = RecordOf({});
    shift.dA0 = 100;
    TransformForm transform(shift);
    transform.Input(File("in.txt", "A 1 2 stone\r\nB x 2\nC 3 4"));
    const auto run = [&transform] { return transform.Run([](double) { return true; }); };
    ASSERT_EQ(transform.Output(), folder.File("in_tr.txt"));
    ASSERT_EQ(transform.Preview().size(), 3U);
    EXPECT_EQ(transform.Preview()[0].image, "A 101.000 2.000 stone");
    EXPECT_EQ(transform.Preview()[1].image, "");

    EXPECT_FALSE(run());
    EXPECT_TRUE(platform.TakeTexts().front().starts_with(transform.Input() + ", line 2: "));
    transform.Options({.keepGoing = true});
    EXPECT_FALSE(transform.Run([](double done) { return done < 0.5; }));
    const auto files = [this] {
        return std::distance(std::filesystem::directory_iterator(folder.File("")), {});
    };
    EXPECT_EQ(files(), 1);
    EXPECT_TRUE(run());
    const std::string result = "A 101.000 2.000 stone\r\nB x 2\nC 103.000 4.000";
    EXPECT_EQ(ReadFile(transform.Output()), result);

    transform.Options({.noId = true, .keepGoing = true});
    EXPECT_FALSE(run()) << "the default is not to replace a file";
    EXPECT_EQ(ReadFile(transform.Output()), result);
    transform.Output(transform.Input());
    EXPECT_FALSE(run());
    EXPECT_EQ(files(), 2);
}

TEST_F(Desktop, TransformsDecimalCommasOnlyWhenItIsToldOfThem) {
    TR_PRM shift = RecordOf({});
    shift.dA0 = 100;
    TransformForm transform(shift);
    transform.Input(File("in.txt", "A 650012,31 240001,17\r\nB 1 2,5 3,5\r\n"));
    const auto run = [&transform] { return transform.Run([](double) { return true; }); };
    EXPECT_EQ(transform.Preview()[0].image, "");
    EXPECT_FALSE(run());
    EXPECT_EQ(platform.TakeTexts(),
              std::vector<std::string>{
                  transform.Input() +
                  ": the coordinates seem to have decimal commas. If so, tick \"The numbers of the "
                  "file have decimal commas\". If the commas separate fields, replace them by "
                  "semicolons."});
    EXPECT_FALSE(std::filesystem::exists(transform.Output()));
    transform.Options({.decimalComma = true});
    EXPECT_TRUE(run());
    EXPECT_EQ(ReadFile(transform.Output()), "A 650112,310 240001,170\r\nB 101,000 2,500 3,5\r\n");
}

TEST_F(Desktop, RefusesNamesThatBelongToTheOtherKindOfParameters) {
    const auto save = [&](const std::string& name) {
        platform.choices = {FileChoice{folder.File(name)}};
        form.SaveParameters();
        return std::filesystem::exists(folder.File(name));
    };
    form.OpenFile(File("linear.trp", "100\n0\n-1\n200\n1\n0\n"));
    EXPECT_FALSE(save("linear.ALL"));
    EXPECT_EQ(platform.TakeTexts().size(), 1U);
    EXPECT_TRUE(save("other.PRM"));
    platform.nationalChoice = TR_STG_HER;
    form.ChooseNational();
    EXPECT_FALSE(save("polynomial.trp"));
    EXPECT_FALSE(save("polynomial.prm"));
    EXPECT_EQ(platform.TakeTexts().back(),
              "Parameters of \"STG-HÉR transzformáció\" are saved in "
              "a file that ends in .all, not in this one: " +
                  folder.File("polynomial.prm"));
    EXPECT_TRUE(save("polynomial.all"));
    EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{});
    for (const char* name : {"other.PRM", "polynomial.all"}) {
        EXPECT_EQ(form.OpenFile(folder.File(name)), Kind::kParameters);
        EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{}) << "reads what was saved";
    }
}

}  // namespace
}  // namespace kv_tr::test
