// Rasters transformed whole: every pixel against the place that it comes from.
#include <gdal_priv.h>
#include <gdal_utils.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "helpers/files.h"
#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/raster_warp.h"

namespace kv_tr::test {
namespace {

using gdal::DataSetError;
using gdal::RasterJob;
using gdal::RasterResult;

struct Pixels {
    int columns = 0;
    int lines = 0;
    std::array<double, 6> place{};
    std::vector<std::vector<double>> bands{};

    double At(int column, int line, std::size_t band = 0) const {
        return bands[band][static_cast<std::size_t>(line * columns + column)];
    }
    Point Centre(int column, int line) const {
        return {place[0] + place[1] * (column + 0.5), place[3] + place[5] * (line + 0.5)};
    }
};

using Values = std::function<double(int column, int line, int band)>;

/// Numbers without a pattern.
double Noise(int column, int line, int band) {
    return (column * 7919 + line * 104729 + band * 1299709 + column * line * 31) % 251;
}

/// A plane, which an interpolation between pixels gives back at any place.
double Plane(int column, int line, int /*band*/) { return column + 0.5 + 1000 * (line + 0.5); }

class Rasters : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string source = folder.File("source.tif");
    const std::string target = folder.File("target.tif");

    Rasters() { gdal::RegisterDrivers(); }

    /// A raster; without a place it is a scan.
    GDALDatasetUniquePtr Make(int columns, int lines, int bands, GDALDataType type,
                              const Values& values, std::vector<double> place = {}) const {
        GDALDatasetUniquePtr made(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            source.c_str(), columns, lines, bands, type, nullptr));
        if (!place.empty()) made->SetGeoTransform(place.data());
        for (int band = 1; band <= bands; ++band) {
            std::vector<double> row(static_cast<std::size_t>(columns));
            for (int line = 0; line < lines; ++line) {
                for (int i = 0; i < columns; ++i) row[i] = values(i, line, band);
                EXPECT_EQ(
                    made->GetRasterBand(band)->RasterIO(GF_Write, 0, line, columns, 1, row.data(),
                                                        columns, 1, GDT_Float64, 0, 0, nullptr),
                    CE_None);
            }
        }
        return made;
    }

    static GDALDatasetUniquePtr Open(const std::string& name) {
        return GDALDatasetUniquePtr(GDALDataset::Open(name.c_str()));
    }

    static Pixels Read(const std::string& name) {
        const auto opened = Open(name);
        Pixels pixels{.columns = opened->GetRasterXSize(), .lines = opened->GetRasterYSize()};
        opened->GetGeoTransform(pixels.place.data());
        for (auto* band : opened->GetBands()) {
            auto& values =
                pixels.bands.emplace_back(static_cast<std::size_t>(pixels.columns * pixels.lines));
            EXPECT_EQ(band->RasterIO(GF_Read, 0, 0, pixels.columns, pixels.lines, values.data(),
                                     pixels.columns, pixels.lines, GDT_Float64, 0, 0, nullptr),
                      CE_None);
        }
        return pixels;
    }

    RasterJob Job(const Transformation& transformation) const {
        return {.input = source, .output = target, .map = {.map = transformation}};
    }

    RasterJob ScanJob(const Transformation& transformation) const {
        auto job = Job(transformation);
        job.sourceCoordinates = gdal::SourceCoordinates::kLinesUp;
        return job;
    }

    std::size_t FilesInFolder() const {
        const auto path = std::filesystem::path(source).parent_path();
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path), {}));
    }

    static Text Refusal(const RasterJob& job) {
        try {
            gdal::WarpRaster(job);
        } catch (const DataSetError& error) {
            return error.Id();
        }
        return Text::kGdalSays;
    }
};

TEST_F(Rasters, KeepEveryPixelInAQuarterTurn) {
    Make(7, 5, 3, GDT_UInt16, Noise).reset();
    // A step to the right becomes two metres to the north, a line upwards two to the west.
    const Transformation turn{Type::kHelmert, {650000.25, 0, -2}, {238000.5, 2, 0}};
    auto job = ScanJob(turn);
    job.noData = 65535;
    const RasterResult result = gdal::WarpRaster(job);
    EXPECT_FALSE(result.hasAlpha);
    const Pixels from = Read(source);
    const Pixels to = Read(target);
    ASSERT_EQ(to.columns, 5);
    ASSERT_EQ(to.lines, 7);
    EXPECT_EQ(to.place, (std::array<double, 6>{650000.25, 2, 0, 238014.5, 0, -2}));
    ASSERT_EQ(to.bands.size(), 3U);
    for (std::size_t band = 0; band < 3; ++band) {
        for (int line = 0; line < 7; ++line) {
            for (int column = 0; column < 5; ++column)
                EXPECT_EQ(to.At(column, line, band), from.At(6 - line, column, band));
        }
    }
}

/// Transformations of a scan of 60 by 40 pixels, no two alike, with small parts of higher degree.
std::vector<Transformation> AllTypes() {
    std::vector<Transformation> all{{Type::kAffine, {100.5, 1.9, 0.4}, {200.25, -0.3, 2.1}},
                                    {Type::kHelmert, {100.5, 1.9, 0.4}, {200.25, -0.4, 1.9}},
                                    {Type::kHelmert3, {-3, 0.8, 0.6}, {7, -0.6, 0.8}},
                                    {Type::kAffine5, {1, 0.8, 1.2}, {2, -0.6, 1.6}}};
    for (const Type type : {Type::kBilinear, Type::kPolynomial1, Type::kPolynomial2,
                            Type::kPolynomial3, Type::kPolynomial4, Type::kPolynomial5}) {
        Transformation made{type, {30, 1000, 1.9, 0.4}, {-20, 2000, -0.3, 2.1}};
        constexpr std::array kFirstOfDegree{0, 1, 2, 4, 7, 11, 16, 22};
        const int terms = type == Type::kBilinear ? 5 : kFirstOfDegree[NumberOf(type) + 1];
        for (int k = 4, degree = 2; k < terms; ++k) {
            if (k == kFirstOfDegree[degree + 1]) ++degree;
            made.a[k] = (k % 3 - 1.1) * 0.2 * std::pow(30, 1 - degree) / terms;
            made.b[k] = (k % 4 - 1.7) * 0.2 * std::pow(30, 1 - degree) / terms;
        }
        all.push_back(made);
    }
    return all;
}

TEST_F(Rasters, HaveThePlaceThatTheTransformationGivesUnderAllTypes) {
    Make(60, 40, 1, GDT_Float64, Plane).reset();
    for (const Transformation& transformation : AllTypes()) {
        SCOPED_TRACE(NumberOf(transformation.type));
        auto job = ScanJob(transformation);
        job.resampling = "bilinear";
        job.replaces = true;
        job.tolerance = 0;
        const RasterResult result = gdal::WarpRaster(job);
        EXPECT_FALSE(result.fold);
        const Pixels to = Read(target);
        const auto inverse = ExactInverse::Of(transformation);
        int inside = 0;
        for (int line = 0; line < to.lines; ++line) {
            for (int column = 0; column < to.columns; ++column) {
                const double value = to.At(column, line);
                // Beside the outermost centres there is nothing to interpolate between.
                const Point at = inverse->Apply(to.Centre(column, line)).point;
                const bool isInside =
                    at.first > 0.5 && at.first < 59.5 && at.second < -0.5 && at.second > -39.5;
                if (!isInside) continue;
                ++inside;
                EXPECT_NEAR(value, at.first - 1000 * at.second, 1e-6);
            }
        }
        EXPECT_GT(inside, 1000);
        for (const auto& [column, line] : {std::pair{0.0, 0.0}, {60, 0}, {0, -40}, {60, -40}}) {
            const Point corner = transformation.Apply({column, line});
            const double half = to.place[1] / 2 + 1e-9;
            EXPECT_GE(corner.first, to.place[0] - half);
            EXPECT_LE(corner.first, to.place[0] + to.columns * to.place[1] + half);
            EXPECT_LE(corner.second, to.place[3] + half);
            EXPECT_GE(corner.second, to.place[3] + to.lines * to.place[5] - half);
        }
    }
}

TEST_F(Rasters, TakeAxesGeoreferenceAndSignOfLinesAsTheyAre) {
    const std::vector<double> place{500, 2, 0.1, 900, -0.2, -2};
    Make(30, 20, 1, GDT_Float64, Plane, place).reset();
    const Transformation affine{Type::kAffine, {10, 1.1, 0.2}, {20, -0.1, 1.2}};
    const auto check = [&](const RasterJob& job, auto coordinatesOf) {
        gdal::WarpRaster(job);
        const Pixels to = Read(target);
        int inside = 0;
        for (int line = 0; line < to.lines; ++line) {
            for (int column = 0; column < to.columns; ++column) {
                const double value = to.At(column, line);
                if (std::isnan(value)) continue;
                const Point at = coordinatesOf(to.Centre(column, line));
                if (at.first < 0.5 || at.first > 29.5 || at.second < 0.5 || at.second > 19.5)
                    continue;
                EXPECT_NEAR(value, at.first + 1000 * at.second, 1e-6);
                ++inside;
            }
        }
        EXPECT_GT(inside, 100);
    };
    auto job = Job(affine);
    job.resampling = "bilinear";
    job.grid.resolution = {0.8, 0.8};  // finer than the source, so that nothing is averaged
    job.replaces = true;
    job.tolerance = 0;
    const auto back = *affine.Inverse();
    // (first, second) are (north, east) in the source and (west, south) in the target.
    job.map.sourceAxes = AxisMapping::kNe;
    job.map.targetAxes = AxisMapping::kWs;
    check(job, [&](Point map) {
        const Point system = back.Apply({-map.first, -map.second});
        const double x = system.second - 500;
        const double y = system.first - 900;
        const double determinant = 2 * -2 - 0.1 * -0.2;
        return Point{(x * -2 - 0.1 * y) / determinant, (2 * y + 0.2 * x) / determinant};
    });
    job.map.sourceAxes = job.map.targetAxes = AxisMapping::kEn;
    job.sourceCoordinates = gdal::SourceCoordinates::kLinesDown;
    check(job, [&](Point map) { return back.Apply(map); });
    job.sourceCoordinates = gdal::SourceCoordinates::kLinesUp;
    check(job, [&](Point map) {
        const Point at = back.Apply(map);
        return Point{at.first, -at.second};
    });
    job.map.map = *ExactInverse::Of(back);  // the way back of the way back
    check(job, [&](Point map) {
        const Point at = back.Apply(map);
        return Point{at.first, -at.second};
    });
}

TEST_F(Rasters, AgreeWithTheOrder3OfGdal) {
    const auto hills = [](int column, int line, int) {
        return 100 + 50 * std::sin(column / 9.0) + 40 * std::cos(line / 7.0);
    };
    const auto made = Make(200, 160, 1, GDT_Float32, hills);
    Transformation cubic{Type::kPolynomial3, {100, 5000, 1.9, 0.4}, {-80, 7000, -0.4, 1.9}};
    for (std::size_t k = 4; k <= 10; ++k) {
        cubic.a[k] = (k % 2 == 0 ? 1 : -1.3) * (k < 7 ? 2e-6 : 1e-8);
        cubic.b[k] = (k % 3 == 0 ? 1.2 : -0.9) * (k < 7 ? 2e-6 : 1e-8);
    }
    std::vector<GDAL_GCP> points;
    char text[] = "";
    for (int column = 0; column <= 200; column += 25) {
        for (int line = 0; line <= 160; line += 20) {
            const Point at = cubic.Apply({1.0 * column, -1.0 * line});
            points.push_back({text, text, 1.0 * column, 1.0 * line, at.first, at.second, 0});
        }
    }
    made->SetGCPs(static_cast<int>(points.size()), points.data(), "");
    made->FlushCache();
    auto job = ScanJob(cubic);
    job.resampling = "cubic";
    job.tolerance = 0;
    gdal::WarpRaster(job);
    const Pixels ours = Read(target);

    const double right = ours.place[0] + ours.place[1] * ours.columns;
    const double bottom = ours.place[3] + ours.place[5] * ours.lines;
    const std::vector<std::string> words{"-order",
                                         "3",
                                         "-et",
                                         "0",
                                         "-r",
                                         "cubic",
                                         "-te",
                                         std::to_string(ours.place[0]),
                                         std::to_string(bottom),
                                         std::to_string(right),
                                         std::to_string(ours.place[3]),
                                         "-ts",
                                         std::to_string(ours.columns),
                                         std::to_string(ours.lines),
                                         "-dstnodata",
                                         "nan"};
    CPLStringList arguments;
    for (const std::string& word : words) arguments.AddString(word.c_str());
    GDALWarpAppOptions* options = GDALWarpAppOptionsNew(arguments.List(), nullptr);
    GDALDatasetH input = GDALDataset::ToHandle(made.get());
    const std::string name = folder.File("gdal.tif");
    GDALClose(GDALWarp(name.c_str(), nullptr, 1, &input, options, nullptr));
    GDALWarpAppOptionsFree(options);
    const Pixels theirs = Read(name);
    ASSERT_EQ(theirs.columns, ours.columns);
    ASSERT_EQ(theirs.lines, ours.lines);
    int both = 0;
    for (std::size_t i = 0; i < ours.bands[0].size(); ++i) {
        if (std::isnan(ours.bands[0][i]) || std::isnan(theirs.bands[0][i])) continue;
        ++both;
        EXPECT_NEAR(ours.bands[0][i], theirs.bands[0][i], 0.01);  // GDAL fits the way back
    }
    EXPECT_GT(both, 30000);
}

TEST_F(Rasters, KeepWhatBandsAndDataSetSay) {
    {
        const auto made = Make(12, 9, 2, GDT_Int16, Noise, {0, 1, 0, 9, 0, -1});
        made->SetMetadataItem("TIFFTAG_SOFTWARE", "a scanner");
        OGRSpatialReference system;
        system.SetUTM(33);
        made->SetSpatialRef(&system);
        GDALRasterBand& band = *made->GetRasterBand(2);
        band.SetDescription("height");
        band.SetScale(0.5);
        band.SetOffset(-3);
        band.SetUnitType("m");
        band.SetMetadataItem("SENSOR", "seven");
        band.SetMetadataItem("STATISTICS_MAXIMUM", "250");
        for (int i = 1; i <= 2; ++i) made->GetRasterBand(i)->SetNoDataValue(-9);
    }
    const Transformation turn{Type::kHelmert, {0, 0.8, 0.6}, {0, -0.6, 0.8}};
    gdal::WarpRaster(Job(turn));
    {
        const auto made = Open(target);
        EXPECT_EQ(made->GetSpatialRef(), nullptr);
        EXPECT_STREQ(made->GetMetadataItem("TIFFTAG_SOFTWARE"), "a scanner");
        GDALRasterBand& band = *made->GetRasterBand(2);
        EXPECT_EQ(band.GetRasterDataType(), GDT_Int16);
        EXPECT_STREQ(band.GetDescription(), "height");
        EXPECT_EQ(band.GetScale(), 0.5);
        EXPECT_EQ(band.GetOffset(), -3);
        EXPECT_STREQ(band.GetUnitType(), "m");
        EXPECT_STREQ(band.GetMetadataItem("SENSOR"), "seven");
        EXPECT_EQ(band.GetMetadataItem("STATISTICS_MAXIMUM"), nullptr);
        EXPECT_EQ(band.GetNoDataValue(), -9);
    }
    EXPECT_EQ(Read(target).At(0, 0), -9);  // a corner that is outside

    auto job = Job(turn);
    job.replaces = true;
    job.crs = gdal::ReadTargetCrs("EPSG:23700");
    job.noData = -1;
    gdal::WarpRaster(job);
    EXPECT_STREQ(Open(target)->GetSpatialRef()->GetAuthorityCode(nullptr), "23700");
    EXPECT_EQ(Read(target).At(0, 0, 1), -1);
    job.noData = 40000;
    EXPECT_EQ(Refusal(job), Text::kNoDataDoesNotFit);
}

TEST_F(Rasters, TellEmptyPixelsByAnAlphaBandAndKeepColourTables) {
    {
        GDALColorTable colours;
        const GDALColorEntry red{200, 10, 20, 255};
        colours.SetColorEntry(3, &red);
        const auto driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        const GDALDatasetUniquePtr made(driver->Create(source.c_str(), 8, 8, 1, GDT_Byte, nullptr));
        made->GetRasterBand(1)->SetColorTable(&colours);
        made->GetRasterBand(1)->Fill(3);
    }
    auto job = ScanJob({Type::kHelmert, {0, 0.8, 0.6}, {0, -0.6, 0.8}});
    EXPECT_TRUE(gdal::WarpRaster(job).hasAlpha);
    EXPECT_EQ(Open(target)->GetRasterBand(1)->GetColorTable()->GetColorEntry(3)->c1, 200);
    EXPECT_EQ(Open(target)->GetRasterBand(2)->GetColorInterpretation(), GCI_AlphaBand);
    const Pixels pixels = Read(target);
    EXPECT_EQ(pixels.At(0, 0, 1), 0);
    EXPECT_EQ(pixels.At(pixels.columns / 2, pixels.lines / 2, 1), 255);
    EXPECT_EQ(pixels.At(pixels.columns / 2, pixels.lines / 2), 3);
    job.replaces = true;
    job.resampling = "cubic";
    EXPECT_EQ(Refusal(job), Text::kPaletteKeepsCodes);
}

TEST_F(Rasters, LeaveTheOldTargetUntilTheNewOneIsComplete) {
    Make(300, 300, 1, GDT_Byte, Noise).reset();
    WriteFile(target, "old");
    auto job = ScanJob({Type::kHelmert, {0, 2, 0}, {0, 0, 2}});
    EXPECT_EQ(Refusal(job), Text::kTargetExists);
    job.replaces = true;
    EXPECT_THROW(gdal::WarpRaster(job, [](double done) { return done < 0.5; }), gdal::Cancelled);
    auto broken = job;
    broken.input = folder.File("broken.tif");
    WriteFile(broken.input, ReadFile(source).substr(0, 60000));
    EXPECT_EQ(Refusal(broken), Text::kRasterNotMade);
    broken.input = folder.File("none.tif");
    EXPECT_EQ(Refusal(broken), Text::kNotADataSet);
    auto same = job;
    same.output = source;
    EXPECT_EQ(Refusal(same), Text::kInputIsOutput);
    auto unplaced = job;
    unplaced.sourceCoordinates = gdal::SourceCoordinates::kOnMap;
    EXPECT_EQ(Refusal(unplaced), Text::kNotGeoreferenced);
    EXPECT_EQ(ReadFile(target), "old");
    EXPECT_EQ(FilesInFolder(), 3U);

    WriteFile(target + ".aux.xml", "<PAMDataset/>");
    gdal::WarpRaster(job);
    EXPECT_EQ(Read(target).columns, 300);
    EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(Rasters, LeaveOutWhatLiesBeyondAFoldAndRefuseAbsurdSizes) {
    Make(100, 50, 1, GDT_Float32, Plane).reset();
    // second' = second, first' = u - u²/160 with u = first - 50: turns back at u = 80, so not here.
    Transformation parabola{Type::kPolynomial2, {50, 0, 1, 0, -1 / 160.0}, {0, 0, 0, 1}};
    EXPECT_FALSE(gdal::WarpRaster(ScanJob(parabola)).fold);
    parabola.a[4] = -1 / 60.0;  // turns back at u = 30, at the column 80
    auto job = ScanJob(parabola);
    job.replaces = true;
    const RasterResult result = gdal::WarpRaster(job);
    ASSERT_TRUE(result.fold);
    EXPECT_GT(result.fold->first, 79);
    double greatest = 0;
    const Pixels folded = Read(target);
    for (const double value : folded.bands[0]) {
        if (!std::isnan(value)) greatest = std::max(greatest, std::fmod(value, 1000));
    }
    EXPECT_GT(greatest, 570);  // half lines
    EXPECT_LT(greatest, 580);

    job = ScanJob({Type::kAffine, {0, 1, 1}, {0, 1, 1}});
    EXPECT_EQ(Refusal(job), Text::kNoRasterInverse);
    // Its corners nearly meet, its edges do not.
    job = ScanJob({Type::kAffine, {0, 1, 2}, {0, 1000, 1999.999}});
    EXPECT_EQ(Refusal(job), Text::kTooManyPixels);
}

TEST_F(Rasters, GetTheGridAndTheFormatThatAreAskedFor) {
    Make(600, 400, 3, GDT_Byte, Noise).reset();
    const Transformation twice{Type::kHelmert, {1000, 2, 0}, {3000, 0, 2}};
    auto job = ScanJob(twice);
    const auto placeOf = [&](const gdal::GridWish& wish) {
        job.grid = wish;
        job.replaces = true;
        const auto grid = gdal::WarpRaster(job).grid;
        return std::array<double, 6>{grid.left,   grid.top,           grid.width,
                                     grid.height, 1.0 * grid.columns, 1.0 * grid.lines};
    };
    using Six = std::array<double, 6>;
    EXPECT_EQ(placeOf({}), (Six{1000, 3000, 2, 2, 600, 400}));
    EXPECT_EQ(placeOf({.resolution = {{4, 5}}}), (Six{1000, 3000, 4, 5, 300, 160}));
    EXPECT_EQ(placeOf({.size = {{300, 100}}}), (Six{1000, 3000, 4, 8, 300, 100}));
    EXPECT_EQ(placeOf({.extent = {{1100, 2500, 1200, 2600}}}), (Six{1100, 2600, 2, 2, 50, 50}));
    EXPECT_EQ(placeOf({.extent = {{1100, 2500, 1200, 2600}}, .size = {{25, 20}}}),
              (Six{1100, 2600, 4, 5, 25, 20}));
    job.grid = {.resolution = {{4, 5}}, .size = {{3, 3}}};
    EXPECT_EQ(Refusal(job), Text::kResolutionOrSize);
    job.grid = {.extent = {{1, 2, 1, 3}}};
    EXPECT_EQ(Refusal(job), Text::kEmptyExtent);

    job.grid = {};
    job.compression = "deflate";
    job.options = {"TILED=YES"};
    job.overviews = true;
    gdal::WarpRaster(job);
    EXPECT_STREQ(Open(target)->GetMetadataItem("COMPRESSION", "IMAGE_STRUCTURE"), "DEFLATE");
    EXPECT_EQ(Open(target)->GetRasterBand(1)->GetOverviewCount(), 2);
    job.options = {"TILES=YES"};
    EXPECT_EQ(Refusal(job), Text::kBadCreationOption);
    job.options = {};
    job.output = folder.File("target.png");
    EXPECT_EQ(Refusal(job), Text::kNoCompression);
    job.compression = {};
    job.overviews = false;
    gdal::WarpRaster(job);
    EXPECT_EQ(Read(job.output.string()).bands.size(), 4U);
    job.output = folder.File("target.jpg");
    EXPECT_EQ(Refusal(job), Text::kRasterNotHeld);
    job.output = folder.File("target.xyzzy");
    EXPECT_EQ(Refusal(job), Text::kFormatUnclear);
}

TEST_F(Rasters, AreTheSameInAnyNumberOfThreadsAndNearlySoWithTolerance) {
    Make(400, 300, 1, GDT_Float64, Plane).reset();
    auto job = ScanJob({Type::kPolynomial2,
                        {200, 0, 2, 0.5, 3e-4, -2e-4, 1e-4},
                        {-150, 0, -0.4, 2, 2e-4, 1e-4, -3e-4}});
    job.resampling = "bilinear";
    job.tolerance = 0;
    job.threads = 1;
    gdal::WarpRaster(job);
    const Pixels exact = Read(target);
    job.threads = 3;
    job.replaces = true;
    gdal::WarpRaster(job);
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    EXPECT_TRUE(std::ranges::equal(exact.bands[0], Read(target).bands[0], same));
    job.tolerance = 0.125;
    gdal::WarpRaster(job);
    const Pixels near = Read(target);
    double worst = 0;
    for (std::size_t i = 0; i < near.bands[0].size(); ++i) {
        const double apart = std::abs(near.bands[0][i] - exact.bands[0][i]);
        if (apart > worst) worst = apart;
    }
    EXPECT_GT(worst, 0);
    EXPECT_LT(worst, 1001 * 0.13);
}

}  // namespace
}  // namespace kv_tr::test
