// What the choosers are asked for and give back, and the events of the host.
#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr {
namespace {

std::string TextOf(const std::vector<FileFilter>& filters) {
    std::string text;
    for (const auto& [description, pattern] : filters) text += description + ">" + pattern + "/";
    return text;
}

TEST(GCommonDialog, TurnsArgumentsIntoFlagsAndFilters) {
    test::RecordingPlatform platform;
    using Arguments = FileDialogArguments;
    for (const auto& [given, openFlags, saveFlags, filters] :
         {std::tuple{Arguments{}, 0x1000, 0x6, "All (*.*)> *.*/"},
          {Arguments{.FileMustExist = false, .OverWritePrompt = false, .Filter = "A|*.a"}, 0, 0x4,
           "A>*.a/"},
          {Arguments{.MultiSelect = true, .ReadOnly = true, .HideReadOnly = true, .Filter = ""},
           0x1205, 0x6, ""},
          {Arguments{.Filter = "A: B|*.a;*.b|C|", .flags = 0x80070},  // hooks are cleared
           0x81010, 0x80016, "A> B/*.a;*.b>C/"}}) {
        auto toOpen = given, toSave = given;
        GCommonDialog().VBGetOpenFileName(toOpen);
        EXPECT_EQ(platform.requests.back().flags, openFlags);
        GCommonDialog().VBGetSaveFileName(toSave);
        EXPECT_EQ(platform.requests.back().flags, saveFlags);
        EXPECT_EQ(TextOf(platform.requests.back().filters), filters);
    }
}

TEST(GCommonDialog, GivesBackWhatTheUserChoseAndClearsItWhenHeCancels) {
    test::RecordingPlatform platform;
    platform.choices = {FileChoice{"/new/b.c.dat", 3, 0x801}};
    FileDialogArguments arguments{.Filename = "a.dat",
                                  .Filter = "A:*.a|B|*.b",
                                  .InitDir = "/old",
                                  .DlgTitle = "Title",
                                  .DefaultExt = "*.trp"};
    GCommonDialog dialog;
    ASSERT_TRUE(dialog.VBGetOpenFileName(arguments));
    const FileRequest& asked = platform.requests[0];
    EXPECT_EQ(asked.fileName + asked.initialFolder + asked.title + asked.defaultExtension,
              "a.dat/oldTitletrp");
    EXPECT_EQ(arguments.Filename + arguments.FileTitle + arguments.Filter,
              "/new/b.c.datb.c.datA|*.a|B|*.b");
    EXPECT_EQ(arguments.FilterIndex * 0x1000 + arguments.flags, 0x3801);
    EXPECT_TRUE(arguments.ReadOnly && dialog.APIReturn() == 1);

    EXPECT_FALSE(dialog.VBGetOpenFileName(arguments) || dialog.APIReturn() != 0);
    EXPECT_EQ(arguments.Filename + arguments.FileTitle + arguments.Filter, "");
    EXPECT_EQ(arguments.FilterIndex * 0x1000 + arguments.flags, -0x1000);
}

TEST(Choosers, AskForTheFilesOfTheirPurpose) {
    test::RecordingPlatform platform;
    clsTr tr;
    clsTrCalc& engine = *tr.oCalcTr();
    engine.setLanguageID(kHungarian);  // the caption keeps the language of the creation
    engine.setLanguageID(kEnglish);
    const std::string linear = "Parameters of Helmert/Affine tr";
    const std::string polynomial = "Parameters of polynomal transformation (1-5 order)";
    const std::string itr = "Format ITR-2.5v (*.prm)>*.prm/", all = "all files (*.*)>*.*/";
    const auto asked = [&platform](auto& object, auto choose) {
        std::string file = "old", folder = "/maps";
        platform.choices = {FileChoice{.path = "/data/town.x"}};
        EXPECT_TRUE((object.*choose)(file, folder, 7));
        EXPECT_EQ(file + folder, "/data/town.x/maps");
        const FileRequest request = platform.requests.back();
        EXPECT_EQ(request.fileName + request.initialFolder, "old/maps");
        EXPECT_EQ(request.owner, 7);
        EXPECT_FALSE((object.*choose)(file, folder, -1));
        EXPECT_EQ(file, "") << "a cancel";
        return request.title + "/" + request.defaultExtension + "/" + TextOf(request.filters) +
               std::to_string(request.flags);
    };
    EXPECT_EQ(asked(tr, &clsTr::bChooseFile4LoadAffinTrPrm),
              linear + " loading/trp/" + linear + " (*.trp)>*.trp/" + itr + all + "4096");
    EXPECT_EQ(asked(tr, &clsTr::bChooseFile4SaveAffinTrPrm),
              linear + " saving/trp/" + linear + " (*.trp)>*.trp/" + itr + "6");
    EXPECT_EQ(asked(tr, &clsTr::bChooseFile4LoadPoliTrPrm),
              polynomial + " loading/all/" + polynomial + " (*.all)>*.all/" + all + "4096");
    EXPECT_EQ(asked(tr, &clsTr::bChooseFile4SavePoliTrPrm),
              polynomial + " saving/all/" + polynomial + " (*.all)>*.all/6");
    EXPECT_EQ(asked(engine, &clsTrCalc::bChooseFile4LoadXYs4Tr),
              "File of GCPs loading/dat/File of GCPs (*.dat)>*.dat/"
              "Other (*.txt;*.lst;)>*.txt;*.lst;/" +
                  all + "4096");
    platform.choices = {FileChoice{.path = "/data/town.dat"}};
    std::string file, folder;
    engine.bChooseFile4LoadXYs4Tr(file, folder);
    EXPECT_EQ(asked(engine, &clsTrCalc::bChooseFile4SaveXYs4Tr), "town.dat saving/dat/0");
}

TEST(Event, CallsInOrderAndLetsHandlersConnectAndDisconnectAnyOfThem) {
    Event<const std::string&> event;
    std::string calls;
    std::optional<Subscription> a, b, c, d;
    a = event.Subscribe([&](const std::string& n) {
        calls += "a" + n;
        a.reset(), c.reset();
        d = event.Subscribe([&](const std::string& m) { calls += "d" + m; });
    });
    b = event.Subscribe([&](const std::string& n) { calls += "b" + n; });
    c = event.Subscribe([&](const std::string& n) { calls += "c" + n; });
    event.Raise("1");
    b = std::move(d);  // takes the place of the handler
    event.Raise("2");
    EXPECT_EQ(calls, "a1b1d2");
}

TEST(Event, MayGoAwayBeforeItsSubscriptionsAndInsideAHandler) {
    auto event = std::make_unique<Event<>>();
    int calls = 0;
    const Subscription a = event->Subscribe([&] { ++calls, event.reset(); });
    const Subscription b = event->Subscribe([&] { ++calls; });
    event->Raise();
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace kv_tr
