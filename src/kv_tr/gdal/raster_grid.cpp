// The pixels of a raster that is to be made: where they lie on the map, and how many there are.
#include "kv_tr/gdal/raster_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {
namespace {

constexpr int kInside = 32;               // steps across the raster
constexpr int kAlong = 1024;              // steps along an edge, at most
constexpr double kMostTimes = 16;         // as many pixels as the source has, and
constexpr double kMostOfSmall = 1 << 22;  // that of a small one

/// Places all over a raster: columns and lines, first a coarse grid from the first corner to the
/// last one, then the edges.
std::vector<double> Samples(int columns, int lines) {
    std::vector<double> pairs;
    for (int i = 0; i <= kInside; ++i) {
        for (int j = 0; j <= kInside; ++j) {
            pairs.insert(pairs.end(), {1.0 * columns * j / kInside, 1.0 * lines * i / kInside});
        }
    }
    const int across = std::min(columns, kAlong);
    for (int j = 0; j <= across; ++j) {
        const double column = 1.0 * columns * j / across;
        pairs.insert(pairs.end(), {column, 0.0, column, 1.0 * lines});
    }
    const int down = std::min(lines, kAlong);
    for (int i = 0; i <= down; ++i) {
        const double line = 1.0 * lines * i / down;
        pairs.insert(pairs.end(), {0.0, line, 1.0 * columns, line});
    }
    return pairs;
}

/// The image of a raster: the box around it, and the size of a pixel.
struct Image {
    double left = std::numeric_limits<double>::infinity();
    double bottom = left;
    double right = -left;
    double top = -left;
    double pixel = 0;
};

/// The pixel comes from the first and the last place with an image, which are the corners where
/// these have one.
Image ImageOf(const RasterMapping& mapping, int columns, int lines) {
    const auto places = Samples(columns, lines);
    auto images = places;
    mapping.ToMap(images);
    const auto found = [&](std::size_t i) {
        return std::isfinite(images[i]) && std::isfinite(images[i + 1]);
    };
    Image image;
    for (std::size_t i = 0; i < images.size(); i += 2) {
        if (!found(i)) continue;
        image.left = std::min(image.left, images[i]);
        image.right = std::max(image.right, images[i]);
        image.bottom = std::min(image.bottom, images[i + 1]);
        image.top = std::max(image.top, images[i + 1]);
    }
    constexpr std::size_t kInGrid = 2UL * (kInside + 1) * (kInside + 1);
    std::size_t first = 0;
    std::size_t last = kInGrid - 2;
    while (first < last && !found(first)) first += 2;
    while (first < last && !found(last)) last -= 2;
    image.pixel = std::hypot(images[last] - images[first], images[last + 1] - images[first + 1]) /
                  std::hypot(places[last] - places[first], places[last + 1] - places[first + 1]);
    if (!(image.pixel > 0 && std::isfinite(image.pixel) && image.right > image.left &&
          image.top > image.bottom)) {
        throw DataSetError(Text::kNoRasterImage, {});
    }
    return image;
}

/// How many pixels an extent takes.
double Count(double extent, double pixel) {
    return std::max(1.0, std::floor(extent / pixel + 0.5));
}

std::string CountText(double count) {
    return count < 1e15 ? std::to_string(static_cast<long long>(count)) : "> 10^15";
}

[[noreturn]] void Refuse(double across, double down, int columns, int lines) {
    throw DataSetError(Text::kTooManyPixels, {CountText(across), CountText(down),
                                              std::to_string(columns), std::to_string(lines)});
}

}  // namespace

RasterGrid MakeGrid(const RasterMapping& mapping, int columns, int lines, const GridWish& wish) {
    if (wish.resolution && wish.size) throw DataSetError(Text::kResolutionOrSize, {});
    if (wish.extent &&
        !((*wish.extent)[0] < (*wish.extent)[2] && (*wish.extent)[1] < (*wish.extent)[3])) {
        throw DataSetError(Text::kEmptyExtent, {});
    }
    RasterGrid grid;
    Image image;
    if (!wish.extent || (!wish.resolution && !wish.size)) {
        image = ImageOf(mapping, columns, lines);
        grid.width = grid.height = image.pixel;
    }
    if (wish.extent) {
        image.left = (*wish.extent)[0];
        image.bottom = (*wish.extent)[1];
        image.right = (*wish.extent)[2];
        image.top = (*wish.extent)[3];
    }
    grid.left = image.left;
    grid.top = image.top;
    if (wish.size) {
        grid.columns = (*wish.size)[0];
        grid.lines = (*wish.size)[1];
        grid.width = (image.right - image.left) / grid.columns;
        grid.height = (image.top - image.bottom) / grid.lines;
        return grid;
    }
    if (wish.resolution) {
        grid.width = (*wish.resolution)[0];
        grid.height = (*wish.resolution)[1];
    }
    const double across = Count(image.right - image.left, grid.width);
    const double down = Count(image.top - image.bottom, grid.height);
    constexpr double kMost = std::numeric_limits<int>::max();
    const bool stated = wish.resolution.has_value();
    const double most = std::max(kMostOfSmall, kMostTimes * columns * lines);
    if (!(across <= kMost && down <= kMost && (stated || across * down <= most))) {
        Refuse(across, down, columns, lines);
    }
    grid.columns = static_cast<int>(across);
    grid.lines = static_cast<int>(down);
    return grid;
}

}  // namespace kv_tr::gdal
