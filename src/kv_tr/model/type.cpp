// What each transformation type needs and how a type is lowered.
#include "kv_tr/model/type.h"

namespace kv_tr {

int MinimumPoints(Type type) {
    switch (type) {
        case Type::kHelmert:
        case Type::kHelmert3: return 2;
        case Type::kAffine:
        case Type::kAffine5: return 3;
        default: return IsPolynomial(type) ? TermCount(type) : 21;
    }
}

std::optional<Type> StepDown(Type type) {
    switch (type) {
        case Type::kAffine5:
        case Type::kHelmert3:
        case Type::kAffine:
        case Type::kPolynomial1: return Type::kHelmert;
        case Type::kBilinear: return Type::kPolynomial1;
        case Type::kPolynomial2: return Type::kBilinear;
        case Type::kPolynomial3: return Type::kPolynomial2;
        case Type::kPolynomial4: return Type::kPolynomial3;
        case Type::kPolynomial5: return Type::kPolynomial4;
        default:
            return type >= Type::kFirstNational ? std::optional(Type::kPolynomial4) : std::nullopt;
    }
}

}  // namespace kv_tr
