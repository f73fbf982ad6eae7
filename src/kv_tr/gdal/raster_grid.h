// The pixels of a raster that is to be made: where they lie on the map, and how many there are.
#pragma once

#include <array>
#include <optional>

#include "kv_tr/gdal/raster_transformer.h"

namespace kv_tr::gdal {

/// What a user wishes; the rest follows from the image of the source.
struct GridWish {
    std::optional<std::array<double, 2>> resolution{};  ///< width and height of a pixel
    std::optional<std::array<double, 4>> extent{};      ///< least x and y, greatest x and y
    std::optional<std::array<int, 2>> size{};           ///< columns and lines
};

/// Rows of pixels along the axes of the map, the first pixel at the upper left.
struct RasterGrid {
    double left = 0;
    double top = 0;
    double width = 1;   ///< of a pixel
    double height = 1;  ///< of a pixel
    int columns = 1;
    int lines = 1;

    GeoTransform Place() const { return {left, width, 0, top, 0, -height}; }
};

/// The grid that holds the image of a source with so many columns and lines. Its pixels are squares
/// as large as keep the number of pixels along the diagonal from the first to the last one. Not
/// more than half a pixel of the extent is cut off or added, so that every pixel whose centre lies
/// in the image is there. DataSetError where there is no image, where wishes contradict each other,
/// and for more pixels than a wrong parameter can be meant to give.
RasterGrid MakeGrid(const RasterMapping& mapping, int columns, int lines, const GridWish& wish);

}  // namespace kv_tr::gdal
