// Coordinates in which a fit is well conditioned.
#pragma once

#include <span>

#include "kv_tr/model/point.h"
#include "kv_tr/model/type.h"

namespace kv_tr {

/// The model that a type is fitted with: the type itself, order 5 for the types from 7 up, the
/// affine one for those below -3, which have no model.
Type ModelOf(Type type);

/// Whether the coordinates of a model share unknowns: Helmert, Helmert with 3 and affine with 5.
constexpr bool SharesUnknowns(Type model) {
    return model == Type::kHelmert || model == Type::kHelmert3 || model == Type::kAffine5;
}

/// How many unknowns both coordinates of a model have together: 4, 3, 5, 6, 8, 12, 20, 30 or 42.
int UnknownsOf(Type model);

/// Source coordinates from a centroid along turned axes, each divided by a half width, so that all
/// points lie within [-1, 1].
struct Frame {
    Point origin;
    double cosine = 1;  ///< of the turn of the axes
    double sine = 0;
    Point perMetre{1, 1};  ///< what coordinates along the axes are multiplied by

    double halfLength = 0;   ///< of the points along their principal axis, metres
    double halfBreadth = 0;  ///< across it
    double resolution = 0;   ///< below this, metres, differences of coordinates are only rounding

    Point Into(Point source) const {
        const double u = source.first - origin.first;
        const double v = source.second - origin.second;
        return {(cosine * u + sine * v) * perMetre.first,
                (cosine * v - sine * u) * perMetre.second};
    }
    /// Whether all points lie on one straight line, as far as their coordinates can tell.
    bool IsLine() const { return halfBreadth <= resolution; }
    /// Whether all points are one.
    bool IsPoint() const { return halfLength <= resolution; }
};

/// The frame of source points for a model, with weights, one a point, or without.
///
/// Affine and orders 1 to 5 are turned to the principal axes of the points, which does not change
/// the space of their terms; the bilinear type is not turned, and the models that share unknowns
/// have one half width for both axes. The resolution is max(8 · 2⁻⁵² of the greatest coordinate,
/// min(lastDigit, 1e-4 of the length)).
Frame FrameOf(std::span<const Point> sources, std::span<const double> weights, Type model,
              double lastDigit = 0.0005);

/// The weighted mean of points; weights may be empty. Deviations are averaged once more, so that
/// great coordinates lose no digits.
Point CentroidOf(std::span<const Point> points, std::span<const double> weights);

}  // namespace kv_tr
