// What takes points from one system to the other.
#include "common/point_map.h"

#include <cmath>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {

SourcePoint ImageOf(const PointMap& map, Point point) {
    if (const auto* inverse = std::get_if<ExactInverse>(&map)) return inverse->Apply(point);
    return {.point = std::get<Transformation>(map).Apply(point)};
}

std::string ReasonText(NoSource trouble) {
    switch (trouble) {
        case NoSource::kNone: return {};
        case NoSource::kNotReached: return Translated(Text::kNotReached);
        case NoSource::kBeyondFold: return Translated(Text::kBeyondFold);
        case NoSource::kOutsideDomain: return Translated(Text::kOutsideDomain);
        case NoSource::kNotConverged: break;
    }
    return Translated(Text::kInverseNotConverged);
}

}  // namespace kv_tr::app
