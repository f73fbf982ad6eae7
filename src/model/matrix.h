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

/// The normal matrix of a design matrix: normal = designᵀ · design.
///
/// design has r rows (observations) and c columns (unknowns); normal must be c × c, otherwise
/// RuntimeError kSubscript. Each sum runs over ascending rows, from 0.
void MatrixTimesTranspose(const Matrix& design, Matrix& normal);

/// Replaces a square matrix by its inverse (Gauss-Jordan elimination with full pivoting).
///
/// When all remaining pivot candidates are exactly zero, the user is told "DET=0" and the matrix
/// stays partly eliminated. The result is true in every case, deliberately. Columns are
/// unscrambled over about half the indices only, deliberately: exact for symmetric
/// positive definite matrices, which never swap, and for sizes up to 3, but not for every matrix
/// from 4 on. A matrix that is not square is RuntimeError kSubscript.
bool MatrixInverse(Matrix& matrix);

/// result = matrix · vector; each sum runs over ascending columns, from 0.
///
/// Sizes that do not fit are shown to the user ("Hiba=1": vector, "Hiba=2": result) before the
/// product is tried; an index beyond an array is then RuntimeError kSubscript.
void fMAtrix_Mul_Vector(const Matrix& matrix, const std::vector<double>& vector,
                        std::vector<double>& result);

}  // namespace kv_tr
