// The dense matrix operations of the fits.
#pragma once

#include <cstddef>
#include <vector>

namespace kv_tr {

/// A matrix of doubles, indexed (row, column) from 0, stored row by row.
class Matrix {
public:
    Matrix() = default;
    Matrix(std::size_t rows, std::size_t columns)
        : rows_(rows), columns_(columns), cells_(rows * columns) {}

    std::size_t Rows() const { return rows_; }
    std::size_t Columns() const { return columns_; }

    double& operator()(std::size_t row, std::size_t column) {
        return cells_[row * columns_ + column];
    }
    double operator()(std::size_t row, std::size_t column) const {
        return cells_[row * columns_ + column];
    }

private:
    std::size_t rows_ = 0;
    std::size_t columns_ = 0;
    std::vector<double> cells_;
};

/// Replaces a square matrix by its inverse (Gauss-Jordan elimination with full pivoting).
///
/// False when all remaining pivot candidates are exactly zero; the matrix is then partly
/// eliminated. Columns are unscrambled over about half the indices only, as published results
/// require: exact for symmetric positive definite matrices, which never swap, and for sizes up to
/// 3, but not for every matrix from 4 on.
bool Invert(Matrix& matrix);

/// matrix · vector, of matching sizes; each sum runs over ascending columns, from 0.
std::vector<double> Multiply(const Matrix& matrix, const std::vector<double>& vector);

}  // namespace kv_tr
