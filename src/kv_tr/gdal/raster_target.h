// The raster that is written: its format, its bands, and what it takes over from its source.
#pragma once

#include <gdal_priv.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/raster_grid.h"
#include "kv_tr/gdal/raster_warp.h"

namespace kv_tr::gdal {

/// A driver of GDAL and what to tell it.
struct RasterFormat {
    GDALDriver* driver = nullptr;
    CPLStringList options;

    std::string Name() const { return driver->GetDescription(); }
    /// Whether pixels can be written one by one; otherwise only a whole raster can be copied.
    bool Creates() const { return driver->GetMetadataItem(GDAL_DCAP_CREATE) != nullptr; }
    /// Whether there is a creation option of this name.
    bool Knows(const std::string& option) const;
};

/// The format that a job names, or else the name of its output. DataSetError when it cannot be
/// written, or does not know one of the options.
RasterFormat FormatOf(const RasterJob& job);

/// Which bands there are and what stands for no value.
struct RasterBands {
    std::vector<int> numbers;  ///< of all bands of the source but its alpha band
    int sourceAlpha = 0;       ///< number of that, or 0
    int targetAlpha = 0;       ///< number of the alpha band of the target, or 0
    bool hasPalette = false;
    bool isColour = false;                            ///< red, green, blue
    GDALDataType type = GDT_Byte;                     ///< one that holds the values of all bands
    std::vector<std::optional<double>> noData;        ///< of the source, for each of the numbers
    std::vector<std::optional<double>> targetNoData;  ///< likewise of the target

    /// In the target.
    int Count() const { return static_cast<int>(numbers.size()) + (targetAlpha != 0 ? 1 : 0); }
};

/// The bands of a source and of its target. What has no value is told from the rest by the no-data
/// value that is stated, or that of the source, in floating-point rasters by NaN, and otherwise by
/// an alpha band. DataSetError for a stated value that the type cannot hold.
RasterBands BandsOf(GDALDataset& source, const std::optional<double>& statedNoData);

/// Makes a raster with everything but its pixels. DataSetError when that fails, or anything failed
/// since the log was begun.
GDALDatasetUniquePtr CreateTarget(const RasterFormat& format, const std::filesystem::path& path,
                                  const RasterGrid& grid, const RasterBands& bands,
                                  const TargetCrs& crs, GDALDataset& source,
                                  const ErrorLog& errors);

/// DataSetError where a raster that was written has lost a band, a table of colours or the sense of
/// its alpha band, which formats do without a word.
void CheckWritten(const std::filesystem::path& path, const RasterFormat& format,
                  const RasterBands& bands);

}  // namespace kv_tr::gdal
