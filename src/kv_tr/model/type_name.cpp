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
        case Type::kFathomToMetre: return texts(Text::kFathomToMetreType);
        case Type::kMetreToFathom: return texts(Text::kMetreToFathomType);
        case Type::kHelmert: return texts(Text::kHelmertType);
        case Type::kAffine: return texts(Text::kAffineType);
        case Type::kHelmert3: return texts(Text::kHelmert3Type);
        case Type::kAffine5: return texts(Text::kAffine5Type);
        case Type::kBilinear: return texts(Text::kBilinearType);
        case Type::kPolynomial1:
        case Type::kPolynomial2:
        case Type::kPolynomial3:
        case Type::kPolynomial4:
        case Type::kPolynomial5:
            return std::to_string(NumberOf(type)) + texts(Text::kPolynomialTypeSuffix);
        default: return texts(Text::kBadType);
    }
}

}  // namespace kv_tr
