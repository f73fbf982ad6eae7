// Records of the six-parameter family.
#pragma once

#include "kv_tr/model/transformation.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// A transformation with the type and the six coefficients of a record; its others stay.
Transformation WithAffine(Transformation transformation, const AFFIN_PRM& affine);

/// The type and the six coefficients of a transformation, whatever its type.
AFFIN_PRM AffineOf(const Transformation& transformation);

/// The record that maps back; of the same type. Throws RuntimeError kDivisionByZero for a record
/// that maps the plane to a line or a point.
AFFIN_PRM InverseOf(const AFFIN_PRM& record);

}  // namespace kv_tr
