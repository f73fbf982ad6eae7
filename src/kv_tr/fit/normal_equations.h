// Normal equations summed observation by observation.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "kv_tr/fit/matrix.h"
#include "kv_tr/model/evaluate.h"

namespace kv_tr {

/// N = AᵀA and n = Aᵀl of a design that is never stored: rows are added one after the other, so
/// every sum runs over ascending observations, from 0. A few rows wait until they are enough to be
/// added together; several sums are formed side by side, which changes no bit of any.
///
/// A row may serve two observations at once (one design for both coordinates); each then has a
/// right-hand side of its own.
class NormalEquations {
public:
    static constexpr std::size_t kMostUnknowns = 21;

    explicit NormalEquations(std::size_t unknowns, InstructionSet set = WidestInstructionSet())
        : unknowns_(unknowns), set_(set) {}

    /// Adds one row of the design; it has as many cells as there are unknowns.
    void Add(std::span<const double> row, double observation, double secondObservation = 0.0) {
        auto& cells = waiting_[count_];
        std::ranges::copy(row, cells.begin());
        cells[unknowns_] = observation;
        cells[unknowns_ + 1] = secondObservation;
        if (++count_ == kRows) SumUp();
    }

    std::size_t Unknowns() const { return unknowns_; }
    Matrix Normal();
    std::vector<double> Right() { return Column(unknowns_); }
    std::vector<double> SecondRight() { return Column(unknowns_ + 1); }

private:
    static constexpr std::size_t kRows = 16;
    static constexpr std::size_t kWidth =
        24;  // of a row with two right-hand sides, and whole groups
    using Cells = std::array<double, kWidth>;

    void SumUp();
    std::vector<double> Column(std::size_t column);

    std::size_t unknowns_;
    InstructionSet set_;
    std::size_t count_ = 0;  // of the rows that wait
    alignas(64) std::array<Cells, kRows> waiting_{};
    // Row by row: the upper triangle of N, and both right-hand sides; the rest has no meaning.
    alignas(64) std::array<Cells, kWidth> sums_{};
};

}  // namespace kv_tr
