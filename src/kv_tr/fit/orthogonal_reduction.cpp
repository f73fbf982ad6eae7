// Least squares by Householder reflections, block of rows by block of rows.
#include "kv_tr/fit/orthogonal_reduction.h"

#include <cmath>
#include <cstring>

// The reflections are written once and become part of a function for each instruction set.
#if defined(__GNUC__)
#define KV_TR_INLINE [[gnu::always_inline]] inline
#else
#define KV_TR_INLINE inline
#endif

namespace kv_tr {
namespace {

using Reduction = OrthogonalReduction;

/// Sums run in this many lanes, whatever the width of a group.
constexpr std::size_t kLanes = 8;

#if defined(__GNUC__)
template <std::size_t bytes>
using Group [[gnu::vector_size(bytes)]] = double;
using BaselineGroup = Group<16>;
#else
using BaselineGroup = double;
#endif

template <class Number>
constexpr std::size_t kWidth = sizeof(Number) /
                               sizeof(double);  // NOLINT(bugprone-sizeof-expression)

template <class Number>
KV_TR_INLINE void Load(Number& group, const double* from) {
    std::memcpy(&group, from, sizeof group);
}

template <class Number>
KV_TR_INLINE double Dot(const double* a, const double* b) {
    constexpr std::size_t kGroups = kLanes / kWidth<Number>;
    Number sums[kGroups] = {};
    for (std::size_t i = 0; i < Reduction::kRows; i += kLanes) {
        for (std::size_t group = 0; group < kGroups; ++group) {
            Number x;
            Number y;
            Load(x, a + i + group * kWidth<Number>);
            Load(y, b + i + group * kWidth<Number>);
            sums[group] += x * y;
        }
    }
    double sum[kLanes];
    std::memcpy(sum, sums, sizeof sum);
    return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7]));
}

/// column -= factor · reflector
template <class Number>
KV_TR_INLINE void Subtract(double* column, double factor, const double* reflector) {
    for (std::size_t i = 0; i < Reduction::kRows; i += kWidth<Number>) {
        Number x;
        Number y;
        Load(x, column + i);
        Load(y, reflector + i);
        x -= factor * y;
        std::memcpy(column + i, &x, sizeof x);
    }
}

using Triangle = std::array<std::array<double, Reduction::kMostColumns>, Reduction::kMostUnknowns>;

/// Reflects the rows of a block into the triangle above them, column after column. The reflector of
/// a column is the difference of its length in the triangle and what it becomes, above the block's
/// column itself.
template <class Number>
KV_TR_INLINE void Reflect(Reduction::Block& block, Triangle& triangle, std::size_t unknowns,
                          std::size_t columns) {
    for (std::size_t k = 0; k < unknowns; ++k) {
        const double* reflector = block.column[k].data();
        const double below = Dot<Number>(reflector, reflector);
        if (below == 0.0) continue;
        const double diagonal = triangle[k][k];
        const double length = std::sqrt(diagonal * diagonal + below);
        const double becomes = diagonal > 0.0 ? -length : length;
        const double top = diagonal - becomes;
        const double scale = 1.0 / (length * std::abs(top));
        triangle[k][k] = becomes;
        for (std::size_t j = k + 1; j < columns; ++j) {
            double* column = block.column[j].data();
            const double factor = scale * (top * triangle[k][j] + Dot<Number>(reflector, column));
            triangle[k][j] -= factor * top;
            Subtract<Number>(column, factor, reflector);
        }
    }
}

#if defined(__GNUC__) && defined(__x86_64__)
[[gnu::target("avx2")]] void ReflectAvx2(Reduction::Block& block, Triangle& triangle,
                                         std::size_t unknowns, std::size_t columns) {
    Reflect<Group<32>>(block, triangle, unknowns, columns);
}

[[gnu::target("avx512f")]] void ReflectAvx512(Reduction::Block& block, Triangle& triangle,
                                              std::size_t unknowns, std::size_t columns) {
    Reflect<Group<64>>(block, triangle, unknowns, columns);
}
#endif

}  // namespace

void OrthogonalReduction::Add(Block& block) {
#if defined(__GNUC__) && defined(__x86_64__)
    if (set_ == InstructionSet::kAvx512) {
        ReflectAvx512(block, triangle_, unknowns_, columns_);
    } else if (set_ == InstructionSet::kAvx2) {
        ReflectAvx2(block, triangle_, unknowns_, columns_);
    } else {
        Reflect<BaselineGroup>(block, triangle_, unknowns_, columns_);
    }
#else
    Reflect<BaselineGroup>(block, triangle_, unknowns_, columns_);
#endif
    for (std::size_t side = 0; side < RightSides(); ++side) {
        const double* rest = block.column[unknowns_ + side].data();
        remaining_[side] += Dot<BaselineGroup>(rest, rest);
    }
}

}  // namespace kv_tr
