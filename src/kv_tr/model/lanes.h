// Groups of doubles, and functions for each instruction set. Not installed.
#pragma once

#include <cfloat>
#include <cstddef>
#include <cstring>

#include "kv_tr/model/evaluate.h"

static_assert(FLT_EVAL_METHOD == 0, "double arithmetic must round every operation to a double");

// Formulas are written once, for a number that is a double or a group of doubles. They become part
// of the function that uses them, and with that of its instruction set. Under a sanitizer they stay
// functions, slower ones with the same results: so much code in one takes minutes to compile there.
#if defined(__GNUC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define KV_TR_INLINE [[gnu::always_inline]] inline
#else
#define KV_TR_INLINE inline
#endif

namespace kv_tr::groups {

/// How many doubles a number is.
template <class Number>
constexpr std::size_t kLanes = sizeof(Number) /
                               sizeof(double);  // NOLINT(bugprone-sizeof-expression)

#if defined(__GNUC__)
template <std::size_t bytes>
using Lanes [[gnu::vector_size(bytes)]] = double;
using BaselineGroup = Lanes<16>;
#else
using BaselineGroup = double;
#endif

template <class Number>
KV_TR_INLINE void Load(Number& group, const double* from) {
    std::memcpy(&group, from, sizeof group);
}

template <class Number>
KV_TR_INLINE void Store(const Number& group, double* to) {
    std::memcpy(to, &group, sizeof group);
}

#if defined(__GNUC__) && defined(__x86_64__)
template <class Work>
[[gnu::target("avx2")]] void RunAvx2(const Work& work) {
    work.template With<Lanes<32>>();
}

template <class Work>
[[gnu::target("avx512f")]] void RunAvx512(const Work& work) {
    work.template With<Lanes<64>>();
}
#endif

/// Calls work.template With<Group>(), which is inlined, with the groups of an instruction set,
/// which must be available.
template <class Work>
void RunWith(InstructionSet set, const Work& work) {
#if defined(__GNUC__) && defined(__x86_64__)
    if (set == InstructionSet::kAvx512) return RunAvx512(work);
    if (set == InstructionSet::kAvx2) return RunAvx2(work);
#endif
    work.template With<BaselineGroup>();
}

}  // namespace kv_tr::groups
