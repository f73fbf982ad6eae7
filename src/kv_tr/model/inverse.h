// The exact inverse of a transformation, point by point.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

#include "kv_tr/model/domain.h"
#include "kv_tr/model/evaluate.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// Why a point of the destination has no source.
enum class NoSource : std::uint8_t {
    kNone,           ///< it has one
    kNotReached,     ///< the transformation takes no point there, or it is not finite
    kBeyondFold,     ///< only a point beyond a fold goes there, or one on the fold
    kOutsideDomain,  ///< only a point outside the domain goes there
    kNotConverged,   ///< the search did not come to an end
};

/// A point of the source, or why there is none.
struct SourcePoint {
    Point point{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
    NoSource trouble = NoSource::kNone;

    bool Found() const { return trouble == NoSource::kNone; }
};

/// The inverse of a transformation of any type: for each point of the destination the point of the
/// source that the transformation takes there. It is the inverse of the polynomial itself and not
/// a second fit with the systems exchanged.
///
/// Linear types have a closed inverse. The others are solved by Newton's method from the inverse of
/// the linear terms, until a step is below max(1e-10 m, 4 ε of the coordinates). A source is
/// accepted only if
///
///   - its image is the given point, to max(1e-9 m, 8 ε of the point, what rounding leaves of the
///     evaluation there),
///   - the determinant of the derivative has the sign of the one at the reference and at least
///     1e-6 of its size, so that no fold lies between, and
///   - the source lies in the domain, where there is one.
///
/// The reference is the centre of the domain, without one the origin (a[0], b[0]) of the
/// polynomial, which a fit puts into the centroid of its points. Without a domain, as for
/// parameters of a file, any source will do that the first two tests accept, however far away.
///
/// A value like the transformation: any number of threads may use it at once.
class ExactInverse {
public:
    /// The inverse of a transformation; nothing where its derivative at the reference takes the
    /// plane to a line or a point or is not finite, and for coefficients that are not. A linear
    /// transformation is one to one everywhere and pays no heed to the domain.
    static std::optional<ExactInverse> Of(const Transformation& transformation,
                                          const std::optional<Domain>& domain = std::nullopt);

    const Transformation& Forward() const { return forward_; }
    const std::optional<Domain>& SourceDomain() const { return domain_; }

    SourcePoint Apply(Point destination) const;

    /// The sources of arrays of first and of second coordinates, all four of one length, like
    /// Transformation::Apply and bit for bit those of Apply. What has no source becomes NaN.
    /// Returns how many that are; troubles, unless empty, has the length of the others and says of
    /// each point why. Otherwise std::invalid_argument.
    std::size_t Apply(std::span<const double> first, std::span<const double> second,
                      std::span<double> firstOut, std::span<double> secondOut,
                      std::span<NoSource> troubles = {}) const;

    /// The same for points whose coordinates alternate; troubles has one entry a point.
    std::size_t ApplyToPairs(std::span<const double> pairs, std::span<double> pairsOut,
                             std::span<NoSource> troubles = {}) const;

    /// The two with an instruction set, which must be available.
    std::size_t ApplyWith(InstructionSet set, std::span<const double> first,
                          std::span<const double> second, std::span<double> firstOut,
                          std::span<double> secondOut, std::span<NoSource> troubles = {}) const;
    std::size_t ApplyToPairsWith(InstructionSet set, std::span<const double> pairs,
                                 std::span<double> pairsOut,
                                 std::span<NoSource> troubles = {}) const;

private:
    static constexpr std::size_t kConstants = 114;

    ExactInverse(const Transformation& forward, const std::optional<Domain>& domain)
        : forward_(forward), domain_(domain) {}

    Transformation forward_;
    std::optional<Domain> domain_;
    std::optional<Transformation> closed_;        // the inverse of a linear transformation
    std::array<double, kConstants> constants_{};  // of the others, as newton.h lays them out
};

}  // namespace kv_tr
