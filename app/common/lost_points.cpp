// Points that have no image under an exact inverse, and why.
#include "common/lost_points.h"

#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {

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
