// What the choosers are asked for and what callers get back.
#include "support/GCommonDialog.h"

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"

namespace kv_tr {
namespace {

TEST(GCommonDialog, TurnsArgumentsIntoFlags) {
    test::RecordingPlatform platform;
    const std::tuple<FileDialogArguments, std::int32_t, std::int32_t> cases[] = {
        {{}, 0x1000, 0x6},
        {{.FileMustExist = false, .OverWritePrompt = false}, 0, 0x4},
        {{.MultiSelect = true, .ReadOnly = true, .HideReadOnly = true}, 0x1205, 0x6},
        {{.FileMustExist = false, .flags = 0x80070}, 0x80010, 0x80016},  // hooks are cleared
    };
    for (auto [toOpen, openFlags, saveFlags] : cases) {
        auto toSave = toOpen;
        GCommonDialog().VBGetOpenFileName(toOpen);
        EXPECT_EQ(platform.requests.back().flags, openFlags);
        GCommonDialog().VBGetSaveFileName(toSave);
        EXPECT_EQ(platform.requests.back().flags, saveFlags);
    }
}

TEST(GCommonDialog, SplitsTheFilterAtBarsAndColons) {
    test::RecordingPlatform platform;
    for (const auto& [filter, expected] :
         {std::pair{"Points|*.dat|Other|*.txt;*.lst;", "Points>*.dat/Other>*.txt;*.lst;/"},
          {"Data: GCPs (*.dat)|*.dat|", "Data> GCPs (*.dat)/*.dat>/"},
          {"", ""}}) {
        FileDialogArguments arguments{.Filter = filter};
        GCommonDialog().VBGetSaveFileName(arguments);
        std::string offered;
        for (const auto& [description, pattern] : platform.requests.back().filters)
            offered += description + ">" + pattern + "/";
        EXPECT_EQ(offered, expected);
    }
}

TEST(GCommonDialog, GivesBackWhatTheUserChoseAndClearsItWhenHeCancels) {
    test::RecordingPlatform platform;
    platform.choices = {FileChoice{"/new/b.c.dat", 3, 0x801}, FileChoice{"d.dat"}};
    FileDialogArguments arguments{.Filename = "a.dat",
                                  .Filter = "A:*.a|B|*.b",
                                  .InitDir = "/old",
                                  .DlgTitle = "Title",
                                  .DefaultExt = "*.trp",
                                  .Owner = 17};
    GCommonDialog dialog;
    ASSERT_TRUE(dialog.VBGetOpenFileName(arguments));
    const FileRequest asked = platform.requests.back();
    EXPECT_EQ(asked.fileName + asked.initialFolder + asked.title, "a.dat/oldTitle");
    EXPECT_EQ(asked.defaultExtension, "trp");
    EXPECT_EQ(asked.owner, 17);
    EXPECT_EQ(arguments.Filename, "/new/b.c.dat");
    EXPECT_EQ(arguments.FileTitle, "b.c.dat");
    EXPECT_EQ(arguments.Filter, "A|*.a|B|*.b");
    EXPECT_EQ(arguments.FilterIndex, 3);
    EXPECT_EQ(arguments.flags, 0x801);
    EXPECT_TRUE(arguments.ReadOnly);
    EXPECT_EQ(dialog.APIReturn(), 1);
    EXPECT_TRUE(dialog.VBGetOpenFileName(arguments));
    EXPECT_FALSE(arguments.ReadOnly);

    EXPECT_FALSE(dialog.VBGetOpenFileName(arguments));
    EXPECT_EQ(arguments.Filename + arguments.FileTitle + arguments.Filter, "");
    EXPECT_EQ(arguments.FilterIndex, -1);
    EXPECT_EQ(arguments.flags, 0);
    EXPECT_EQ(dialog.APIReturn() + dialog.ExtendedError(), 0);
}

}  // namespace
}  // namespace kv_tr
