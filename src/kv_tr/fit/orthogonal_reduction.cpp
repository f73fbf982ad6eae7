// Least squares by Householder reflections, block of rows by block of rows.
#include "kv_tr/fit/orthogonal_reduction.h"

#include <cmath>
#include <cstring>

#include "kv_tr/model/lanes.h"

namespace kv_tr {
namespace {

using groups::Load;
using Reduction = OrthogonalReduction;

/// Sums run in this many lanes, whatever the width of a group.
constexpr std::size_t kLanes = 8;

template <class Number>
KV_TR_INLINE double Dot(const double* a, const double* b) {
    constexpr std::size_t kGroups = kLanes / groups::kLanes<Number>;
    Number sums[kGroups] = {};
    for (std::size_t i = 0; i < Reduction::kRows; i += kLanes) {
        for (std::size_t group = 0; group < kGroups; ++group) {
            Number x;
            Number y;
            Load(x, a + i + group * groups::kLanes<Number>);
            Load(y, b + i + group * groups::kLanes<Number>);
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
    for (std::size_t i = 0; i < Reduction::kRows; i += groups::kLanes<Number>) {
        Number x;
        Number y;
        Load(x, column + i);
        Load(y, reflector + i);
        x -= factor * y;
        groups::Store(x, column + i);
    }
}

using Triangle = std::array<std::array<double, Reduction::kMostColumns>, Reduction::kMostUnknowns>;

/// Reflects the rows of a block into the triangle above them, column after column. The reflector of
/// a column is the difference of its length in the triangle and what it becomes, above the block's
/// column itself.
struct Reflect {
    Reduction::Block& block;
    Triangle& triangle;
    std::size_t unknowns;
    std::size_t columns;

    template <class Number>
    KV_TR_INLINE void With() const {
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
                const double factor =
                    scale * (top * triangle[k][j] + Dot<Number>(reflector, column));
                triangle[k][j] -= factor * top;
                Subtract<Number>(column, factor, reflector);
            }
        }
    }
};

}  // namespace

void OrthogonalReduction::Add(Block& block) {
    groups::RunWith(set_, Reflect{block, triangle_, unknowns_, columns_});
    for (std::size_t side = 0; side < RightSides(); ++side) {
        const double* rest = block.column[unknowns_ + side].data();
        remaining_[side] += Dot<groups::BaselineGroup>(rest, rest);
    }
}

}  // namespace kv_tr
