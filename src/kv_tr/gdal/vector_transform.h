// Layers of features, transformed whole.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/gdal/map_on_maps.h"
#include "kv_tr/gdal/target_crs.h"
#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {

/// What is to be transformed, and to where.
struct VectorRequest {
    std::filesystem::path source;
    std::filesystem::path target;
    std::string format{};      ///< a driver of GDAL; otherwise the ending of the target tells
    bool mayBeFolder = false;  ///< layers that need files of their own get a folder for the target
    bool mayBeTable = false;   ///< a source without geometries is copied
    bool replaces = false;     ///< a target that exists
    bool keepGoing = false;    ///< features without an image are left out
    TargetCrs crs{};
    double curveTolerance = 0.001;              ///< units of the source
    const PointPrecision* precision = nullptr;  ///< tells which points are extrapolated
};

/// What was done.
struct VectorResult {
    std::filesystem::path target;  ///< the file or the folder of files
    std::size_t layers = 0;
    std::size_t features = 0;  ///< read, those that were left out included
    std::size_t leftOut = 0;
    std::size_t arcs = 0;  ///< that became lines
    PointPrecision::Extrapolation outside{};
    std::vector<DataSetError> remarks{};
};

/// The format that GDAL knows a file or folder by whose layers it can read; empty for none.
std::string LayerFormatOf(const std::filesystem::path& path);

/// The name of a data set in a format; that of the source when the format is empty or its own.
/// DataSetError for a format that cannot be written.
std::filesystem::path NameInFormat(const std::filesystem::path& source, const std::string& format);

/// The files that a data set consists of, the one that names it included.
std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path);

/// Writes all layers of a data set with x and y of every point transformed, and everything else as
/// far as the format can hold it: attributes and their definitions, identifiers, heights, measures,
/// arcs where circles stay circles, styles, metadata. Nothing is written when DataSetError says why
/// not or when the work is cancelled.
VectorResult TransformLayers(const VectorRequest& request, const MapOnMaps& map,
                             const Progress& progress = {});

}  // namespace kv_tr::gdal
