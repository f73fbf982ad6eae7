// What takes points from one system to the other.
#include "kv_tr/model/point_map.h"

#include <cmath>
#include <limits>

namespace kv_tr {

SourcePoint ImageOf(const PointMap& map, Point point) {
    if (const auto* inverse = std::get_if<ExactInverse>(&map)) return inverse->Apply(point);
    return {.point = std::get<Transformation>(map).Apply(point)};
}

std::size_t MapPairs(const PointMap& map, std::span<const double> pairs, std::span<double> out,
                     std::span<NoSource> troubles) {
    if (const auto* inverse = std::get_if<ExactInverse>(&map)) {
        return inverse->ApplyToPairs(pairs, out, troubles);
    }
    std::get<Transformation>(map).ApplyToPairs(pairs, out);
    std::size_t lost = 0;
    for (std::size_t i = 0; i + 1 < out.size(); i += 2) {
        const bool found = std::isfinite(out[i]) && std::isfinite(out[i + 1]);
        if (!found) {
            out[i] = out[i + 1] = std::numeric_limits<double>::quiet_NaN();
            ++lost;
        }
        if (!troubles.empty()) {
            troubles[i / 2] = found ? NoSource::kNone : NoSource::kNotReached;
        }
    }
    return lost;
}

Text TextOf(NoSource trouble) {
    switch (trouble) {
        case NoSource::kNotReached: return Text::kNotReached;
        case NoSource::kBeyondFold: return Text::kBeyondFold;
        case NoSource::kOutsideDomain: return Text::kOutsideDomain;
        default: return Text::kInverseNotConverged;
    }
}

Text ReasonFor(const PointMap& map, NoSource trouble) {
    return std::holds_alternative<Transformation>(map) ? Text::kImageNotFinite : TextOf(trouble);
}

}  // namespace kv_tr
