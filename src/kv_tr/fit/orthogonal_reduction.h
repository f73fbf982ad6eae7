// Least squares by Householder reflections, block of rows by block of rows.
#pragma once

#include <array>
#include <cstddef>

#include "kv_tr/model/evaluate.h"

namespace kv_tr {

/// Reduces the rows of a design, and of right-hand sides beside it, to an upper triangle R.
///
/// The rows come in blocks, so that memory does not grow with them (sequential QR factorisation;
/// Golub and Van Loan, Matrix Computations, section 12.5). The error of R grows with the condition
/// of the design, not with its square as that of normal equations does. Sums run in eight lanes
/// that are added in a fixed order, so that every instruction set gives the same bits.
class OrthogonalReduction {
public:
    static constexpr std::size_t kRows = 64;  ///< of a block
    static constexpr std::size_t kMostUnknowns = 21;
    static constexpr std::size_t kMostColumns = kMostUnknowns + 2;

    /// Column by column; the columns of the right-hand sides come last.
    struct Block {
        alignas(64) std::array<std::array<double, kRows>, kMostColumns> column{};
        std::size_t rows = kRows;  ///< that matter, rounded up to eight; the others may be anything
    };

    OrthogonalReduction(std::size_t unknowns, std::size_t rightSides,
                        InstructionSet set = WidestInstructionSet())
        : unknowns_(unknowns), columns_(unknowns + rightSides), set_(set) {}

    /// Takes all rows of a block and leaves their remainders in its place. Rows of zeros do
    /// nothing.
    void Add(Block& block);

    std::size_t Unknowns() const { return unknowns_; }
    std::size_t RightSides() const { return columns_ - unknowns_; }
    /// R(row, column) for column >= row; from the column Unknowns() on the right-hand sides.
    double At(std::size_t row, std::size_t column) const { return triangle_[row][column]; }
    /// The sum of the squares of a right-hand side that no unknowns can explain.
    double RemainingSquares(std::size_t rightSide) const { return remaining_[rightSide]; }

private:
    std::size_t unknowns_;
    std::size_t columns_;
    InstructionSet set_;
    std::array<std::array<double, kMostColumns>, kMostUnknowns> triangle_{};
    std::array<double, 2> remaining_{};
};

}  // namespace kv_tr
