// The least-squares solutions of the models that a formula solves.
#include "kv_tr/fit/closed_fit.h"

#include <cmath>
#include <limits>

#include "kv_tr/fit/frame.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

/// Weighted sums of products of coordinates that are reduced to their centroids: u, v of the
/// source, w, z of the destination.
struct Products {
    double uu = 0;
    double vv = 0;
    double uw = 0;
    double uz = 0;
    double vw = 0;
    double vz = 0;
};

void SetRotation(ClosedFit& fit, double angle, double scaleFirst, double scaleSecond) {
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    fit.a1 = scaleFirst * c;
    fit.a2 = -scaleSecond * s;
    fit.b1 = scaleFirst * s;
    fit.b2 = scaleSecond * c;
}

/// The sum of squares is a constant less F cos² + 2G cos sin + K sin² of the rotation.
bool SetAffine5(ClosedFit& fit, const Products& sums) {
    const auto [p, r, a, b, c, d] = sums;
    if (!(p > 0.0) || !(r > 0.0)) return false;
    const double f = a * a / p + d * d / r;
    const double g = a * b / p - c * d / r;
    const double k = b * b / p + c * c / r;
    constexpr double kRounding = 64 * std::numeric_limits<double>::epsilon();
    if (!(Hypotenuse(2.0 * g, f - k) > kRounding * (f + k))) return false;
    const double angle = 0.5 * std::atan2(2.0 * g, f - k);
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    SetRotation(fit, angle, (a * cosine + b * sine) / p, (d * cosine - c * sine) / r);
    return true;
}

}  // namespace

Point ClosedFit::ReducedImageOf(Point point) const {
    const double u = point.first - source.first;
    const double v = point.second - source.second;
    return {a1 * u + a2 * v, b1 * u + b2 * v};
}

std::optional<ClosedFit> FitClosed(Type model, std::span<const Point> sources,
                                   std::span<const Point> destinations,
                                   std::span<const double> weights) {
    ClosedFit fit;
    fit.source = CentroidOf(sources, weights);
    fit.destination = CentroidOf(destinations, weights);
    Products sums;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const double weight = weights.empty() ? 1.0 : weights[i];
        const double u = weight * (sources[i].first - fit.source.first);
        const double v = weight * (sources[i].second - fit.source.second);
        const double w = destinations[i].first - fit.destination.first;
        const double z = destinations[i].second - fit.destination.second;
        sums.uu += u * (sources[i].first - fit.source.first);
        sums.vv += v * (sources[i].second - fit.source.second);
        sums.uw += u * w;
        sums.uz += u * z;
        sums.vw += v * w;
        sums.vz += v * z;
    }
    const double squares = sums.uu + sums.vv;
    if (!(squares > 0.0)) return std::nullopt;
    const double along = sums.uw + sums.vz;
    const double across = sums.uz - sums.vw;
    switch (model) {
        case Type::kHelmert:
            fit.a1 = fit.b2 = along / squares;
            fit.b1 = across / squares;
            fit.a2 = -fit.b1;
            return fit;
        case Type::kHelmert3:
            if (along == 0.0 && across == 0.0) return std::nullopt;
            SetRotation(fit, std::atan2(across, along), 1.0, 1.0);
            return fit;
        default:
            if (!SetAffine5(fit, sums)) return std::nullopt;
            return fit;
    }
}

}  // namespace kv_tr
