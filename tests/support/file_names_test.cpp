// Names of every shape in their parts.
#include "support/file_names.h"

#include <gtest/gtest.h>

namespace kv_tr {
namespace {

TEST(FileNames, FallIntoTheirParts) {
    const struct {
        std::string path, extension, stripped, folder, titleWithExtension, title;
    } cases[] = {
        {R"(C:\data\pts.dat)", "dat", R"(C:\data\pts)", R"(C:\data)", "pts.dat", "pts"},
        {R"(C:\data/new\pts)", "", R"(C:\data/new\pts)", R"(C:\data/new)", "pts", "pts"},
        {"A:pts.dat", "dat", "A:pts", "A:pts.dat", "pts.dat", "pts"},
        {"a/b:c.dat", "dat", "a/b:c", "a", "b:c.dat", "b:c"},
        {"archive.tar.gz", "gz", "archive.tar", "archive.tar.gz", "archive.tar.gz", "archive.tar"},
        {"v1.2/pts", "2/pts", "v1", "v1.2", "pts", "pts"},
        {".dat", "dat", "", ".dat", ".dat", ""},
        {"data/", "", "data/", "data", "", ""},
    };
    for (const auto& [path, extension, stripped, folder, titleWithExtension, title] : cases) {
        EXPECT_EQ(GetFileExt(path), extension);
        EXPECT_EQ(StripFileExt(path), stripped);
        EXPECT_EQ(GetFolderPart(path), folder);
        EXPECT_EQ(GetFileTitle(path, true), titleWithExtension);
        EXPECT_EQ(GetFileTitle(path, false), title);
    }
}

}  // namespace
}  // namespace kv_tr
