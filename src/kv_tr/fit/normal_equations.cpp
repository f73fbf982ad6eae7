// Normal equations summed observation by observation.
#include "kv_tr/fit/normal_equations.h"

namespace kv_tr {

Matrix NormalEquations::Normal() const {
    Matrix normal(unknowns_, unknowns_);
    for (std::size_t i = 0; i < unknowns_; ++i) {
        for (std::size_t j = i; j < unknowns_; ++j) {
            normal(i, j) = normal(j, i) = sums_[i * (unknowns_ + 2) + j];
        }
    }
    return normal;
}

std::vector<double> NormalEquations::Column(std::size_t column) const {
    std::vector<double> cells;
    for (std::size_t i = 0; i < unknowns_; ++i) {
        cells.push_back(sums_[i * (unknowns_ + 2) + column]);
    }
    return cells;
}

}  // namespace kv_tr
