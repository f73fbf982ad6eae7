// The dense matrix operations of the fits.
#include "kv_tr/fit/matrix.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kv_tr {
namespace {

struct Cell {
    std::size_t row;
    std::size_t column;
};

/// The first cell of greatest magnitude among the rows and columns not yet used as pivots.
std::optional<Cell> FindPivot(const Matrix& matrix, const std::vector<double>& pivots) {
    double big = 0.0;
    std::optional<Cell> found;
    for (std::size_t row = 0; row < pivots.size(); ++row) {
        if (pivots[row] < 0.0) continue;
        for (std::size_t column = 0; column < pivots.size(); ++column) {
            if (pivots[column] < 0.0) continue;
            const double magnitude = std::abs(matrix(row, column));
            if (magnitude > big) {
                big = magnitude;
                found = {row, column};
            }
        }
    }
    return found;
}

void SwapRows(Matrix& matrix, std::size_t one, std::size_t other) {
    for (std::size_t k = 0; k < matrix.Columns(); ++k) std::swap(matrix(one, k), matrix(other, k));
}

void SwapColumns(Matrix& matrix, std::size_t one, std::size_t other) {
    for (std::size_t k = 0; k < matrix.Rows(); ++k) std::swap(matrix(k, one), matrix(k, other));
}

/// Clears a column with the pivot on the diagonal, building the inverse in its place.
void Eliminate(Matrix& matrix, std::size_t column) {
    const std::size_t n = matrix.Rows();
    const double pivot = matrix(column, column);
    matrix(column, column) = 1.0;
    for (std::size_t k = 0; k < n; ++k) matrix(column, k) /= pivot;
    for (std::size_t row = 0; row < n; ++row) {
        if (row == column) continue;
        const double factor = matrix(row, column);
        matrix(row, column) = 0.0;
        for (std::size_t k = 0; k < n; ++k) matrix(row, k) -= factor * matrix(column, k);
    }
}

/// Undoes the row swaps on the columns. One swap an index over about half the indices.
void Unscramble(Matrix& matrix, std::vector<double>& pivots) {
    const std::size_t n = pivots.size();
    const double half = (static_cast<double>(n) + 1.0) / 2.0 + 1.0;
    const auto bound = std::min(n, static_cast<std::size_t>(std::nearbyint(half)));
    for (std::size_t i = 0; i < bound; ++i) {
        if (pivots[i] < 1.0) continue;  // a row left over by a singular matrix
        const auto k = static_cast<std::size_t>(pivots[i]) - 1;
        if (k == i) continue;
        std::swap(pivots[i], pivots[k]);
        SwapColumns(matrix, i, k);
    }
}

}  // namespace

bool Invert(Matrix& matrix) {
    const std::size_t n = matrix.Rows();
    std::vector<double> pivots(n);  // row numbers from 1, negative once used
    for (std::size_t k = 0; k < n; ++k) pivots[k] = static_cast<double>(k + 1);

    bool regular = true;
    for (std::size_t step = 0; step < n; ++step) {
        const auto cell = FindPivot(matrix, pivots);
        regular = cell.has_value();
        if (!regular) break;
        if (cell->row != cell->column) {
            SwapRows(matrix, cell->row, cell->column);
            std::swap(pivots[cell->row], pivots[cell->column]);
        }
        pivots[cell->column] = -std::abs(pivots[cell->column]);
        Eliminate(matrix, cell->column);
    }
    for (double& pivot : pivots) pivot = -pivot;
    Unscramble(matrix, pivots);
    return regular;
}

std::vector<double> Multiply(const Matrix& matrix, const std::vector<double>& vector) {
    std::vector<double> result(matrix.Rows());
    for (std::size_t i = 0; i < matrix.Rows(); ++i) {
        for (std::size_t j = 0; j < matrix.Columns(); ++j) result[i] += matrix(i, j) * vector[j];
    }
    return result;
}

}  // namespace kv_tr
