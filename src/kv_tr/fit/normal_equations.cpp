// Normal equations summed observation by observation.
#include "kv_tr/fit/normal_equations.h"

#include "kv_tr/model/lanes.h"

namespace kv_tr {
namespace {

/// Adds rows to the sums: four rows of sums at a time, a group of columns at a time, one row of the
/// design after the other.
struct AddRows {
    const double* rows;  // of the design
    double* sums;
    std::size_t count;  // of the rows
    std::size_t unknowns;
    std::size_t width;  // of both, in memory

    template <class Group>
    KV_TR_INLINE void With() const {
        constexpr std::size_t kLanes = groups::kLanes<Group>;
        constexpr std::size_t kTogether = 4;
        for (std::size_t i = 0; i < unknowns; i += kTogether) {
            for (std::size_t j = i / kLanes * kLanes; j < unknowns + 2; j += kLanes) {
                Group sum[kTogether];
                for (std::size_t k = 0; k < kTogether; ++k) {
                    groups::Load(sum[k], sums + (i + k) * width + j);
                }
                const double* row = rows;
                for (std::size_t observation = 0; observation < count; ++observation) {
                    Group cells;
                    groups::Load(cells, row + j);
                    for (std::size_t k = 0; k < kTogether; ++k) sum[k] += row[i + k] * cells;
                    row += width;
                }
                for (std::size_t k = 0; k < kTogether; ++k) {
                    groups::Store(sum[k], sums + (i + k) * width + j);
                }
            }
        }
    }
};

}  // namespace

void NormalEquations::SumUp() {
    groups::RunWith(
        set_, AddRows{waiting_.front().data(), sums_.front().data(), count_, unknowns_, kWidth});
    count_ = 0;
}

Matrix NormalEquations::Normal() {
    SumUp();
    Matrix normal(unknowns_, unknowns_);
    for (std::size_t i = 0; i < unknowns_; ++i) {
        for (std::size_t j = i; j < unknowns_; ++j) normal(i, j) = normal(j, i) = sums_[i][j];
    }
    return normal;
}

std::vector<double> NormalEquations::Column(std::size_t column) {
    SumUp();
    std::vector<double> cells;
    for (std::size_t i = 0; i < unknowns_; ++i) cells.push_back(sums_[i][column]);
    return cells;
}

}  // namespace kv_tr
