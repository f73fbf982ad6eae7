// Whether what was read as control points is likely to be that.
#include "desktop/likely_pairs.h"

#include <algorithm>
#include <cmath>

namespace kv_tr::desktop {

bool AreLikelyPairs(std::span<const typeXYs4Tr> pairs) {
    PlanePoint source;
    PlanePoint destination;
    const auto count = static_cast<double>(pairs.size());
    for (const typeXYs4Tr& pair : pairs) {
        source.first += pair.dXsour / count;
        source.second += pair.dYsour / count;
        destination.first += pair.dXdest / count;
        destination.second += pair.dYdest / count;
    }
    double sourceSpread = 0;
    double destinationSpread = 0;
    PlanePoint turned;    // what a turn and a scale explain
    PlanePoint mirrored;  // and what they do after the axes have changed places
    for (const typeXYs4Tr& pair : pairs) {
        const double u = pair.dXsour - source.first;
        const double v = pair.dYsour - source.second;
        const double p = pair.dXdest - destination.first;
        const double q = pair.dYdest - destination.second;
        sourceSpread += u * u + v * v;
        destinationSpread += p * p + q * q;
        turned.first += u * p + v * q;
        turned.second += u * q - v * p;
        mirrored.first += u * q + v * p;
        mirrored.second += u * p - v * q;
    }
    const auto squared = [](PlanePoint sum) {
        return sum.first * sum.first + sum.second * sum.second;
    };
    const double explained = std::max(squared(turned), squared(mirrored)) / sourceSpread;
    const double scale = std::sqrt(destinationSpread / sourceSpread);
    if (pairs.size() == 2) return scale > 0.4 && scale < 2.5;  // a similarity always explains two
    return explained > 0.9 * destinationSpread && scale > 0.1;
}

}  // namespace kv_tr::desktop
