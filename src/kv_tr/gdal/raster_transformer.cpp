// The way from the pixels of a raster onto the map and back, also as GDAL's warper asks for it.
#include "kv_tr/gdal/raster_transformer.h"

#include <gdal.h>
#include <gdal_alg.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {
namespace {

using Numbers = std::span<double>;

void Apply(const GeoTransform& t, Numbers x, Numbers y) {
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double column = x[i];
        const double line = y[i];
        x[i] = t[0] + t[1] * column + t[2] * line;
        y[i] = t[3] + t[4] * column + t[5] * line;
    }
}

GeoTransform InverseOf(const GeoTransform& t) {
    GeoTransform original = t;
    GeoTransform inverse{};
    if (GDALInvGeoTransform(original.data(), inverse.data()) == 0) {
        throw DataSetError(Text::kNoRasterInverse, {});
    }
    return inverse;
}

/// First the one, then the other.
GeoTransform Then(const GeoTransform& first, const GeoTransform& second) {
    GeoTransform both{};
    GDALComposeGeoTransforms(first.data(), second.data(), both.data());
    return both;
}

/// From a system onto the map, which is its own inverse but for swaps with one sign.
GeoTransform OntoMap(AxisMapping axes) {
    const Point first = OnMap(axes, {1, 0});
    const Point second = OnMap(axes, {0, 1});
    return {0, first.first, second.first, 0, first.second, second.second};
}

/// What has no image becomes NaN.
void Apply(const PointMap& map, Numbers first, Numbers second) {
    std::visit([&](const auto& one) { one.Apply(first, second, first, second); }, map);
}

PointMap BackwardOf(const PointMap& forward, const GeoTransform& source, int columns, int lines) {
    if (const auto* inverse = std::get_if<ExactInverse>(&forward)) return inverse->Forward();
    const double right = columns;
    const double below = lines;
    std::array<double, 4> first{0, right, 0, right};
    std::array<double, 4> second{0, 0, below, below};
    Apply(source, first, second);
    std::array<Point, 4> corners;
    for (std::size_t i = 0; i < corners.size(); ++i) corners[i] = {first[i], second[i]};
    const auto inverse = ExactInverse::Of(std::get<Transformation>(forward), DomainOf(corners));
    if (!inverse) throw DataSetError(Text::kNoRasterInverse, {});
    return *inverse;
}

/// What GDAL hands to TransformPixels.
struct PixelTransformer {
    GDALTransformerInfo info;  // where GDAL looks for it, so that this comes first
    std::shared_ptr<const RasterMapping> mapping;
    GeoTransform target;
    GeoTransform toTargetPixels;
    double tolerance;

    void ToSource(Numbers x, Numbers y) const {
        kv_tr::gdal::Apply(target, x, y);
        mapping->ToPixels(x, y);
    }
    bool Interpolate(Numbers x, Numbers y) const;
};

void Destroy(void* argument) { delete static_cast<PixelTransformer*>(argument); }

/// GDAL asks for smaller sources where it reads overviews, which is not done here.
void* CopyOf(void* argument, double ratioX, double ratioY) {
    if (ratioX != 1.0 || ratioY != 1.0) return nullptr;
    return new PixelTransformer(*static_cast<PixelTransformer*>(argument));
}

/// Whether places follow each other along a line at equal distances, as a few of them tell: GDAL
/// asks for lines of pixels, or for a few places anywhere.
bool AreEven(Numbers x, Numbers y) {
    constexpr std::size_t kLooks = 16;
    const double step = x[1] - x[0];
    for (std::size_t look = 1; look <= kLooks; ++look) {
        const std::size_t i = (x.size() - 1) * look / kLooks;
        const double expected = x[0] + step * static_cast<double>(i);
        if (y[i] != y[0] || std::abs(x[i] - expected) > 1e-6) return false;
    }
    return step != 0;
}

/// Whether every second place lies within the tolerance of the middle of its neighbours.
bool AreStraight(Numbers x, Numbers y, double tolerance) {
    for (std::size_t i = 1; i + 1 < x.size(); ++i) {
        const double apart =
            std::abs(x[i] - (x[i - 1] + x[i + 1]) / 2) + std::abs(y[i] - (y[i - 1] + y[i + 1]) / 2);
        if (!(apart <= tolerance)) return false;  // nor where one is not a number
    }
    return true;
}

/// A straight stretch: where it is at one column of the target, and how it goes on.
struct Stretch {
    double column;
    double byColumn;
    double line;
    double byLine;
    double from;
};

void Follow(Numbers x, Numbers y, const Stretch& stretch) {
    const auto [column, byColumn, line, byLine, from] = stretch;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double along = x[i] - from;
        x[i] = column + byColumn * along;
        y[i] = line + byLine * along;
    }
}

/// Places along a line of pixels from some of them, which are computed exactly; false, with nothing
/// done, where so many would be needed that all can be.
bool PixelTransformer::Interpolate(Numbers x, Numbers y) const {
    constexpr std::size_t kLeast = 16;     // intervals
    constexpr std::size_t kNarrowest = 4;  // pixels in one
    if (x.size() < kLeast * kNarrowest || !AreEven(x, y)) return false;
    const auto last = static_cast<double>(x.size() - 1);
    std::vector<double> columns;
    std::vector<double> lines;
    for (std::size_t intervals = kLeast; intervals * kNarrowest <= x.size(); intervals *= 2) {
        const double width = last / static_cast<double>(intervals);
        columns.resize(intervals + 1);
        lines.assign(intervals + 1, y[0]);
        for (std::size_t k = 0; k <= intervals; ++k) {
            columns[k] = x[0] + (x[1] - x[0]) * width * static_cast<double>(k);
        }
        ToSource(columns, lines);
        if (!AreStraight(columns, lines, tolerance)) continue;
        const double step = (x.back() - x.front()) / last;
        const double first = x[0];
        std::size_t begin = 0;
        for (std::size_t k = 0; k < intervals; ++k) {
            const double before = width * static_cast<double>(k);
            const auto end =
                k + 1 == intervals ? x.size() : static_cast<std::size_t>(std::ceil(before + width));
            const double byColumn = (columns[k + 1] - columns[k]) / (width * step);
            const double byLine = (lines[k + 1] - lines[k]) / (width * step);
            Follow(x.subspan(begin, end - begin), y.subspan(begin, end - begin),
                   {columns[k], byColumn, lines[k], byLine, first + before * step});
            begin = end;
        }
        return true;
    }
    return false;
}

}  // namespace

RasterMapping::RasterMapping(const MapOnMaps& forward, const GeoTransform& source, int columns,
                             int lines)
    : toSystem_(Then(source, InverseOf(OntoMap(forward.sourceAxes)))),
      toPixels_(InverseOf(toSystem_)),
      forward_(forward.map),
      backward_(BackwardOf(forward.map, toSystem_, columns, lines)),
      ontoMap_(OntoMap(forward.targetAxes)),
      fromMap_(InverseOf(ontoMap_)) {}

void RasterMapping::ToSource(Numbers columns, Numbers lines) const {
    Apply(toSystem_, columns, lines);
}

void RasterMapping::ToMap(Numbers columns, Numbers lines) const {
    Apply(toSystem_, columns, lines);
    Apply(forward_, columns, lines);
    Apply(ontoMap_, columns, lines);
}

void RasterMapping::ToPixels(Numbers x, Numbers y) const {
    Apply(fromMap_, x, y);
    Apply(backward_, x, y);
    Apply(toPixels_, x, y);
}

void* NewPixelTransformer(std::shared_ptr<const RasterMapping> mapping, const GeoTransform& target,
                          double tolerance) {
    auto made = std::make_unique<PixelTransformer>();
    std::memcpy(made->info.abySignature, GDAL_GTI2_SIGNATURE, sizeof made->info.abySignature);
    made->info.pszClassName = "KvTrPixelTransformer";
    made->info.pfnTransform = TransformPixels;
    made->info.pfnCleanup = Destroy;
    made->info.pfnCreateSimilar = CopyOf;
    made->mapping = std::move(mapping);
    made->target = target;
    made->toTargetPixels = InverseOf(target);
    made->tolerance = tolerance;
    return made.release();
}

int TransformPixels(void* argument, int toSource, int count, double* x, double* y, double* /*z*/,
                    int* succeeded) {
    const auto& transformer = *static_cast<PixelTransformer*>(argument);
    const auto all = static_cast<std::size_t>(count);
    const Numbers xs(x, all);
    const Numbers ys(y, all);
    if (toSource != 0 && transformer.tolerance > 0 && transformer.Interpolate(xs, ys)) {
        std::fill_n(succeeded, count, 1);
        return 1;
    }
    constexpr std::size_t kBlock = 512;  // stays in the cache
    for (std::size_t begin = 0; begin < all; begin += kBlock) {
        const std::size_t size = std::min(kBlock, all - begin);
        const Numbers blockX = xs.subspan(begin, size);
        const Numbers blockY = ys.subspan(begin, size);
        if (toSource != 0) {
            transformer.ToSource(blockX, blockY);
        } else {
            transformer.mapping->ToMap(blockX, blockY);
            Apply(transformer.toTargetPixels, blockX, blockY);
        }
    }
    for (std::size_t i = 0; i < all; ++i) {
        const bool found = std::isfinite(x[i]) && std::isfinite(y[i]);
        succeeded[i] = found ? 1 : 0;
        if (!found) x[i] = y[i] = HUGE_VAL;
    }
    return 1;
}

}  // namespace kv_tr::gdal
