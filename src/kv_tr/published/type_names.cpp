// The display names of the transformation types.
#include "kv_tr/published/type_names.h"

#include <array>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

constexpr std::array kNationalNames{
    "STG-HÉR transzformáció",
    "STG-HKR transzformáció",
    "STG-HDR transzformáció",
    "HÉR-STG transzformáció",
    "HKR-STG transzformáció",
    "HDR-STG transzformáció",
    "HÉR-HKR transzformáció",
    "HKR-HÉR transzformáció",
    "HDR-HKR transzformáció",
    "HKR-HDR transzformáció",
    "BOV-EOV (a Fővárosi Földhivatal állandói)",
    "EOV-BOV",
    "BOV-HKR (számított)",
    "HKR-BOV (számított)",
    "STG-BOV (számított)",
    "BOV-STG (számított)",
    "STG-EOV (országos)",
    "HÉR-EOV (országos)",
    "HKR-EOV (országos)",
    "HDR-EOV (országos)",
    "EOV-STG (országos)",
    "EOV-HÉR (országos)",
    "EOV-HKR (országos)",
    "EOV-HDR (országos)",
};
static_assert(kNationalNames.size() == TR_EOV_HDR_10e - TR_STG_HER + 1);

}  // namespace

std::string TypeName(enuTR_TYPE type) {
    if (type >= TR_STG_HER && type <= TR_EOV_HDR_10e) {
        return kNationalNames[static_cast<std::size_t>(type - TR_STG_HER)];
    }
    switch (type) {
        case TR_OL_METER: return GetMlString(115, "Öl-méter transzformáció");
        case TR_METER_OL: return GetMlString(116, "Méter-öl transzformáció");
        case TR_HELMERT: return GetMlString(117, "HELMERT transzformáció");
        case TR_AFFIN: return GetMlString(118, "Affin transzformáció");
        case TR_HELMERT_3: return GetMlString(119, "HELMERT(3i) transzformáció");
        case TR_AFFIN_5: return GetMlString(120, "Affin(5i) transzformáció");
        case TR_BILINEAR: return GetMlString(121, "Bilineáris (trapéz) transzformáció");
        case TR_POLI_1:
        case TR_POLI_2:
        case TR_POLI_3:
        case TR_POLI_4:
        case TR_POLI_5: return std::to_string(type) + GetMlString(122, ". fokú transzformáció");
        default: return GetMlString(141, "Hibás transzformáció típus!");
    }
}

}  // namespace kv_tr
