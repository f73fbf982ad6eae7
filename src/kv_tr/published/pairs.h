// Published control points and those of the core.
#pragma once

#include <span>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

inline ControlPoint ControlPointOf(const typeXYs4Tr& pair) {
    return {.id = pair.sId,
            .source = {pair.dXsour, pair.dYsour},
            .destination = {pair.dXdest, pair.dYdest},
            .used = !pair.bNotUsed};
}

inline typeXYs4Tr PairOf(const ControlPoint& point, const Residual& residual) {
    return {.sId = point.id,
            .dXsour = point.source.first,
            .dYsour = point.source.second,
            .dXdest = point.destination.first,
            .dYdest = point.destination.second,
            .dXerr = residual.first,
            .dYerr = residual.second,
            .bNotUsed = !point.used};
}

/// The total residual of a pair: the length of its residual vector.
inline double ResidualLength(const typeXYs4Tr& pair) {
    return Residual{pair.dXerr, pair.dYerr}.Length();
}

}  // namespace kv_tr
