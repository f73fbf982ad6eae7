// Rasters transformed whole.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/gdal/map_on_maps.h"
#include "kv_tr/gdal/raster_grid.h"
#include "kv_tr/gdal/target_crs.h"
#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {

/// What the coordinates of the source are, seen from its pixels.
enum class SourceCoordinates {
    kOnMap,      ///< those that its georeference gives
    kLinesDown,  ///< column and line, counted from the upper left corner
    kLinesUp,    ///< column, and line as a negative number, so that y grows upwards
};

/// A raster to be transformed, and how.
struct RasterJob {
    std::string input{};  ///< a file, or whatever GDAL opens
    std::filesystem::path output{};
    bool replaces = false;  ///< whether the output may exist
    MapOnMaps map{};
    SourceCoordinates sourceCoordinates = SourceCoordinates::kOnMap;
    std::optional<Domain> controlPoints{};  ///< where the transformation is known to hold
    GridWish grid{};
    std::string resampling = "nearest";  ///< one of Resamplings()
    std::optional<double> noData{};
    TargetCrs crs{};
    std::string format{};  ///< a driver of GDAL; otherwise as the name of the output tells
    std::string compression{};
    std::vector<std::string> options{};  ///< NAME=VALUE, for the driver
    bool overviews = false;
    /// By how many pixels of the source the places between exactly computed ones may be wrong,
    /// which GDAL judges in the middle of each stretch; 0 for every pixel exactly.
    double tolerance = 0.125;
    int threads = 0;         ///< 0 for as many as the machine has
    double megabytes = 256;  ///< for pixels being worked on
};

/// What became of a job.
struct RasterResult {
    RasterGrid grid{};
    std::string format{};
    bool hasAlpha = false;
    /// Where the transformation folds the source over, in its system. Pixels beyond are left out.
    std::optional<Point> fold{};
    bool isFarFromPoints = false;         ///< source and control points have nothing in common
    std::vector<std::string> warnings{};  ///< of GDAL
};

/// The names of the ways to find the value of a pixel, as "nearest, bilinear, ...".
std::string Resamplings();

/// Writes the transformed raster: bands, types, tables of colours, names, no-data values, scales
/// and metadata are those of the source, the coordinate reference system is that of the job or
/// none. The target appears when it is complete. DataSetError when that does not come about, and
/// Cancelled.
RasterResult WarpRaster(const RasterJob& job, const Progress& progress = {});

}  // namespace kv_tr::gdal
