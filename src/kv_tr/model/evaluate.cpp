// The terms of transformations, and transformations applied to points.
#include "kv_tr/model/evaluate.h"

#include <algorithm>
#include <stdexcept>

#include "kv_tr/model/groups.h"

namespace kv_tr {
namespace {

using namespace groups;

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
};

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

/// Replaces the points of a place by their images.
template <class Group, class Layout>
struct MapGroup {
    const Layout& layout;
    const Spread<Group>& many;
    const Spread<double>& one;

    template <Type kind, class Number>
    KV_TR_INLINE void At(std::size_t at) const {
        Number first;
        Number second;
        layout.Load(at, first, second);
        if constexpr (std::is_same_v<Number, Group>) {
            MapPoints<kind>(many, first, second);
        } else {
            MapPoints<kind>(one, first, second);
        }
        layout.Store(at, first, second);
    }
};

/// Maps points group by group.
template <class Group, class Layout>
struct MapManyPoints {
    Layout layout;
    std::size_t count;
    Spread<Group> many;
    Spread<double> one;

    template <Type kind>
    KV_TR_INLINE void At() const {
        const Layout fixed = layout;  // as far as the compiler knows, results may lie in members
        EachGroup<kind, Group>(fixed, count, MapGroup<Group, Layout>{fixed, many, one});
    }
};

template <class Layout>
struct MapManyPointsWith {
    const Transformation& c;
    const Layout& layout;
    std::size_t count;

    template <class Group>
    MapManyPoints<Group, Layout> With() const {
        return {layout, count, Spread<Group>(c), Spread<double>(c)};
    }
};

template <class Layout>
void MapAll(const Transformation& c, const Layout& layout, std::size_t count, InstructionSet set) {
    ForGroups(set, c.type, MapManyPointsWith<Layout>{c, layout, count});
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
    groups::ExpectLengths(second.size() == count && firstOut.size() == count &&
                          secondOut.size() == count);
    const Apart apart{first.data(), second.data(), firstOut.data(), secondOut.data()};
    MapAll(transformation, apart, count, set);
}

void ApplyToPairsWith(InstructionSet set, const Transformation& transformation,
                      std::span<const double> pairs, std::span<double> pairsOut) {
    groups::ExpectLengths(pairs.size() % 2 == 0 && pairsOut.size() == pairs.size());
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
