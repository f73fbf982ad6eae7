// Records of the six-parameter family.
#include "kv_tr/published/affine_record.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/published/errors.h"

namespace kv_tr {
namespace {

AFFIN_PRM Scaling(enuTR_TYPE type, double factor) {
    AFFIN_PRM record{.eType = type};
    record.dA1 = factor;
    record.dB2 = factor;
    return record;
}

}  // namespace

TR_PRM WithAffine(TR_PRM record, const AFFIN_PRM& affine) {
    record.eType = affine.eType;
    record.dA0 = affine.dA0;
    record.dA1 = affine.dA1;
    record.dA2 = affine.dA2;
    record.dB0 = affine.dB0;
    record.dB1 = affine.dB1;
    record.dB2 = affine.dB2;
    return record;
}

AFFIN_PRM AffineOf(const TR_PRM& record) {
    AFFIN_PRM affine{.eType = record.eType};
    affine.dA0 = record.dA0;
    affine.dA1 = record.dA1;
    affine.dA2 = record.dA2;
    affine.dB0 = record.dB0;
    affine.dB1 = record.dB1;
    affine.dB2 = record.dB2;
    return affine;
}

AFFIN_PRM InverseOf(const AFFIN_PRM& record) {
    const double d = record.dA1 * record.dB2 - record.dA2 * record.dB1;
    AFFIN_PRM inverse{.eType = record.eType};
    inverse.dA0 = Divide(record.dB0 * record.dA2 - record.dA0 * record.dB2, d);
    inverse.dA1 = record.dB2 / d;
    inverse.dA2 = -record.dA2 / d;
    inverse.dB0 = (record.dA0 * record.dB1 - record.dB0 * record.dA1) / d;
    inverse.dB1 = -record.dB1 / d;
    inverse.dB2 = record.dA1 / d;
    return inverse;
}

bool IsFinite(const AFFIN_PRM& record) {
    const double coefficients[] = {record.dA0, record.dA1, record.dA2,
                                   record.dB0, record.dB1, record.dB2};
    return std::ranges::all_of(coefficients, [](double value) { return std::isfinite(value); });
}

TR_PRM IdentityRecord() { return WithAffine({}, Scaling(TR_HELMERT, 1.0)); }

AFFIN_PRM FathomToMetre() { return Scaling(TR_OL_METER, 1.89648384); }

AFFIN_PRM MetreToFathom() { return Scaling(TR_METER_OL, 0.527291601); }

}  // namespace kv_tr
