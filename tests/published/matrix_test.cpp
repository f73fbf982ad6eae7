#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/matrix_routines.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

Matrix Filled(std::size_t columns, const std::vector<double>& cells) {
    Matrix matrix(cells.size() / columns, columns);
    for (std::size_t i = 0; i < cells.size(); ++i) matrix(i / columns, i % columns) = cells[i];
    return matrix;
}

void ExpectCells(const Matrix& matrix, const std::vector<double>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        EXPECT_EQ(matrix(i / matrix.Columns(), i % matrix.Columns()), cells[i]) << i;
    }
}

TEST(MatrixInverse, InvertsWithSwapsInAnyOrderAndSaysOnceThatAMatrixIsSingular) {
    test::RecordingPlatform platform;
    const Texts singular{"KORVANEL --> matrix inv.: DET=0 !"};
    const struct {
        std::size_t size;
        std::vector<double> matrix, inverse;
        Texts told;
    } cases[] = {
        {1, {4}, {0.25}, {}},
        {2, {0, 1, 1, 0}, {0, 1, 1, 0}, {}},
        {3, {0, 2, 0, 0, 0, 4, 8, 0, 0}, {0, 0, 0.125, 0.5, 0, 0, 0, 0.25, 0}, {}},
        {3, {0, 0, 2, 4, 0, 0, 0, 8, 0}, {0, 0.25, 0, 0, 0, 0.125, 0.5, 0, 0}, {}},
        {3, std::vector<double>(9), {}, singular},
        // stopped only at the last row:
        {3, {2, 0, 0, 0, 0, 0, 0, 0, 4}, {0.5, 0, 0, 0, 0, 0, 0, 0, 0.25}, singular},
    };
    for (const auto& [size, cells, inverse, told] : cases) {
        Matrix matrix = Filled(size, cells);
        EXPECT_TRUE(MatrixInverse(matrix));
        ExpectCells(matrix, inverse);
        EXPECT_EQ(platform.TakeTexts(), told);
    }
    Matrix notSquare(2, 3);
    EXPECT_THROW(MatrixInverse(notSquare), RuntimeError);
}

TEST(MatrixTimesTranspose, MultipliesEachPairOfColumns) {
    Matrix design(3, 2);
    for (std::size_t k = 0; k < 6; ++k) design(k / 2, k % 2) = static_cast<double>(k + 1);
    Matrix normal(2, 2);
    MatrixTimesTranspose(design, normal);
    EXPECT_EQ(normal(0, 0), 35.0);
    EXPECT_EQ(normal(0, 1), 44.0);
    EXPECT_EQ(normal(1, 0), 44.0);
    EXPECT_EQ(normal(1, 1), 56.0);
    Matrix tooSmall(1, 1);
    EXPECT_THROW(MatrixTimesTranspose(design, tooSmall), RuntimeError);
}

TEST(fMAtrix_Mul_Vector, TellsOfWrongSizesAndFailsOnlyBeyondAnArray) {
    test::RecordingPlatform platform;
    const Matrix matrix = Filled(2, {1, 2, 3, 4});
    std::vector<double> result(3, -1.0);
    fMAtrix_Mul_Vector(matrix, {10, 1}, result);
    fMAtrix_Mul_Vector(matrix, {10, 1, 7}, result);  // a longer vector does no harm
    EXPECT_EQ(result, (std::vector<double>{12, 34, -1}));
    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10}, result), RuntimeError);
    EXPECT_EQ(platform.TakeTexts(), Texts(2, "KORVANEL --> fMAtrix_Mul_Vector/ Hiba=1"));

    std::vector<double> tooShort(1);
    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10, 1}, tooShort), RuntimeError);
    EXPECT_EQ(platform.TakeTexts(), Texts{"KORVANEL --> fMAtrix_Mul_Vector/ Hiba=2"});
    EXPECT_EQ(tooShort[0], 12);
}

}  // namespace
}  // namespace kv_tr
