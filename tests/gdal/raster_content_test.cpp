// Rasters transformed whole: what they keep, how they are written, and why not.
#include "gdal/rasters.h"

namespace kv_tr::test {
namespace {

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
    EXPECT_EQ(Refusal(job), Text::kAlphaNotHeld);
    job.output = folder.File("target.xyzzy");
    EXPECT_EQ(Refusal(job), Text::kFormatUnclear);
}

}  // namespace
}  // namespace kv_tr::test
