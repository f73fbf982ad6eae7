#include <gtest/gtest.h>

#include <cmath>

#include "helpers/recording_platform.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/matrix_routines.h"

namespace kv_tr {
namespace {

using Cells = std::vector<double>;

Matrix Filled(std::size_t columns, const Cells& cells) {
    Matrix matrix(cells.size() / columns, columns);
    for (std::size_t i = 0; i < cells.size(); ++i) matrix(i / columns, i % columns) = cells[i];
    return matrix;
}

/// The cells row by row, free of what rounding leaves.
Cells CellsOf(const Matrix& matrix) {
    Cells cells;
    for (std::size_t i = 0; i < matrix.Rows() * matrix.Columns(); ++i)
        cells.push_back(std::round(matrix(i / matrix.Columns(), i % matrix.Columns()) * 1e9) / 1e9);
    return cells;
}

TEST(MatrixInverse, YieldsTheInverseWithTheColumnsThatPublishedResultsHave) {
    test::RecordingPlatform platform;
    const struct {
        std::size_t size;
        Cells matrix, product;  // of the matrix and its result: from size 4 on columns may be out
        std::size_t told = 0;   // of place, since the swaps are undone once an index over half
    } cases[] = {
        // clang-format off
        {3, {0, 2, 1, 5, 0, 4, 8, 1, 0}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
        {4, {2, -1, -4, -6, -1, -3, -9, -1, -1, -3, -4, 0, 0, 2, -7, 1},
            {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
        {5, {-1, -6, 8, 5, 5, -6, 2, -7, -5, -3, -4, -4, 7, 7, -3, 7, 1, 8, 5, 7, 6, 9, 7, 8, -9},
            {1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}},
        {3, {2, 0, 0, 0, 0, 0, 0, 0, 4}, {1, 0, 0, 0, 0, 0, 0, 0, 1}, 1},  // singular
        // clang-format on
    };
    for (const auto& [size, cells, product, told] : cases) {
        const Matrix matrix = Filled(size, cells);
        Matrix result = matrix, multiplied(size, size);
        EXPECT_TRUE(MatrixInverse(result));
        for (std::size_t i = 0; i < size * size; ++i)
            for (std::size_t k = 0; k < size; ++k)
                multiplied(i / size, i % size) += matrix(i / size, k) * result(k, i % size);
        EXPECT_EQ(CellsOf(multiplied), product) << size;
        EXPECT_EQ(platform.TakeTexts(),
                  std::vector<std::string>(told, "KORVANEL --> matrix inv.: DET=0 !"));
    }
    Matrix notSquare(2, 3);
    EXPECT_THROW(MatrixInverse(notSquare), RuntimeError);
}

TEST(fMAtrix_Mul_Vector, TellsOfWrongSizesAndFailsOnlyBeyondAnArray) {
    test::RecordingPlatform platform;
    const Matrix matrix = Filled(2, {1, 2, 3, 4});
    Cells result(3, -1.0);
    fMAtrix_Mul_Vector(matrix, {10, 1, 7}, result);  // a longer vector does no harm
    EXPECT_EQ(result, (Cells{12, 34, -1}));
    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10}, result), RuntimeError);
    Cells tooShort(1);
    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10, 1}, tooShort), RuntimeError);
    EXPECT_EQ(tooShort[0], 12);
    const std::string told = "KORVANEL --> fMAtrix_Mul_Vector/ Hiba=";
    EXPECT_EQ(platform.TakeTexts(), (std::vector{told + "1", told + "1", told + "2"}));
}

}  // namespace
}  // namespace kv_tr
