// The way from the pixels of a raster onto the map and back, also as GDAL's warper asks for it.
#include "kv_tr/gdal/raster_transformer.h"

#include <gdal.h>
#include <gdal_alg.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {
namespace {

void Apply(const GeoTransform& t, std::span<double> pairs) {
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const double column = pairs[i];
        const double line = pairs[i + 1];
        pairs[i] = t[0] + t[1] * column + t[2] * line;
        pairs[i + 1] = t[3] + t[4] * column + t[5] * line;
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

MapOnMaps InverseOf(const MapOnMaps& forward, const GeoTransform& source, int columns, int lines) {
    if (const auto* inverse = std::get_if<ExactInverse>(&forward.map)) {
        return {inverse->Forward(), forward.targetAxes, forward.sourceAxes};
    }
    std::array<double, 8> corners{0, 0,           1.0 * columns, 0,
                                  0, 1.0 * lines, 1.0 * columns, 1.0 * lines};
    Apply(source, corners);
    ToSystem(forward.sourceAxes, corners);
    std::array<Point, 4> points;
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i] = {corners[2 * i], corners[2 * i + 1]};
    }
    const auto inverse = ExactInverse::Of(std::get<Transformation>(forward.map), DomainOf(points));
    if (!inverse) throw DataSetError(Text::kNoRasterInverse, {});
    return {*inverse, forward.targetAxes, forward.sourceAxes};
}

/// What GDAL hands to TransformPixels.
struct PixelTransformer {
    GDALTransformerInfo info;  // where GDAL looks for it, so that this comes first
    std::shared_ptr<const RasterMapping> mapping;
    GeoTransform target;
    GeoTransform toTargetPixels;
};

void Destroy(void* argument) { delete static_cast<PixelTransformer*>(argument); }

/// GDAL asks for smaller sources where it reads overviews, which is not done here.
void* CopyOf(void* argument, double ratioX, double ratioY) {
    if (ratioX != 1.0 || ratioY != 1.0) return nullptr;
    return new PixelTransformer(*static_cast<PixelTransformer*>(argument));
}

}  // namespace

RasterMapping::RasterMapping(const MapOnMaps& forward, const GeoTransform& source, int columns,
                             int lines)
    : forward_(forward),
      backward_(InverseOf(forward, source, columns, lines)),
      source_(source),
      toPixels_(InverseOf(source)) {}

void RasterMapping::ToSource(std::span<double> pairs) const {
    Apply(source_, pairs);
    ToSystem(forward_.sourceAxes, pairs);
}

void RasterMapping::ToMap(std::span<double> pairs) const {
    Apply(source_, pairs);
    forward_.Apply(pairs);
}

void RasterMapping::ToPixels(std::span<double> pairs) const {
    backward_.Apply(pairs);
    Apply(toPixels_, pairs);
}

void* NewPixelTransformer(std::shared_ptr<const RasterMapping> mapping,
                          const GeoTransform& target) {
    auto made = std::make_unique<PixelTransformer>();
    std::memcpy(made->info.abySignature, GDAL_GTI2_SIGNATURE, sizeof made->info.abySignature);
    made->info.pszClassName = "KvTrPixelTransformer";
    made->info.pfnTransform = TransformPixels;
    made->info.pfnCleanup = Destroy;
    made->info.pfnCreateSimilar = CopyOf;
    made->mapping = std::move(mapping);
    made->target = target;
    made->toTargetPixels = InverseOf(target);
    return made.release();
}

int TransformPixels(void* argument, int toSource, int count, double* x, double* y, double* /*z*/,
                    int* succeeded) {
    constexpr std::size_t kBlock = 256;
    const auto& transformer = *static_cast<PixelTransformer*>(argument);
    const auto all = static_cast<std::size_t>(count);
    std::array<double, 2 * kBlock> pairs;
    for (std::size_t begin = 0; begin < all; begin += kBlock) {
        const std::size_t size = std::min(kBlock, all - begin);
        const std::span block(pairs.data(), 2 * size);
        for (std::size_t i = 0; i < size; ++i) {
            pairs[2 * i] = x[begin + i];
            pairs[2 * i + 1] = y[begin + i];
        }
        if (toSource != 0) {
            Apply(transformer.target, block);
            transformer.mapping->ToPixels(block);
        } else {
            transformer.mapping->ToMap(block);
            Apply(transformer.toTargetPixels, block);
        }
        for (std::size_t i = 0; i < size; ++i) {
            const bool found = std::isfinite(pairs[2 * i]) && std::isfinite(pairs[2 * i + 1]);
            x[begin + i] = found ? pairs[2 * i] : HUGE_VAL;
            y[begin + i] = found ? pairs[2 * i + 1] : HUGE_VAL;
            succeeded[begin + i] = found ? 1 : 0;
        }
    }
    return 1;
}

}  // namespace kv_tr::gdal
