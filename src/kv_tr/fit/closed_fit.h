// The least-squares solutions of the models that a formula solves.
#pragma once

#include <optional>
#include <span>

#include "kv_tr/model/point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// A solution about the centroids of source and destination.
struct ClosedFit {
    Point source;
    Point destination;
    double a1 = 1;  ///< the matrix: first' = a1 u + a2 v, second' = b1 u + b2 v
    double a2 = 0;
    double b1 = 0;
    double b2 = 1;

    /// The image less the destination's centroid.
    Point ReducedImageOf(Point point) const;
};

/// Helmert, Helmert with 3 or affine with 5 unknowns, with weights, one a point, or without. It is
/// the global minimum of the weighted sum of squares, needs no start and no iteration. Nothing when
/// the points do not determine it.
///
/// Helmert is a regression of complex numbers, Helmert with 3 unknowns its direction (Deakin,
/// Coordinate Transformations for Cadastral Surveying, 2007). docs/mathematics.md derives the
/// affine one.
std::optional<ClosedFit> FitClosed(Type model, std::span<const Point> sources,
                                   std::span<const Point> destinations,
                                   std::span<const double> weights = {});

}  // namespace kv_tr
