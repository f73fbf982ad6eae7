// Many points at once: the frame that evaluations of arrays share. Not installed.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "kv_tr/model/lanes.h"

namespace kv_tr::groups {

/// Gives all points of a group the same value.
template <class Number>
void Fill(Number& number, double value) {
    double values[kLanes<Number>];
    std::ranges::fill(values, value);
    std::memcpy(&number, values, sizeof number);
}

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

/// Calls visit.template At<kind, Number>(at) for group after group of so many points, for the first
/// and the last ones with a double as the number.
template <Type kind, class Group, class Layout, class Visit>
KV_TR_INLINE void EachGroup(const Layout& layout, std::size_t count, const Visit& visit) {
    constexpr std::size_t kPoints = kLanes<Group>;
    // How many doubles there are up to an address where groups do not straddle cache lines.
    const auto beyond = reinterpret_cast<std::uintptr_t>(layout.Result()) % sizeof(Group);
    const std::size_t before = (sizeof(Group) - beyond) % sizeof(Group) / sizeof(double);
    std::size_t at = 0;
    const std::size_t aligned = std::min(count, before / Layout::kStride);
    for (; at < aligned; ++at) visit.template At<kind, double>(at);
    for (; at + kPoints <= count; at += kPoints) visit.template At<kind, Group>(at);
    for (; at < count; ++at) visit.template At<kind, double>(at);
}

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

/// ForKind with the groups of an instruction set, which must be available:
/// maker.template With<Group>() yields the work.
template <class Maker>
void ForGroups(InstructionSet set, Type type, const Maker& maker) {
#if defined(__GNUC__) && defined(__x86_64__)
    if (set == InstructionSet::kAvx512) {
        return ForKindAvx512(type, maker.template With<Lanes<64>>());
    }
    if (set == InstructionSet::kAvx2) {
        return ForKindAvx2(type, maker.template With<Lanes<32>>());
    }
#endif
    ForKind(type, maker.template With<BaselineGroup>());
}

/// Throws std::invalid_argument unless arrays have the lengths that belong together.
inline void ExpectLengths(bool lengthsFit) {
    if (!lengthsFit) throw std::invalid_argument("Arrays of different lengths");
}

}  // namespace kv_tr::groups
