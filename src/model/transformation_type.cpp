// What each transformation type needs and how a type is lowered.
#include "model/transformation_type.h"

namespace kv_tr {

std::int32_t MinimumPoints(enuTR_TYPE type) {
    switch (type) {
        case TR_HELMERT:
        case TR_HELMERT_3: return 2;
        case TR_AFFIN:
        case TR_AFFIN_5: return 3;
        default: return IsPolynomial(type) ? TermCount(type) : 21;
    }
}

std::optional<enuTR_TYPE> StepDown(enuTR_TYPE type) {
    switch (type) {
        case TR_AFFIN_5:
        case TR_HELMERT_3:
        case TR_AFFIN:
        case TR_POLI_1: return TR_HELMERT;
        case TR_BILINEAR: return TR_POLI_1;
        case TR_POLI_2: return TR_BILINEAR;
        case TR_POLI_3: return TR_POLI_2;
        case TR_POLI_4: return TR_POLI_3;
        case TR_POLI_5: return TR_POLI_4;
        default: return type >= TR_STG_HER ? std::optional(TR_POLI_4) : std::nullopt;
    }
}

}  // namespace kv_tr
