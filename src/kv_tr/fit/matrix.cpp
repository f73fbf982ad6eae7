// The dense matrix operations of the fits.
#include "kv_tr/fit/matrix.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "kv_tr/model/lanes.h"

namespace kv_tr {
namespace {

struct Cell {
    std::size_t row;
    std::size_t column;
};

/// Finds the greatest magnitude in the columns of a row that are open, which have the factor 1, the
/// others 0; 0 where nothing is greater. What is not a number is not greater.
struct FindGreatest {
    const double* row;
    const std::vector<double>& open;
    double& greatest;

    template <class Group>
    KV_TR_INLINE void With() const {
        constexpr std::size_t kLanes = groups::kLanes<Group>;
        Group most{};
        std::size_t k = 0;
        for (; k + kLanes <= open.size(); k += kLanes) {
            Group cells;
            Group isOpen;
            groups::Load(cells, row + k);
            groups::Load(isOpen, open.data() + k);
            const Group magnitudes = (cells < 0.0 ? -cells : cells) * isOpen;
            most = magnitudes > most ? magnitudes : most;
        }
        double each[kLanes];
        groups::Store(most, each);
        greatest = *std::ranges::max_element(each);
        for (; k < open.size(); ++k) greatest = std::max(greatest, std::abs(row[k]) * open[k]);
    }
};

/// The first cell of greatest magnitude among the rows and columns not yet used as pivots.
std::optional<Cell> FindPivot(InstructionSet set, Matrix& matrix,
                              const std::vector<double>& pivots) {
    std::vector<double> open(pivots.size());
    std::ranges::transform(pivots, open.begin(), [](double p) { return p < 0.0 ? 0.0 : 1.0; });
    double big = 0.0;
    std::size_t inRow = 0;
    for (std::size_t row = 0; row < pivots.size(); ++row) {
        if (open[row] == 0.0) continue;
        double greatest = 0.0;
        groups::RunWith(set, FindGreatest{&matrix(row, 0), open, greatest});
        if (!(greatest > big)) continue;
        big = greatest;
        inRow = row;
    }
    if (big == 0.0) return {};
    std::size_t column = 0;
    while (open[column] == 0.0 || std::abs(matrix(inRow, column)) != big) ++column;
    return Cell{inRow, column};
}

void SwapRows(Matrix& matrix, std::size_t one, std::size_t other) {
    for (std::size_t k = 0; k < matrix.Columns(); ++k) std::swap(matrix(one, k), matrix(other, k));
}

void SwapColumns(Matrix& matrix, std::size_t one, std::size_t other) {
    for (std::size_t k = 0; k < matrix.Rows(); ++k) std::swap(matrix(k, one), matrix(k, other));
}

/// Subtracts multiples of a row from all others, so that they are 0 in a column.
struct ClearColumn {
    Matrix& matrix;
    std::size_t column;

    template <class Group>
    KV_TR_INLINE void With() const {
        constexpr std::size_t kLanes = groups::kLanes<Group>;
        const std::size_t n = matrix.Rows();
        const double* const pivots = &matrix(column, 0);
        for (std::size_t i = 0; i < n; ++i) {
            if (i == column) continue;
            double* const row = &matrix(i, 0);
            const double factor = row[column];
            row[column] = 0.0;
            std::size_t k = 0;
            for (; k + kLanes <= n; k += kLanes) {
                Group cells;
                Group subtracted;
                groups::Load(cells, row + k);
                groups::Load(subtracted, pivots + k);
                cells -= factor * subtracted;
                groups::Store(cells, row + k);
            }
            for (; k < n; ++k) row[k] -= factor * pivots[k];
        }
    }
};

/// Clears a column with the pivot on the diagonal, building the inverse in its place.
void Eliminate(InstructionSet set, Matrix& matrix, std::size_t column) {
    const double pivot = matrix(column, column);
    matrix(column, column) = 1.0;
    for (std::size_t k = 0; k < matrix.Rows(); ++k) matrix(column, k) /= pivot;
    groups::RunWith(set, ClearColumn{matrix, column});
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

    const InstructionSet set = WidestInstructionSet();
    bool regular = true;
    for (std::size_t step = 0; step < n; ++step) {
        const auto cell = FindPivot(set, matrix, pivots);
        regular = cell.has_value();
        if (!regular) break;
        if (cell->row != cell->column) {
            SwapRows(matrix, cell->row, cell->column);
            std::swap(pivots[cell->row], pivots[cell->column]);
        }
        pivots[cell->column] = -std::abs(pivots[cell->column]);
        Eliminate(set, matrix, cell->column);
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
