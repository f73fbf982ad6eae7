// The transformation types and the published records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "kv_tr/model/point.h"
#include "kv_tr/published/bool16.h"

namespace kv_tr {

/// The type of a plane transformation. 7 to 9 are unused.
enum enuTR_TYPE : std::int32_t {
    TR_METER_OL = -5,   ///< metre to fathom
    TR_OL_METER = -4,   ///< fathom to metre
    TR_AFFIN_5 = -3,    ///< two scales, one rotation, two shifts
    TR_HELMERT_3 = -2,  ///< one rotation, two shifts, scale 1
    TR_AFFIN = -1,
    TR_HELMERT = 0,
    TR_POLI_1 = 1,
    TR_POLI_2 = 2,
    TR_POLI_3 = 3,
    TR_POLI_4 = 4,
    TR_POLI_5 = 5,
    TR_BILINEAR = 6,
    // Between the Hungarian projection systems.
    TR_STG_HER = 10,
    TR_STG_HKR = 11,
    TR_STG_HDR = 12,
    TR_HER_STG = 13,
    TR_HKR_STG = 14,
    TR_HDR_STG = 15,
    TR_HER_HKR = 16,
    TR_HKR_HER = 17,
    TR_HDR_HKR = 18,
    TR_HKR_HDR = 19,
    TR_BOV_EOV = 20,
    TR_EOV_BOV = 21,
    TR_BOV_HKR = 22,
    TR_HKR_BOV = 23,
    TR_STG_BOV = 24,
    TR_BOV_STG = 25,
    TR_STG_EOV_10e = 26,
    TR_HER_EOV_10e = 27,
    TR_HKR_EOV_10e = 28,
    TR_HDR_EOV_10e = 29,
    TR_EOV_STG_10e = 30,
    TR_EOV_HER_10e = 31,
    TR_EOV_HKR_10e = 32,
    TR_EOV_HDR_10e = 33,
};

// The two parameter records cross the component's interface as memory blocks: their fields are
// packed to 4 bytes, so a double may lie at an address that is no multiple of 8. Copy fields,
// never bind a reference to one; coefficients.h gives them as arrays.
#pragma pack(push, 4)

/// The parameters of a transformation; docs/mathematics.md says what they multiply.
struct TR_PRM {
    enuTR_TYPE eType = TR_HELMERT;
    double dA0 = 0, dA1 = 0, dA2 = 0, dA3 = 0, dA4 = 0, dA5 = 0, dA6 = 0, dA7 = 0, dA8 = 0, dA9 = 0,
           dA10 = 0, dA11 = 0, dA12 = 0, dA13 = 0, dA14 = 0, dA15 = 0, dA16 = 0, dA17 = 0, dA18 = 0,
           dA19 = 0, dA20 = 0, dA21 = 0;
    double dB0 = 0, dB1 = 0, dB2 = 0, dB3 = 0, dB4 = 0, dB5 = 0, dB6 = 0, dB7 = 0, dB8 = 0, dB9 = 0,
           dB10 = 0, dB11 = 0, dB12 = 0, dB13 = 0, dB14 = 0, dB15 = 0, dB16 = 0, dB17 = 0, dB18 = 0,
           dB19 = 0, dB20 = 0, dB21 = 0;
};

/// A record of the six-parameter family. dB1 stands before dB0, deliberately.
struct AFFIN_PRM {
    enuTR_TYPE eType = TR_HELMERT;
    double dA0 = 0, dA1 = 0, dA2 = 0, dB1 = 0, dB0 = 0, dB2 = 0;
};

#pragma pack(pop)

static_assert(sizeof(TR_PRM) == 4 + 44 * 8 && alignof(TR_PRM) == 4);
static_assert(offsetof(TR_PRM, dA0) == 4 && offsetof(TR_PRM, dB0) == 4 + 22 * 8);
static_assert(sizeof(AFFIN_PRM) == 4 + 6 * 8 && alignof(AFFIN_PRM) == 4);
static_assert(offsetof(AFFIN_PRM, dB1) + 8 == offsetof(AFFIN_PRM, dB0));

/// A control point: one point in the source and in the destination system, coordinates in metres.
/// The fields named X hold the first coordinate, which formulas, listings and graphs call Y.
struct typeXYs4Tr {
    std::string sId{};
    double dXsour = 0;
    double dYsour = 0;
    double dXdest = 0;
    double dYdest = 0;
    double dXerr = 0;  ///< residuals of the last fit, computed minus measured
    double dYerr = 0;
    Bool16 bNotUsed{};  ///< excluded from the fit
};

using PlanePoint = Point;

}  // namespace kv_tr
