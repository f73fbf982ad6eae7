// The display names of the transformation types.
#include "kv_tr/model/type_name.h"

#include <array>

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
static_assert(kNationalNames.size() ==
              NumberOf(Type::kLastNational) - NumberOf(Type::kFirstNational) + 1);

}  // namespace

std::string TypeName(Type type, const TextLookup& texts) {
    if (IsNational(type)) {
        return kNationalNames[static_cast<std::size_t>(NumberOf(type) -
                                                       NumberOf(Type::kFirstNational))];
    }
    switch (type) {
        case Type::kFathomToMetre: return texts(115);
        case Type::kMetreToFathom: return texts(116);
        case Type::kHelmert: return texts(117);
        case Type::kAffine: return texts(118);
        case Type::kHelmert3: return texts(119);
        case Type::kAffine5: return texts(120);
        case Type::kBilinear: return texts(121);
        case Type::kPolynomial1:
        case Type::kPolynomial2:
        case Type::kPolynomial3:
        case Type::kPolynomial4:
        case Type::kPolynomial5: return std::to_string(NumberOf(type)) + texts(122);
        default: return texts(141);
    }
}

}  // namespace kv_tr
