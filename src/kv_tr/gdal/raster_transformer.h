// The way from the pixels of a raster onto the map and back, also as GDAL's warper asks for it.
#pragma once

#include <array>
#include <memory>
#include <span>

#include "kv_tr/gdal/map_on_maps.h"

namespace kv_tr::gdal {

/// How map coordinates come from column and line, counted from the outer corner of the first pixel:
/// x = [0] + [1] column + [2] line, y = [3] + [4] column + [5] line.
using GeoTransform = std::array<double, 6>;

/// Pixels of a raster whose place on the map, or that of whose coordinates, is known, through a
/// transformation onto another map, and back.
class RasterMapping {
public:
    /// The domain of the exact inverse is the raster, as DomainOf makes one of its corners.
    /// DataSetError where the transformation, or the georeference, has no inverse.
    RasterMapping(const MapOnMaps& forward, const GeoTransform& source, int columns, int lines);

    /// Column and line to the system of the source, in place.
    void ToSource(std::span<double> pairs) const;
    /// Column and line to the map of the target, in place; what has no image becomes NaN.
    void ToMap(std::span<double> pairs) const;
    /// From the map of the target to column and line, in place; what has no source becomes NaN.
    void ToPixels(std::span<double> pairs) const;

    const MapOnMaps& Forward() const { return forward_; }

private:
    MapOnMaps forward_;
    MapOnMaps backward_;
    GeoTransform source_;
    GeoTransform toPixels_;
};

/// The argument of TransformPixels, which leads from the pixels of the source to those of a target
/// whose place on the map is given. GDALDestroyTransformer ends it; GDAL makes copies for threads.
void* NewPixelTransformer(std::shared_ptr<const RasterMapping> mapping, const GeoTransform& target);

/// A GDALTransformerFunc.
int TransformPixels(void* argument, int toSource, int count, double* x, double* y, double* z,
                    int* succeeded);

}  // namespace kv_tr::gdal
