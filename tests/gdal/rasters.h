// Rasters to transform, in a folder of their own.
#pragma once

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "helpers/files.h"
#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/raster_warp.h"

namespace kv_tr::test {

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
inline double Noise(int column, int line, int band) {
    return (column * 7919 + line * 104729 + band * 1299709 + column * line * 31) % 251;
}

/// A plane, which an interpolation between pixels gives back at any place.
inline double Plane(int column, int line, int /*band*/) {
    return column + 0.5 + 1000 * (line + 0.5);
}

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

}  // namespace kv_tr::test
