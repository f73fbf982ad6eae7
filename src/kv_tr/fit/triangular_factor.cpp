// The triangular factor of a design.
#include "kv_tr/fit/triangular_factor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace kv_tr {

TriangularFactor::TriangularFactor(const OrthogonalReduction& reduction, std::size_t rows)
    : unknowns_(reduction.Unknowns()), rightSides_(reduction.RightSides()) {
    for (std::size_t j = 0; j < unknowns_ + rightSides_; ++j) {
        double squares = 0.0;
        for (std::size_t i = 0; i < std::min(j + 1, unknowns_); ++i) {
            triangle_[i][j] = reduction.At(i, j);
            squares += triangle_[i][j] * triangle_[i][j];
        }
        if (j >= unknowns_) continue;
        scale_[j] = squares > 0.0 ? std::sqrt(squares) : 1.0;
        for (std::size_t i = 0; i <= j; ++i) triangle_[i][j] /= scale_[j];
    }
    for (std::size_t side = 0; side < rightSides_; ++side) {
        remaining_[side] = reduction.RemainingSquares(side);
    }
    std::iota(column_.begin(), column_.end(), std::size_t{0});
    Pivot(rows);
    FindCondition();
}

void TriangularFactor::Pivot(std::size_t rows) {
    const std::size_t n = unknowns_;
    const double tolerance =
        static_cast<double>(std::max(rows, n)) * std::numeric_limits<double>::epsilon();
    const auto squaresBelow = [this, n](std::size_t row, std::size_t column) {
        double sum = 0.0;
        for (std::size_t i = row; i < n; ++i) sum += triangle_[i][column] * triangle_[i][column];
        return sum;
    };
    double first = 0.0;
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        double most = -1.0;
        for (std::size_t j = k; j < n; ++j) {
            const double squares = squaresBelow(k, j);
            if (squares > most) {
                most = squares;
                pivot = j;
            }
        }
        const double length = std::sqrt(most);
        if (k == 0) first = length;
        if (!(length > tolerance * first)) break;
        rank_ = k + 1;
        for (std::size_t i = 0; i < n; ++i) std::swap(triangle_[i][k], triangle_[i][pivot]);
        std::swap(column_[k], column_[pivot]);

        const double becomes = triangle_[k][k] > 0.0 ? -length : length;
        Vector reflector{};
        for (std::size_t i = k; i < n; ++i) reflector[i] = triangle_[i][k];
        reflector[k] -= becomes;
        const double scale = 1.0 / (length * std::abs(reflector[k]));
        for (std::size_t j = k; j < n + rightSides_; ++j) {
            double product = 0.0;
            for (std::size_t i = k; i < n; ++i) product += reflector[i] * triangle_[i][j];
            for (std::size_t i = k; i < n; ++i) triangle_[i][j] -= scale * product * reflector[i];
        }
    }
    for (std::size_t side = 0; side < rightSides_; ++side) {
        remaining_[side] += squaresBelow(rank_, n + side);
    }
}

void TriangularFactor::SolveUpper(Vector& vector) const {
    for (std::size_t i = rank_; i-- > 0;) {
        double sum = vector[i];
        for (std::size_t j = i + 1; j < rank_; ++j) sum -= triangle_[i][j] * vector[j];
        vector[i] = sum / triangle_[i][i];
    }
}

void TriangularFactor::SolveLower(Vector& vector) const {
    for (std::size_t i = 0; i < rank_; ++i) {
        vector[i] /= triangle_[i][i];
        for (std::size_t j = i + 1; j < rank_; ++j) vector[j] -= triangle_[i][j] * vector[i];
    }
}

std::vector<double> TriangularFactor::Unscaled(const Vector& pivoted) const {
    std::vector<double> unknowns(unknowns_);
    for (std::size_t k = 0; k < unknowns_; ++k) {
        unknowns[column_[k]] = pivoted[k] / scale_[column_[k]];
    }
    return unknowns;
}

std::vector<double> TriangularFactor::Solve(std::size_t rightSide) const {
    Vector solution{};
    for (std::size_t i = 0; i < rank_; ++i) solution[i] = triangle_[i][unknowns_ + rightSide];
    SolveUpper(solution);
    return Unscaled(solution);
}

void TriangularFactor::Whiten(const OrthogonalReduction::Block& rows,
                              OrthogonalReduction::Block& whitened) const {
    whitened.rows = rows.rows;
    for (std::size_t k = 0; k < rank_; ++k) {
        auto& column = whitened.column[k];
        const auto& row = rows.column[column_[k]];
        const double scale = scale_[column_[k]];
        for (std::size_t i = 0; i < rows.rows; ++i) column[i] = row[i] / scale;
        for (std::size_t j = 0; j < k; ++j) {
            const double factor = triangle_[j][k];
            const auto& earlier = whitened.column[j];
            for (std::size_t i = 0; i < rows.rows; ++i) column[i] -= factor * earlier[i];
        }
        const double pivot = triangle_[k][k];
        for (std::size_t i = 0; i < rows.rows; ++i) column[i] /= pivot;
    }
}

Matrix TriangularFactor::Cofactors() const {
    std::vector<Vector> inverseRows(unknowns_);  // row k of R⁻¹, by the column that it stands for
    for (std::size_t j = 0; j < rank_; ++j) {
        Vector column{};
        column[j] = 1.0;
        SolveUpper(column);
        for (std::size_t i = 0; i < rank_; ++i) inverseRows[column_[i]][j] = column[i];
    }
    Matrix cofactors(unknowns_, unknowns_);
    for (std::size_t i = 0; i < unknowns_; ++i) {
        for (std::size_t j = 0; j < unknowns_; ++j) {
            const double product = std::inner_product(inverseRows[i].begin(), inverseRows[i].end(),
                                                      inverseRows[j].begin(), 0.0);
            cofactors(i, j) = product / scale_[i] / scale_[j];
        }
    }
    return cofactors;
}

void TriangularFactor::FindCondition() {
    constexpr int kPowerSteps = 20;
    constexpr int kInverseSteps = 12;
    const auto normalise = [](Vector& vector) {
        const double length =
            std::sqrt(std::inner_product(vector.begin(), vector.end(), vector.begin(), 0.0));
        for (double& value : vector) value /= length;
        return length;
    };
    if (rank_ < unknowns_) {  // the first lost column as a combination of those that are left
        condition_ = std::numeric_limits<double>::infinity();
        Vector vector{};
        for (std::size_t i = 0; i < rank_; ++i) vector[i] = -triangle_[i][rank_];
        SolveUpper(vector);
        vector[rank_] = 1.0;
        weakest_ = Unscaled(vector);
        return;
    }
    Vector start{};
    for (std::size_t k = 0; k < unknowns_; ++k) start[k] = 1.0 + 0.1 * static_cast<double>(k);
    Vector vector = start;
    double squaredMost = 0.0;
    for (int step = 0; step < kPowerSteps; ++step) {  // RᵀR, from the last row on, in place
        normalise(vector);
        for (std::size_t i = 0; i < rank_; ++i) {
            double sum = 0.0;
            for (std::size_t j = i; j < rank_; ++j) sum += triangle_[i][j] * vector[j];
            vector[i] = sum;
        }
        for (std::size_t j = rank_; j-- > 0;) {
            double sum = 0.0;
            for (std::size_t i = 0; i <= j; ++i) sum += triangle_[i][j] * vector[i];
            vector[j] = sum;
        }
        squaredMost =
            std::sqrt(std::inner_product(vector.begin(), vector.end(), vector.begin(), 0.0));
    }
    vector = start;
    double squaredLeast = 0.0;
    for (int step = 0; step < kInverseSteps; ++step) {
        normalise(vector);
        SolveLower(vector);
        SolveUpper(vector);
        squaredLeast =
            1.0 / std::sqrt(std::inner_product(vector.begin(), vector.end(), vector.begin(), 0.0));
    }
    condition_ = std::sqrt(squaredMost / squaredLeast);
    weakest_ = Unscaled(vector);
}

}  // namespace kv_tr
