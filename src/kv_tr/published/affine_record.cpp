// Records of the six-parameter family.
#include "kv_tr/published/affine_record.h"

#include "kv_tr/published/errors.h"

namespace kv_tr {

Transformation WithAffine(Transformation transformation, const AFFIN_PRM& affine) {
    transformation.type = static_cast<Type>(affine.eType);
    transformation.a[0] = affine.dA0;
    transformation.a[1] = affine.dA1;
    transformation.a[2] = affine.dA2;
    transformation.b[0] = affine.dB0;
    transformation.b[1] = affine.dB1;
    transformation.b[2] = affine.dB2;
    return transformation;
}

AFFIN_PRM AffineOf(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    return {.eType = static_cast<enuTR_TYPE>(type),
            .dA0 = a[0],
            .dA1 = a[1],
            .dA2 = a[2],
            .dB1 = b[1],
            .dB0 = b[0],
            .dB2 = b[2]};
}

AFFIN_PRM InverseOf(const AFFIN_PRM& record) {
    const Transformation transformation = WithAffine({}, record);
    if (Determinant(transformation) == 0.0) {
        throw RuntimeError(ErrorNumber::kDivisionByZero, "Division by zero");
    }
    return AffineOf(LinearInverse(transformation));
}

}  // namespace kv_tr
