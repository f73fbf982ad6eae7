// Normal equations summed observation by observation.
#pragma once

#include <algorithm>
#include <array>
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
    static constexpr std::size_t kMostUnknowns = 21;

    explicit NormalEquations(std::size_t unknowns)
        : unknowns_(unknowns), sums_(unknowns * (unknowns + 2)) {}

    /// Adds one row of the design; it has as many cells as there are unknowns.
    void Add(std::span<const double> row, double observation, double secondObservation = 0.0);

    std::size_t Unknowns() const { return unknowns_; }
    Matrix Normal() const;
    std::vector<double> Right() const { return Column(unknowns_); }
    std::vector<double> SecondRight() const { return Column(unknowns_ + 1); }

private:
    std::vector<double> Column(std::size_t column) const;

    std::size_t unknowns_;
    std::vector<double> sums_;  // row by row: the upper triangle of N, and both right-hand sides
};

// Here, so that a row of known length is unrolled. Different sums are independent, so that the
// compiler may form several of them at once without changing a bit.
inline void NormalEquations::Add(std::span<const double> row, double observation,
                                 double secondObservation) {
    std::array<double, kMostUnknowns + 2> cells;
    std::ranges::copy(row, cells.begin());
    cells[row.size()] = observation;
    cells[row.size() + 1] = secondObservation;
    double* sum = sums_.data();
    const std::size_t width = row.size() + 2;
    for (std::size_t i = 0; i < row.size(); ++i, sum += width) {
        for (std::size_t j = i; j < width; ++j) sum[j] += cells[i] * cells[j];
    }
}

}  // namespace kv_tr
