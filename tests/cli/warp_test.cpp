// Rasters on the command line.
#ifdef KV_TR_GDAL

#include <regex>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

/// A georeferenced grid, and control points that turn it by a quarter and move it.
class Warp : public CommandLine {
protected:
    Warp() {
        WriteFile(work + "grid.asc",
                  "ncols 3\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\nNODATA_value -9\n"
                  "1 2 3\n4 5 6\n");
        WriteFile(work + "turn.dat", "A 0 0 100 200\nB 3 0 100 203\nC 0 2 98 200\n");
        WriteFile(work + "scan.csv",
                  "id;pixelx;pixely;mapx;mapy\nA;0;0;100;200\nB;3;0;100;203\n"
                  "C;0;-2;102;200\n");
    }
};

TEST_F(Warp, WritesTheTurnedGridAndTellsItsSize) {
    const std::string common = "kv_tr warp grid.asc --type helmert --output ";
    EXPECT_EQ(Run(common + "new.asc --points turn.dat"), 0) << err;
    EXPECT_EQ(out, "new.asc: 2 × 3 pixels, each 1 × 1\n");
    const std::string turned = Files()["new.asc"];
    EXPECT_TRUE(std::regex_search(turned, std::regex("xllcorner +98\\.0*\n"))) << turned;
    EXPECT_TRUE(std::regex_search(turned, std::regex("3 6 *\n ?2 5 *\n ?1 4 *\n"))) << turned;
    // The same as pixels whose lines count upwards, the source lying elsewhere on the map.
    EXPECT_EQ(Run(common + "scan.asc --points scan.csv --pixels up"), 0) << err;
    EXPECT_EQ(err, "");
    EXPECT_EQ(Run(common + "far.asc --points turn.dat --pixels up --overwrite"), 0);
    EXPECT_NE(err.find("far from the control points"), err.npos) << err;
}

TEST_F(Warp, RefusesWithAReasonAndLeavesEverythingAsItWas) {
    const struct {
        const char* arguments;
        int code;
        const char* errors;
    } cases[] = {
        {"grid.asc --output old", 1, "does not tell a format"},
        {"grid.asc --output old --format GTiff", 1, "exists; --overwrite"},
        {"grid.asc --output grid.asc", 2, "grid.asc"},
        {"grid.asc --output none/../grid.asc --overwrite", 2, "grid.asc"},
        {"missing.tif --output new.tif", 1, "missing.tif cannot be read: "},
        {"binary.trp --output new.tif", 1, "binary.trp cannot be read: "},
        {"grid.asc --output new.tif --resampling best", 2, "nearest, bilinear"},
        {"grid.asc --output new.tif --extent 1,2,3", 2, "X0,Y0,X1,Y1.*1,2,3"},
        {"grid.asc --output new.tif --size 3,0", 2, "W,H"},
        {"grid.asc --output new.tif --threads 0", 2, "N: 0"},
        {"grid.asc --output new.tif --nodata much", 2, "nan: much"},
        {"grid.asc --output new.tif --option TILED", 2, "NAME=VALUE: TILED"},
        {"grid.asc --output new.tif --option TILE=YES", 1, "TILE"},
        {"grid.asc --output new.tif --target-crs EPSG:1", 1, "EPSG:1"},
        {"grid.asc --output new.tif --nodata 1e400", 2, "1e400"},
        {"grid.asc --output /dev/full/new.tif", 1, "/dev/full/new.tif could not be written"},
        {"grid.asc", 2, "--output"},
    };
    for (const auto& [arguments, code, errors] : cases) {
        SCOPED_TRACE(arguments);
        const auto before = Files();
        EXPECT_EQ(Run(std::string("kv_tr warp --points turn.dat --type helmert ") + arguments),
                  code);
        EXPECT_EQ(out, "");
        EXPECT_TRUE(std::regex_search(err, std::regex(errors))) << err;
        EXPECT_TRUE(Files() == before);
    }
}

TEST_F(Warp, IsEndedByASignalWithNothingLeftBehind) {
    const auto before = Files();
    EXPECT_NE(
        Run("timeout --foreground -s INT 1 kv_tr warp grid.asc --points turn.dat --type helmert "
            "--resampling lanczos --size 20000,20000 --threads 1 --output slow.tif"),
        0);
    EXPECT_TRUE(Files() == before);
    EXPECT_EQ(err, "");
}

}  // namespace
}  // namespace kv_tr::test

#endif
