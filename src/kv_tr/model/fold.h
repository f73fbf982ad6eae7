// Whether a transformation folds the plane over.
#pragma once

#include <cstdint>
#include <span>

#include "kv_tr/model/transformation.h"

namespace kv_tr {

enum class Folding : std::uint8_t { kNone, kNearly, kFolds };

/// Where an area comes nearest to being folded over.
struct Fold {
    Folding folding = Folding::kNone;
    double leastDeterminant = 1;  ///< the least that was found, relative to that at the reference
    Point place;                  ///< where
};

/// Looks for a fold in the area around which samples lie: a place where the determinant of the
/// derivative has not the sign of the one at the reference. A mirrored transformation, whose
/// determinant is negative everywhere, has none.
///
/// The determinant is taken at the samples, then, around the place of the least one, three times at
/// nine points within the convex hull of the samples, each time half as far apart; at first by the
/// root of the area that a sample has to itself. For the bilinear type, whose determinant is
/// linear, the corners of the area decide exactly; for higher orders a fold can be missed that is
/// narrower than the distance between samples. The transformation nearly folds where the least
/// determinant is below a fifth of the median over the samples. Without samples there is no fold; a
/// reference without an invertible derivative is one itself.
Fold FindFold(const Transformation& transformation, std::span<const Point> samples,
              Point reference);

}  // namespace kv_tr
