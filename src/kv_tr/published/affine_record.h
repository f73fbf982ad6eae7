// Records of the six-parameter family.
#pragma once

#include "kv_tr/published/records.h"

namespace kv_tr {

/// A record with the type and the six coefficients of another, copied by name; the rest stays.
TR_PRM WithAffine(TR_PRM record, const AFFIN_PRM& affine);

/// The type and the six coefficients of a record, whatever its type.
AFFIN_PRM AffineOf(const TR_PRM& record);

/// The record that maps back; of the same type. Throws RuntimeError kDivisionByZero for a record
/// that maps the plane to a line or a point.
AFFIN_PRM InverseOf(const AFFIN_PRM& record);

/// Whether all coefficients are: the inverse of a record that hardly has one may overflow.
bool IsFinite(const AFFIN_PRM& record);

/// The identity, TR_HELMERT.
TR_PRM IdentityRecord();

/// Fathoms to metres, 1 fathom being 1.89648384 m.
AFFIN_PRM FathomToMetre();

/// Metres to fathoms. The factor is the reciprocal rounded to nine decimals, deliberately: there
/// and back is not exactly the identity.
AFFIN_PRM MetreToFathom();

}  // namespace kv_tr
