// The triangular factor of a design: solution, rank, condition and cofactors.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "kv_tr/fit/matrix.h"
#include "kv_tr/fit/orthogonal_reduction.h"

namespace kv_tr {

/// QR factorisation with column pivoting of a design whose columns are divided by their lengths.
///
/// An unknown is lost when its diagonal is not above max(rows, unknowns) · 2⁻⁵² of the first one
/// (Golub and Van Loan, Matrix Computations, section 5.4). Lost unknowns are 0 in solutions and add
/// nothing to cofactors.
class TriangularFactor {
public:
    /// Of a reduced design that had so many rows.
    TriangularFactor(const OrthogonalReduction& reduction, std::size_t rows);

    std::size_t Unknowns() const { return unknowns_; }
    std::size_t Rank() const { return rank_; }

    /// The unknowns for a right-hand side of the reduction.
    std::vector<double> Solve(std::size_t rightSide) const;
    /// The sum of the squares of a right-hand side that the unknowns of the rank leave.
    double RemainingSquares(std::size_t rightSide) const { return remaining_[rightSide]; }

    /// R⁻ᵀ · row for the rows of a block, in as many columns as the rank has: scalar products of
    /// such rows are the cofactors of the rows, row · (AᵀA)⁻¹ · otherᵀ.
    void Whiten(const OrthogonalReduction::Block& rows, OrthogonalReduction::Block& whitened) const;
    /// (AᵀA)⁻¹, by R⁻¹ R⁻ᵀ.
    Matrix Cofactors() const;

    /// The greatest over the least singular value of the scaled design, to a few per cent; infinite
    /// when unknowns are lost.
    double Condition() const { return condition_; }
    /// The combination of columns that the design hardly notices: its right singular vector of the
    /// least singular value, as unknowns; some such vector when unknowns are lost.
    const std::vector<double>& WeakestCombination() const { return weakest_; }

private:
    using Vector = std::array<double, OrthogonalReduction::kMostUnknowns>;

    void Pivot(std::size_t rows);
    void FindCondition();
    /// R x = vector and Rᵀ x = vector over the first unknowns, as many as the rank has.
    void SolveUpper(Vector& vector) const;
    void SolveLower(Vector& vector) const;
    std::vector<double> Unscaled(const Vector& pivoted) const;

    std::size_t unknowns_;
    std::size_t rightSides_;
    std::size_t rank_ = 0;
    std::array<std::array<double, OrthogonalReduction::kMostColumns>,
               OrthogonalReduction::kMostUnknowns>
        triangle_{};
    std::array<std::size_t, OrthogonalReduction::kMostUnknowns> column_{};  // of each pivot
    Vector scale_{};                                                        // of each column
    std::array<double, 2> remaining_{};
    double condition_ = 0;
    std::vector<double> weakest_;
};

}  // namespace kv_tr
