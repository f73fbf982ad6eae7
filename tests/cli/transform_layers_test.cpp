// kv_tr transform with data sets: which files it takes for what, where results go, what it refuses.
#include <gtest/gtest.h>

#include <set>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

class LayerCommands : public CommandLine {
protected:
    const std::string shift = " --points shift --type helmert ";

    void SetUp() override {
#ifndef KV_TR_GDAL
        GTEST_SKIP() << "built without GDAL";
#endif
        fs::copy_file(EXAMPLES "/parcels.gpkg", work + "p.gpkg");
    }

    /// The files below the folder of work that were not there before.
    std::set<std::string> New() {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(work)) {
            const std::string name = entry.path().lexically_relative(work).string();
            if (entry.is_regular_file() && !known.contains(name)) names.insert(name);
        }
        return names;
    }
    void Remember() {
        known.clear();
        known = New();
    }

    std::set<std::string> known;
};

TEST_F(LayerCommands, WritesLayersWholeThereAndBackAndInOtherFormats) {
    ASSERT_EQ(Run("kv_tr transform p.gpkg --output new.gpkg" + shift), 0) << err;
    EXPECT_NE(err.find("new.gpkg: layers 3, features 8\n"), err.npos) << err;
    ASSERT_EQ(Run("kv_tr transform new.gpkg --inverse --output back.gpkg" + shift), 0) << err;
    ASSERT_EQ(Run("kv_tr transform p.gpkg --params one.trp --output - 2>/dev/null; mkdir csv; "
                  "printf '0\\n1\\n0\\n0\\n0\\n1\\n' >one.trp; "
                  "kv_tr transform p.gpkg back.gpkg new.gpkg --params one.trp --format CSV "
                  "--output csv"),
              0)
        << err;
    const std::string parcels = ReadFile(work + "csv/p/parcels.csv");
    EXPECT_NE(parcels.find("((594000 254500,594120.125 254500,"), parcels.npos) << parcels;
    EXPECT_NE(parcels.find("Ńovák"), parcels.npos);
    EXPECT_EQ(ReadFile(work + "csv/back/parcels.csv"), parcels);
    EXPECT_EQ(ReadFile(work + "csv/back/owners.csv"), ReadFile(work + "csv/p/owners.csv"));
    EXPECT_NE(ReadFile(work + "csv/new/parcels.csv").find("((594100"), parcels.npos);
}

TEST_F(LayerCommands, TransformsTextsWithoutTheProgramThatHasGdalAndRefusesTheRest) {
    fs::copy_file(KV_TR_PROGRAM, work + "alone");
    ASSERT_EQ(Run("echo 'A 1 2' | ./alone transform -" + shift), 0) << err;
    EXPECT_EQ(out, "A 101.000 202.000\n");
    EXPECT_EQ(Run("./alone transform p.gpkg --output new.gpkg" + shift), 1);
    EXPECT_EQ(err.substr(0, err.find(" program")), "p.gpkg needs the") << err;
    EXPECT_EQ(Run("./alone warp scan.tif --output map.tif" + shift), 2);
    EXPECT_EQ(err.substr(0, err.find(" program")), "kv_tr warp needs the") << err;
    EXPECT_EQ(Run("./alone --help; kv_tr --help | grep -c ' warp '"), 0);
    EXPECT_TRUE(out.ends_with("\n1\n")) << out;
}

TEST_F(LayerCommands, GivesFilesAndFoldersTheirPlacesInTheOutput) {
    fs::create_directories(work + "in/sub");
    fs::copy_file(work + "p.gpkg", work + "in/sub/q.gpkg");
    WriteFile(work + "in/readme.txt", "not points");
    WriteFile(work + "a.txt", "A 1 2\n");
    ASSERT_EQ(Run("kv_tr transform p.gpkg --format 'ESRI Shapefile' --output in/" + shift), 0)
        << err;
    Remember();
    ASSERT_EQ(Run("kv_tr transform a.txt p.gpkg in --output out --axes ne" + shift), 0) << err;
    std::set<std::string> wanted{"out/a.txt", "out/p.gpkg", "out/sub/q.gpkg"};
    for (const char* name :
         {"edges.shp", "edges.shx", "edges.dbf", "edges.cpg", "parcels.shp", "parcels.shx",
          "parcels.dbf", "parcels.cpg", "owners.dbf", "owners.cpg"})
        wanted.insert(std::string("out/p/") + name);
    EXPECT_EQ(New(), wanted);
    EXPECT_EQ(ReadFile(work + "out/a.txt"), "A 101.000 202.000\n");
    Remember();
    EXPECT_EQ(Run("kv_tr transform a.txt p.gpkg in --output out" + shift), 1);
    EXPECT_NE(err.find("out/a.txt exists; --overwrite"), err.npos) << err;
    EXPECT_EQ(Run("kv_tr transform a.txt p.gpkg in --output out --overwrite" + shift), 0) << err;
    EXPECT_EQ(New(), std::set<std::string>{});
}

TEST_F(LayerCommands, SaysWhyItDoesNothing) {
    fs::create_directory(work + "in");
    fs::create_directory(work + "empty");
    fs::copy_file(work + "p.gpkg", work + "in/p.gpkg");
    WriteFile(work + "a.txt", "A 1 2\n");
    WriteFile(work + "b.gpkg", "no layers");
    Remember();
    const std::tuple<std::string, int, std::string> cases[] = {
        {"p.gpkg", 2, "--output: p.gpkg"},
        {"p.gpkg --output old", 1, "old exists|--format"},
        {"p.gpkg --output p.gpkg --overwrite", 1, "would replace"},
        {"p.gpkg --output o.gpkg --points gone", 1, "Nothing was transformed"},
        {"p.gpkg --output o.geojson", 1, "holds one layer, and there are 3"},
        {"p.gpkg --output o.gpkg --format PNG", 1, "PNG: no format"},
        {"p.gpkg --output o.gpkg --target-crs EPSG:x", 2, "EPSG:x is no coordinate"},
        {"p.gpkg --output o.gpkg --axes up", 2, "up; "},
        {"p.gpkg --output o.gpkg --curve-tolerance 0", 2, "number: 0"},
        {"p.gpkg --output o.gpkg --decimals 2", 2, "--decimals is for texts"},
        {"p.gpkg --output shift --format GPKG --overwrite", 2, "same file"},
        {"a.txt --target-crs none --output o", 2, "--target-crs is for data sets"},
        {"a.txt p.gpkg --output old", 2, "need a folder"},
        {"p.gpkg in/p.gpkg --output out", 2, "both be written to out/p.gpkg"},
        {"empty --output out", 2, "empty: no data set"},
        {"b.gpkg --output o.gpkg", 1, "b.gpkg"},
        {"p.gpkg --output no/such/o.xyz", 1, "b.gpkg|--format"},
    };
    for (const auto& [line, code, text] : cases) {
        const bool hasSource = line.find("--points") != line.npos;
        EXPECT_EQ(Run("kv_tr transform " + line + (hasSource ? " --type helmert" : shift)), code)
            << line << "\n"
            << err;
        const auto bar = text.find('|');
        EXPECT_TRUE(err.find(text.substr(0, bar)) != err.npos ||
                    (bar != text.npos && err.find(text.substr(bar + 1)) != err.npos))
            << line << "\n"
            << err;
        EXPECT_EQ(New(), std::set<std::string>{}) << line;
    }
}

TEST_F(LayerCommands, LeavesNothingWhenInterruptedOrWhenTheDiskIsFull) {
    Remember();
    EXPECT_EQ(Run("ulimit -f 40; kv_tr transform p.gpkg --output o.gpkg" + shift), 1);
    EXPECT_NE(err.find("disk I/O error"), err.npos) << err;
    EXPECT_EQ(New(), std::set<std::string>{});
    // A folder that a killed program left goes when the next one writes there.
    fs::create_directory(work + ".kv_tr-1.tmp");
    WriteFile(work + ".kv_tr-1.tmp/.lock", "");
    WriteFile(work + ".kv_tr-1.tmp/o.gpkg", "half");
    EXPECT_EQ(Run("kv_tr transform p.gpkg --output o.gpkg" + shift), 0) << err;
    EXPECT_EQ(New(), std::set<std::string>{"o.gpkg"});
}

}  // namespace
}  // namespace kv_tr::test
