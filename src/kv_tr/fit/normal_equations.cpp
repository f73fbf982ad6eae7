// Normal equations summed observation by observation.
#include "kv_tr/fit/normal_equations.h"

namespace kv_tr {

void NormalEquations::Add(std::span<const double> row, double observation,
                          double secondObservation) {
    for (std::size_t i = 0; i < Unknowns(); ++i) {
        const double cell = row[i];
        for (std::size_t j = i; j < Unknowns(); ++j) normal_(i, j) += cell * row[j];
        right_[i] += cell * observation;
        secondRight_[i] += cell * secondObservation;
    }
}

Matrix NormalEquations::Normal() const {
    Matrix full = normal_;
    for (std::size_t i = 0; i < Unknowns(); ++i) {
        for (std::size_t j = 0; j < i; ++j) full(i, j) = normal_(j, i);
    }
    return full;
}

}  // namespace kv_tr
