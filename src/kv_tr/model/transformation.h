// A plane transformation: its type and coefficients, and what it makes of points and directions.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "kv_tr/model/point.h"
#include "kv_tr/model/type.h"

namespace kv_tr {

/// A transformation of the plane, coordinates in metres. It starts as the identity.
///
/// A point (first, second) goes to
///
///     types below 1   first' = a[0] + a[1] first + a[2] second
///     types from 1    first' = a[1] t1 + a[2] t2 + ...     with the terms of evaluate.h in
///                     u = first - a[0] and v = second - b[0]
///
/// and second' likewise with b; docs/mathematics.md derives both. Terms are added in the order of
/// the coefficients, so that every machine gives the same bits. A transformation is a value: it has
/// no state besides its coefficients, and any number of threads may apply it at once.
struct Transformation {
    static constexpr std::size_t kCoefficients = 22;
    using Series = std::array<double, kCoefficients>;

    Type type = Type::kHelmert;
    Series a{0, 1, 0};  ///< of the first coordinate
    Series b{0, 0, 1};  ///< of the second coordinate

    bool operator==(const Transformation&) const = default;

    /// The image of a point. Cannot fail; coordinates that are not finite give such an image.
    Point Apply(Point source) const;

    /// The images of arrays of first and of second coordinates, all four of one length; otherwise
    /// std::invalid_argument. A result array may be one of the source arrays but must not overlap
    /// one in any other way. Bit for bit the images of Apply.
    void Apply(std::span<const double> first, std::span<const double> second,
               std::span<double> firstOut, std::span<double> secondOut) const;

    /// The same for points whose coordinates alternate: first, second, first, second, ... Both
    /// arrays have one, even, length; they may be the same array.
    void ApplyToPairs(std::span<const double> pairs, std::span<double> pairsOut) const;

    /// The image of a direction at a point, both in radians from the first axis towards the second,
    /// in [0, 2π): that of the derivative of the transformation. Nothing where the derivative takes
    /// the direction to a point.
    std::optional<double> Direction(double angle, Point at) const;

    /// The transformation back, of the same type, or of the other one of the two with fathoms;
    /// nothing for a polynomial, and for a linear one that maps the plane to a line or a point, or
    /// whose inverse has no finite coefficients.
    std::optional<Transformation> Inverse() const;
};

/// a[1] b[2] - a[2] b[1]: by how much a linear transformation enlarges areas.
double Determinant(const Transformation& transformation);

/// The transformation back of a linear one, of the same type, by the formula. Where there is none
/// the coefficients are infinite or not numbers.
Transformation LinearInverse(const Transformation& transformation);

/// The derivatives of both coordinates of the image by both of the source.
struct Derivative {
    double firstByFirst = 0;
    double firstBySecond = 0;
    double secondByFirst = 0;
    double secondBySecond = 0;

    double Determinant() const {
        return firstByFirst * secondBySecond - firstBySecond * secondByFirst;
    }
};
Derivative DerivativeAt(const Transformation& transformation, Point at);

}  // namespace kv_tr
