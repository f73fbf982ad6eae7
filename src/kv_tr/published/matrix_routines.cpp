// The published matrix routines, which show their trouble to the user.
#include "kv_tr/published/matrix_routines.h"

#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"

namespace kv_tr {
namespace {

[[noreturn]] void ThrowSubscript() {
    throw RuntimeError(ErrorNumber::kSubscript, "Subscript out of range");
}

}  // namespace

void MatrixTimesTranspose(const Matrix& design, Matrix& normal) {
    const std::size_t unknowns = design.Columns();
    if (normal.Rows() != unknowns || normal.Columns() != unknowns) ThrowSubscript();
    for (std::size_t i = 0; i < unknowns; ++i) {
        for (std::size_t j = i; j < unknowns; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < design.Rows(); ++k) sum += design(k, i) * design(k, j);
            normal(i, j) = normal(j, i) = sum;
        }
    }
}

bool MatrixInverse(Matrix& matrix) {
    if (matrix.Columns() != matrix.Rows()) ThrowSubscript();
    if (!Invert(matrix)) ReportSingularMatrix();
    return true;
}

void ReportSingularMatrix() { ShowMessage("KORVANEL --> matrix inv.: DET=0 !"); }

void fMAtrix_Mul_Vector(const Matrix& matrix, const std::vector<double>& vector,
                        std::vector<double>& result) {
    if (matrix.Columns() != vector.size()) {
        ShowMessage("KORVANEL --> fMAtrix_Mul_Vector/ Hiba=1");
    }
    if (matrix.Rows() > result.size()) ShowMessage("KORVANEL --> fMAtrix_Mul_Vector/ Hiba=2");
    for (std::size_t i = 0; i < matrix.Rows(); ++i) {
        double sum = 0.0;
        for (std::size_t j = 0; j < matrix.Columns(); ++j) {
            if (j >= vector.size()) ThrowSubscript();
            sum += matrix(i, j) * vector[j];
        }
        if (i >= result.size()) ThrowSubscript();
        result[i] = sum;
    }
}

}  // namespace kv_tr
