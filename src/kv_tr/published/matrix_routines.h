// The published matrix routines, which show their trouble to the user.
#pragma once

#include <vector>

#include "kv_tr/fit/matrix.h"

namespace kv_tr {

/// The normal matrix of a design matrix: normal = designᵀ · design.
///
/// design has r rows (observations) and c columns (unknowns); normal must be c × c, otherwise
/// RuntimeError kSubscript. Each sum runs over ascending rows, from 0.
void MatrixTimesTranspose(const Matrix& design, Matrix& normal);

/// Replaces a square matrix by its inverse; see Invert.
///
/// When all remaining pivot candidates are exactly zero, the user is told "DET=0" and the matrix
/// stays partly eliminated. The result is true in every case, deliberately. A matrix that is not
/// square is RuntimeError kSubscript.
bool MatrixInverse(Matrix& matrix);

/// Tells the user that a matrix has no inverse ("DET=0").
void ReportSingularMatrix();

/// result = matrix · vector; each sum runs over ascending columns, from 0.
///
/// Sizes that do not fit are shown to the user ("Hiba=1": vector, "Hiba=2": result) before the
/// product is tried; an index beyond an array is then RuntimeError kSubscript.
void fMAtrix_Mul_Vector(const Matrix& matrix, const std::vector<double>& vector,
                        std::vector<double>& result);

}  // namespace kv_tr
