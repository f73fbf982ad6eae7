// Whether what was read as control points is likely to be that.
#include "desktop/likely_pairs.h"

#include <algorithm>
#include <cmath>

namespace kv_tr::desktop {

bool AreLikelyPairs(std::span<const ControlPoint> points) {
    Point source;
    Point destination;
    const auto count = static_cast<double>(points.size());
    for (const ControlPoint& point : points) {
        source.first += point.source.first / count;
        source.second += point.source.second / count;
        destination.first += point.destination.first / count;
        destination.second += point.destination.second / count;
    }
    double sourceSpread = 0;
    double destinationSpread = 0;
    Point turned;    // what a turn and a scale explain
    Point mirrored;  // and what they do after the axes have changed places
    for (const ControlPoint& point : points) {
        const double u = point.source.first - source.first;
        const double v = point.source.second - source.second;
        const double p = point.destination.first - destination.first;
        const double q = point.destination.second - destination.second;
        sourceSpread += u * u + v * v;
        destinationSpread += p * p + q * q;
        turned.first += u * p + v * q;
        turned.second += u * q - v * p;
        mirrored.first += u * q + v * p;
        mirrored.second += u * p - v * q;
    }
    const auto squared = [](Point sum) { return sum.first * sum.first + sum.second * sum.second; };
    const double explained = std::max(squared(turned), squared(mirrored)) / sourceSpread;
    const double scale = std::sqrt(destinationSpread / sourceSpread);
    if (points.size() == 2) return scale > 0.4 && scale < 2.5;  // a similarity always explains two
    return explained > 0.9 * destinationSpread && scale > 0.1;
}

}  // namespace kv_tr::desktop
