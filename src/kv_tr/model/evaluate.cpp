// The terms of transformations, and transformations applied to points.
#include "kv_tr/model/evaluate.h"

#include <algorithm>
#include <cfloat>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>

static_assert(FLT_EVAL_METHOD == 0, "double arithmetic must round every operation to a double");

// The formulas are written once, for a number that is a double or a group of doubles, one a point.
// They become part of the function that uses them, and with that of its instruction set.
#if defined(__GNUC__)
#define KV_TR_INLINE [[gnu::always_inline]] inline
#else
#define KV_TR_INLINE inline
#endif

namespace kv_tr {
namespace {

/// How many doubles a number is.
template <class Number>
constexpr std::size_t kLanes = sizeof(Number) /
                               sizeof(double);  // NOLINT(bugprone-sizeof-expression)

/// The coefficients of a transformation as numbers, each with the same value for all points of a
/// group.
template <class Number>
struct Spread {
    Number a[22];
    Number b[22];

    explicit Spread(const Transformation& c) {
        for (std::size_t k = 0; k < c.a.size(); ++k) {
            Fill(a[k], c.a[k]);
            Fill(b[k], c.b[k]);
        }
    }

private:
    static void Fill(Number& number, double value) {
        double values[kLanes<Number>];
        std::ranges::fill(values, value);
        std::memcpy(&number, values, sizeof number);
    }
};

/// A term is an earlier term times u or v.
struct Step {
    std::size_t earlier = 0;
    bool timesU = false;
};

template <Type kind>
constexpr auto TermSteps() {
    std::array<Step, static_cast<std::size_t>(TermCount(kind))> steps{};
    if (kind == Type::kBilinear) {
        steps[1] = {0, true};
        steps[2] = {0, false};
        steps[3] = {1, false};
        return steps;
    }
    std::size_t before = 0;  // where the degree before begins
    std::size_t next = 1;
    for (std::size_t degree = 1; next < steps.size(); ++degree) {
        steps[next++] = {before, true};
        for (std::size_t i = 0; i < degree; ++i) steps[next++] = {before + i, false};
        before += degree;
    }
    return steps;
}

/// Finds the terms of a type in their order and calls use(k) after each but the first.
template <Type kind, class Number, class Use, std::size_t... k>
KV_TR_INLINE void EachTerm(const Number& u, const Number& v, Number* term, const Use& use,
                           std::index_sequence<k...>) {
    constexpr auto kSteps = TermSteps<kind>();
    term[0] = 1.0 - Number{};  // what has several lanes takes no plain 1
    ((term[k + 1] = term[kSteps[k + 1].earlier] * (kSteps[k + 1].timesU ? u : v), use(k + 1)), ...);
}

template <Type kind>
using TermsAfterFirst = std::make_index_sequence<static_cast<std::size_t>(TermCount(kind)) - 1>;

template <class Number>
struct AddTerm {
    const Spread<Number>& c;
    const Number* term;
    Number& first;
    Number& second;

    KV_TR_INLINE void operator()(std::size_t k) const {
        first += c.a[k + 1] * term[k];
        second += c.b[k + 1] * term[k];
    }
};

/// Replaces points by their images.
template <Type kind, class Number>
KV_TR_INLINE void MapPoints(const Spread<Number>& c, Number& first, Number& second) {
    if constexpr (kind == Type::kHelmert) {
        const Number image = c.a[0] + c.a[1] * first + c.a[2] * second;
        second = c.b[0] + c.b[1] * first + c.b[2] * second;
        first = image;
    } else {
        const Number u = first - c.a[0];
        const Number v = second - c.b[0];
        Number term[TermCount(kind)];
        first = c.a[1];
        second = c.b[1];
        EachTerm<kind>(u, v, term, AddTerm<Number>{c, term, first, second},
                       TermsAfterFirst<kind>());
    }
}

/// Calls work.At<kind>() for the type whose formula a type uses, Type::kHelmert for all linear
/// ones.
template <class Work>
KV_TR_INLINE void ForKind(Type type, const Work& work) {
    if (!IsPolynomial(type)) return work.template At<Type::kHelmert>();
    switch (type) {
        case Type::kPolynomial1: return work.template At<Type::kPolynomial1>();
        case Type::kPolynomial2: return work.template At<Type::kPolynomial2>();
        case Type::kPolynomial3: return work.template At<Type::kPolynomial3>();
        case Type::kPolynomial4: return work.template At<Type::kPolynomial4>();
        case Type::kBilinear: return work.template At<Type::kBilinear>();
        default: return work.template At<Type::kPolynomial5>();
    }
}

struct FindTerms {
    double u;
    double v;
    Terms& terms;

    template <Type kind>
    KV_TR_INLINE void At() const {
        terms.count = static_cast<std::size_t>(TermCount(kind));
        const auto nothing = [](std::size_t) {};
        EachTerm<kind>(u, v, terms.value.data(), nothing, TermsAfterFirst<kind>());
    }
};

struct MapOnePoint {
    Spread<double> coefficients;
    Point& point;

    template <Type kind>
    KV_TR_INLINE void At() const {
        MapPoints<kind>(coefficients, point.first, point.second);
    }
};

/// Asks for the memory that is needed some groups later. The many operations of a high order leave
/// room for too few loads ahead to keep the memory busy.
template <bool forWriting>
KV_TR_INLINE void Prefetch([[maybe_unused]] const double* place) {
#if defined(__GNUC__)
    constexpr std::uintptr_t kAhead = 256;  // bytes; it may lie behind the array
    const auto ahead = reinterpret_cast<std::uintptr_t>(place) + kAhead;
    __builtin_prefetch(reinterpret_cast<const void*>(ahead),  // NOLINT(performance-no-int-to-ptr)
                       forWriting ? 1 : 0);
#endif
}

/// Coordinates in arrays of their own.
struct Apart {
    const double* first;
    const double* second;
    double* firstOut;
    double* secondOut;

    static constexpr std::size_t kStride = 1;  // from point to point
    double* Result() const { return firstOut; }
    template <class Number>
    KV_TR_INLINE void Load(std::size_t at, Number& firsts, Number& seconds) const {
        Prefetch<false>(first + at);
        Prefetch<false>(second + at);
        std::memcpy(&firsts, first + at, sizeof firsts);
        std::memcpy(&seconds, second + at, sizeof seconds);
    }
    template <class Number>
    KV_TR_INLINE void Store(std::size_t at, const Number& firsts, const Number& seconds) const {
        Prefetch<true>(firstOut + at);
        Prefetch<true>(secondOut + at);
        std::memcpy(firstOut + at, &firsts, sizeof firsts);
        std::memcpy(secondOut + at, &seconds, sizeof seconds);
    }
};

/// Coordinates that alternate in one array.
struct Alternating {
    const double* pairs;
    double* pairsOut;

    static constexpr std::size_t kStride = 2;
    double* Result() const { return pairsOut; }
    template <class Number>
    KV_TR_INLINE void Load(std::size_t at, Number& firsts, Number& seconds) const {
        constexpr std::size_t kPoints = kLanes<Number>;
        double split[2][kPoints];
        for (std::size_t i = 0; i < kPoints; ++i) {
            split[0][i] = pairs[2 * (at + i)];
            split[1][i] = pairs[2 * (at + i) + 1];
        }
        std::memcpy(&firsts, split[0], sizeof firsts);
        std::memcpy(&seconds, split[1], sizeof seconds);
    }
    template <class Number>
    KV_TR_INLINE void Store(std::size_t at, const Number& firsts, const Number& seconds) const {
        constexpr std::size_t kPoints = kLanes<Number>;
        double split[2][kPoints];
        std::memcpy(split[0], &firsts, sizeof firsts);
        std::memcpy(split[1], &seconds, sizeof seconds);
        for (std::size_t i = 0; i < kPoints; ++i) {
            pairsOut[2 * (at + i)] = split[0][i];
            pairsOut[2 * (at + i) + 1] = split[1][i];
        }
    }
};

/// Maps points group by group, the first and the last ones one by one.
template <class Group, class Layout>
struct MapManyPoints {
    Layout layout;
    std::size_t count;
    Spread<Group> many;
    Spread<double> one;

    MapManyPoints(const Transformation& c, const Layout& where, std::size_t points)
        : layout(where), count(points), many(c), one(c) {}

    template <Type kind>
    KV_TR_INLINE void At() const {
        constexpr std::size_t kPoints = kLanes<Group>;
        const Layout fixed = layout;  // as far as the compiler knows, results may lie in members
        const std::size_t end = count;
        std::size_t at = 0;
        const std::size_t aligned = std::min(end, DoublesBefore(fixed.Result()) / Layout::kStride);
        for (; at < aligned; ++at) MapGroup<kind>(one, fixed, at);
        for (; at + kPoints <= end; at += kPoints) MapGroup<kind>(many, fixed, at);
        for (; at < end; ++at) MapGroup<kind>(one, fixed, at);
    }

private:
    /// How many doubles there are up to an address where groups do not straddle cache lines.
    static std::size_t DoublesBefore(const double* result) {
        const auto beyond = reinterpret_cast<std::uintptr_t>(result) % sizeof(Group);
        return (sizeof(Group) - beyond) % sizeof(Group) / sizeof(double);
    }

    template <Type kind, class Number>
    KV_TR_INLINE static void MapGroup(const Spread<Number>& c, const Layout& fixed,
                                      std::size_t at) {
        Number first;
        Number second;
        fixed.Load(at, first, second);
        MapPoints<kind>(c, first, second);
        fixed.Store(at, first, second);
    }
};

#if defined(__GNUC__)
template <std::size_t bytes>
using Lanes [[gnu::vector_size(bytes)]] = double;
using BaselineGroup = Lanes<16>;
#else
using BaselineGroup = double;
#endif

#if defined(__GNUC__) && defined(__x86_64__)
template <class Work>
[[gnu::target("avx2")]] void ForKindAvx2(Type type, const Work& work) {
    ForKind(type, work);
}

template <class Work>
[[gnu::target("avx512f")]] void ForKindAvx512(Type type, const Work& work) {
    ForKind(type, work);
}
#endif

template <class Layout>
void MapAll(const Transformation& c, const Layout& layout, std::size_t count, InstructionSet set) {
#if defined(__GNUC__) && defined(__x86_64__)
    if (set == InstructionSet::kAvx512) {
        return ForKindAvx512(c.type, MapManyPoints<Lanes<64>, Layout>(c, layout, count));
    }
    if (set == InstructionSet::kAvx2) {
        return ForKindAvx2(c.type, MapManyPoints<Lanes<32>, Layout>(c, layout, count));
    }
#endif
    ForKind(c.type, MapManyPoints<BaselineGroup, Layout>(c, layout, count));
}

void Expect(bool lengthsFit) {
    if (!lengthsFit) throw std::invalid_argument("Arrays of different lengths");
}

}  // namespace

Terms ReducedTerms(Type type, double u, double v) {
    Terms terms;
    ForKind(std::max(type, Type::kPolynomial1), FindTerms{u, v, terms});
    return terms;
}

bool IsAvailable(InstructionSet set) {
#if defined(__GNUC__) && defined(__x86_64__)
    if (set == InstructionSet::kAvx512) return __builtin_cpu_supports("avx512f") != 0;
    if (set == InstructionSet::kAvx2) return __builtin_cpu_supports("avx2") != 0;
#endif
    return set == InstructionSet::kBaseline;
}

InstructionSet WidestInstructionSet() {
    if (IsAvailable(InstructionSet::kAvx512)) return InstructionSet::kAvx512;
    if (IsAvailable(InstructionSet::kAvx2)) return InstructionSet::kAvx2;
    return InstructionSet::kBaseline;
}

void ApplyWith(InstructionSet set, const Transformation& transformation,
               std::span<const double> first, std::span<const double> second,
               std::span<double> firstOut, std::span<double> secondOut) {
    const std::size_t count = first.size();
    Expect(second.size() == count && firstOut.size() == count && secondOut.size() == count);
    const Apart apart{first.data(), second.data(), firstOut.data(), secondOut.data()};
    MapAll(transformation, apart, count, set);
}

void ApplyToPairsWith(InstructionSet set, const Transformation& transformation,
                      std::span<const double> pairs, std::span<double> pairsOut) {
    Expect(pairs.size() % 2 == 0 && pairsOut.size() == pairs.size());
    MapAll(transformation, Alternating{pairs.data(), pairsOut.data()}, pairs.size() / 2, set);
}

Point Transformation::Apply(Point source) const {
    ForKind(type, MapOnePoint{Spread<double>(*this), source});
    return source;
}

void Transformation::Apply(std::span<const double> first, std::span<const double> second,
                           std::span<double> firstOut, std::span<double> secondOut) const {
    ApplyWith(WidestInstructionSet(), *this, first, second, firstOut, secondOut);
}

void Transformation::ApplyToPairs(std::span<const double> pairs, std::span<double> pairsOut) const {
    ApplyToPairsWith(WidestInstructionSet(), *this, pairs, pairsOut);
}

}  // namespace kv_tr
