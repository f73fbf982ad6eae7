// Normal equations summed observation by observation.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "kv_tr/fit/matrix.h"

namespace kv_tr {

/// N = AᵀA and n = Aᵀl of a design that is never stored: rows are added one after the other, so
/// every sum runs over ascending observations, from 0.
///
/// A row may serve two observations at once (one design for both coordinates); each then has a
/// right-hand side of its own.
class NormalEquations {
public:
    explicit NormalEquations(std::size_t unknowns)
        : normal_(unknowns, unknowns), right_(unknowns), secondRight_(unknowns) {}

    /// Adds one row of the design; it has as many cells as there are unknowns.
    void Add(std::span<const double> row, double observation, double secondObservation = 0.0);

    std::size_t Unknowns() const { return normal_.Rows(); }
    Matrix Normal() const;
    const std::vector<double>& Right() const { return right_; }
    const std::vector<double>& SecondRight() const { return secondRight_; }

private:
    Matrix normal_;  // the upper triangle
    std::vector<double> right_;
    std::vector<double> secondRight_;
};

}  // namespace kv_tr
