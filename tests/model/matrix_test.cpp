#include "model/matrix.h"

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

const Texts kSingular{"KORVANEL --> matrix inv.: DET=0 !"};

Matrix Filled(std::size_t columns, const std::vector<double>& cells) {
    Matrix matrix(cells.size() / columns, columns);
    for (std::size_t i = 0; i < cells.size(); ++i) matrix(i / columns, i % columns) = cells[i];
    return matrix;
}

void ExpectCells(const Matrix& matrix, const std::vector<double>& cells, double tolerance = 0.0) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        EXPECT_NEAR(matrix(i / matrix.Columns(), i % matrix.Columns()), cells[i], tolerance) << i;
    }
}

TEST(MatrixInverse, InvertsWithSwapsInAnyOrder) {
    test::RecordingPlatform platform;
    const struct {
        std::size_t size;
        std::vector<double> matrix, inverse;
    } cases[] = {
        {1, {4}, {0.25}},
        {2, {0, 1, 1, 0}, {0, 1, 1, 0}},
        {2, {2, 1, 1, 1}, {1, -1, -1, 2}},
        {3, {0, 2, 0, 0, 0, 4, 8, 0, 0}, {0, 0, 0.125, 0.5, 0, 0, 0, 0.25, 0}},
        {3, {0, 0, 2, 4, 0, 0, 0, 8, 0}, {0, 0.25, 0, 0, 0, 0.125, 0.5, 0, 0}},
    };
    for (const auto& [size, cells, inverse] : cases) {
        Matrix matrix = Filled(size, cells);
        EXPECT_TRUE(MatrixInverse(matrix));
        ExpectCells(matrix, inverse);
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST(MatrixInverse, InvertsTheSymmetricPositiveDefiniteMatricesOfFits) {
    test::RecordingPlatform platform;
    constexpr std::size_t kSize = 42;
    Matrix matrix(kSize, kSize);  // min(i, j): its inverse is tridiagonal, 2 and -1, last cell 1
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j)
            matrix(i, j) = static_cast<double>(std::min(i, j) + 1);
    }
    MatrixInverse(matrix);
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) {
            const double expected = i == j                     ? (i + 1 == kSize ? 1.0 : 2.0)
                                    : i + 1 == j || j + 1 == i ? -1.0
                                                               : 0.0;
            EXPECT_NEAR(matrix(i, j), expected, 1e-10);  // condition 3000, in double precision
        }
    }
}

TEST(MatrixInverse, SaysOnceThatAMatrixIsSingularAndGoesOn) {
    test::RecordingPlatform platform;
    Matrix zero(3, 3);
    EXPECT_TRUE(MatrixInverse(zero));
    EXPECT_EQ(platform.TakeTexts(), kSingular);
    EXPECT_EQ(platform.messages.size(), 0u);

    Matrix zeroRow = Filled(3, {2, 0, 0, 0, 0, 0, 0, 0, 4});
    EXPECT_TRUE(MatrixInverse(zeroRow));
    EXPECT_EQ(platform.TakeTexts(), kSingular);
    ExpectCells(zeroRow, {0.5, 0, 0, 0, 0, 0, 0, 0, 0.25});  // stopped only at the last row

    Matrix notSquare(2, 3);
    EXPECT_THROW(MatrixInverse(notSquare), RuntimeError);
}

TEST(MatrixTimesTranspose, MultipliesEachPairOfColumns) {
    const Matrix design = Filled(2, {1, 2, 3, 4, 5, 6});
    Matrix normal(2, 2);
    MatrixTimesTranspose(design, normal);
    ExpectCells(normal, {35, 44, 44, 56});

    Matrix tooSmall(1, 1);
    EXPECT_THROW(MatrixTimesTranspose(design, tooSmall), RuntimeError);
}

TEST(fMAtrix_Mul_Vector, TellsOfWrongSizesAndFailsOnlyBeyondAnArray) {
    test::RecordingPlatform platform;
    const Matrix matrix = Filled(2, {1, 2, 3, 4});
    std::vector<double> result(3, -1.0);
    fMAtrix_Mul_Vector(matrix, {10, 1}, result);
    EXPECT_EQ(result, (std::vector<double>{12, 34, -1}));
    EXPECT_EQ(platform.TakeTexts(), Texts{});

    fMAtrix_Mul_Vector(matrix, {10, 1, 7}, result);  // a longer vector does no harm
    EXPECT_EQ(platform.TakeTexts(), Texts{"KORVANEL --> fMAtrix_Mul_Vector/ Hiba=1"});

    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10}, result), RuntimeError);
    EXPECT_EQ(platform.TakeTexts(), Texts{"KORVANEL --> fMAtrix_Mul_Vector/ Hiba=1"});

    std::vector<double> tooShort(1);
    EXPECT_THROW(fMAtrix_Mul_Vector(matrix, {10, 1}, tooShort), RuntimeError);
    EXPECT_EQ(platform.TakeTexts(), Texts{"KORVANEL --> fMAtrix_Mul_Vector/ Hiba=2"});
    EXPECT_EQ(tooShort[0], 12);
}

}  // namespace
}  // namespace kv_tr
