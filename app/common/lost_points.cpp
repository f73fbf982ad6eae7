// Points that have no image under an exact inverse, and why.
#include "common/lost_points.h"

#include "kv_tr/model/point_map.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {

std::string ReasonText(NoSource trouble) {
    return trouble == NoSource::kNone ? std::string() : Translated(TextOf(trouble));
}

}  // namespace kv_tr::app
