// Newton's method for the inverse of a polynomial, for one point or for a group. Not installed.
#pragma once

#include <limits>

#include "kv_tr/model/groups.h"

namespace kv_tr::newton {

inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
inline constexpr double kLeastStep = 1e-10;        // metres; a smaller one ends the search
inline constexpr double kLeastResidual = 1e-9;     // metres; a smaller one is none
inline constexpr double kLeastDeterminant = 1e-6;  // of that at the reference

/// Terms of the highest order without the first, and those that its derivative has.
inline constexpr std::size_t kSeries = 20;
inline constexpr std::size_t kSlopes = 15;

/// The index of the first term of degree 4.
inline constexpr std::size_t kHigh = 10;

/// What the search needs of a transformation, each the same for all points of a group: numbers and
/// nothing else, in arrays whose index 0 belongs to the first coordinate.
template <class Number>
struct Constants {
    Number origin[2];            // a[0], b[0]
    Number shift[2];             // a[1], b[1]
    Number series[2][kSeries];   // from a[2], b[2] on
    Number byFirst[2][kSlopes];  // the coefficients of the derivatives, with the terms from 1 on
    Number bySecond[2][kSlopes];
    Number start[4];      // the inverse of the linear terms, row by row
    Number perReference;  // what a determinant is multiplied by to be relative to the reference
    Number leastStep;     // squared: 1e-10 m or what rounding leaves of the origin
    Number least[2];      // the domain
    Number greatest[2];
};

/// The same constants for each point of a group.
template <class Number>
Constants<Number> Spread(const Constants<double>& one) {
    Constants<Number> many;
    for (std::size_t i = 0; i < sizeof one / sizeof(double); ++i) {
        double value;
        Number group;
        std::memcpy(&value, reinterpret_cast<const char*>(&one) + i * sizeof value, sizeof value);
        groups::Fill(group, value);
        std::memcpy(reinterpret_cast<char*>(&many) + i * sizeof group, &group, sizeof group);
    }
    return many;
}

/// How many terms the derivative of a type has. Those of the bilinear type are 1, u, v.
constexpr std::size_t SlopeCount(Type kind) {
    if (kind == Type::kBilinear) return 3;
    const auto order = static_cast<std::size_t>(PolynomialOrder(kind));
    return order * (order + 1) / 2;
}

/// How far a place is from the solution, and how the image moves there.
template <class Number>
struct Local {
    Number residual[2];  // the target less the image
    Number byFirst[2];
    Number bySecond[2];
};

template <Type kind, bool withSlopes, class Number>
struct AddToLocal {
    const Constants<Number>& c;
    const Number* term;
    Local<Number>& local;
    Number* high;  // the sums of the terms from degree 4 on, which need not wait for the others

    KV_TR_INLINE void operator()(std::size_t k) const {
        if (k < kHigh) {
            local.residual[0] -= c.series[0][k - 1] * term[k];
            local.residual[1] -= c.series[1][k - 1] * term[k];
        } else {
            high[0] += c.series[0][k - 1] * term[k];
            high[1] += c.series[1][k - 1] * term[k];
        }
        if (!withSlopes || k >= SlopeCount(kind)) return;
        local.byFirst[0] += c.byFirst[0][k] * term[k];
        local.byFirst[1] += c.byFirst[1][k] * term[k];
        local.bySecond[0] += c.bySecond[0][k] * term[k];
        local.bySecond[1] += c.bySecond[1][k] * term[k];
    }
};

/// Evaluates a place in reduced coordinates. The residual starts with the target, so that the terms
/// are taken from a number that soon is small.
template <Type kind, bool withSlopes, class Number>
KV_TR_INLINE void Look(const Constants<Number>& c, const Number* target, const Number& u,
                       const Number& v, Local<Number>& local) {
    for (std::size_t i = 0; i < 2; ++i) {
        local.residual[i] = target[i];
        local.byFirst[i] = c.byFirst[i][0];
        local.bySecond[i] = c.bySecond[i][0];
    }
    Number term[TermCount(kind)];
    Number high[2] = {};
    groups::EachTerm<kind>(u, v, term, AddToLocal<kind, withSlopes, Number>{c, term, local, high},
                           groups::TermsAfterFirst<kind>());
    if constexpr (TermCount(kind) > static_cast<int>(kHigh)) {
        local.residual[0] -= high[0];
        local.residual[1] -= high[1];
    }
}

template <class Number>
struct BitsOf {
    using Type [[gnu::vector_size(sizeof(Number))]] = std::uint64_t;
};
template <>
struct BitsOf<double> {
    using Type = std::uint64_t;
};

/// Conditions for the points of a group, made from the signs of numbers: whether each is below
/// zero. What compilers make of a group of comparisons is slow. The sign of what is not a number
/// means nothing.
template <class Number>
class Condition {
public:
    KV_TR_INLINE explicit Condition(const Number& belowZero) {
        std::memcpy(&bits_, &belowZero, sizeof bits_);
    }
    KV_TR_INLINE void Or(const Number& belowZero) { bits_ |= Condition(belowZero).bits_; }
    KV_TR_INLINE void And(const Number& belowZero) { bits_ &= Condition(belowZero).bits_; }
    KV_TR_INLINE void Or(const Condition& other) { bits_ |= other.bits_; }

    /// 1 where the condition holds, else 0.
    KV_TR_INLINE void Get(Number& flags) const {
        constexpr std::uint64_t kOne = 0x3FF0000000000000;  // the bits of 1.0
        const Bits one = (0 - (bits_ >> 63)) & kOne;
        std::memcpy(&flags, &one, sizeof flags);
    }

private:
    using Bits = typename BitsOf<Number>::Type;
    Bits bits_;
};

/// The sum of the numbers of a group.
template <class Number>
KV_TR_INLINE double Sum(const Number& number) {
    double each[groups::kLanes<Number>];
    std::memcpy(each, &number, sizeof number);
    double sum = 0.0;
    for (const double one : each) sum += one;
    return sum;
}

/// Looks for the sources of a group of points by a few undamped steps, each of which must lower the
/// residual. Found is 1 for each point that has one, else 0 or not a number. That and the source
/// depend on the point alone and not on its neighbours: a point that is done stays where it is.
template <Type kind, class Number>
KV_TR_INLINE void Search(const Constants<Number>& c, Number& first, Number& second, Number& found) {
    constexpr int kMostSteps = 8;
    const Number one = 1.0 - Number{};
    const Number target[2] = {first - c.shift[0], second - c.shift[1]};
    const Number byImage = (64.0 * kEpsilon * kEpsilon) * (first * first + second * second);
    Number u = c.start[0] * target[0] + c.start[1] * target[1];
    Number v = c.start[2] * target[0] + c.start[3] * target[1];
    Local<Number> at;
    if constexpr (kind != Type::kPolynomial1) {
        Look<kind, false>(c, target, u, v, at);
        u += c.start[0] * at.residual[0] + c.start[1] * at.residual[1];
        v += c.start[2] * at.residual[0] + c.start[3] * at.residual[1];
    }
    Number before = std::numeric_limits<double>::max() * one;
    Number open = one;
    found = Number{};
    for (int step = 0; step < kMostSteps; ++step) {
        Look<kind, true>(c, target, u, v, at);
        const auto& [residual, byFirst, bySecond] = at;
        const Number determinant = byFirst[0] * bySecond[1] - bySecond[0] * byFirst[1];
        const Number perDeterminant = 1.0 / determinant;
        const Number alongU =
            (bySecond[1] * residual[0] - bySecond[0] * residual[1]) * perDeterminant;
        const Number alongV =
            (byFirst[0] * residual[1] - byFirst[1] * residual[0]) * perDeterminant;
        const Number left = residual[0] * residual[0] + residual[1] * residual[1];
        const Number length = alongU * alongU + alongV * alongV;
        const Number leastStep = c.leastStep + (16.0 * kEpsilon * kEpsilon) * (u * u + v * v);
        u += open * alongU;
        v += open * alongV;
        const Number source[2] = {c.origin[0] + u, c.origin[1] + v};
        Condition<Number> goesOn(leastStep - length);
        Condition<Number> misses(byImage - left);
        misses.And(kLeastResidual * kLeastResidual - left);
        Condition<Number> fails(determinant * c.perReference - kLeastDeterminant);
        fails.Or(source[0] - c.least[0]);
        fails.Or(c.greatest[0] - source[0]);
        fails.Or(source[1] - c.least[1]);
        fails.Or(c.greatest[1] - source[1]);
        fails.Or(1.0 - leastStep);
        fails.Or(misses);
        fails.Or(goesOn);
        goesOn.And(left - before);
        Number flags;
        fails.Get(flags);
        found += open * (1.0 - flags);
        goesOn.Get(flags);
        open *= flags;
        before = left;
        if (step > 0 && Sum(open) == 0.0) break;
    }
    first = c.origin[0] + u;
    second = c.origin[1] + v;
    found += (first - first) + (second - second);
}

}  // namespace kv_tr::newton
