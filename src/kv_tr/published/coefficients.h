// A record's coefficients as two series, and back.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "kv_tr/model/transformation.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// The coefficients of a record by index: a[k] is dA<k>, b[k] is dB<k>.
struct Coefficients {
    std::array<double, 22> a{};
    std::array<double, 22> b{};
};

inline Coefficients CoefficientsOf(const TR_PRM& record) {
    const auto* bytes = reinterpret_cast<const std::byte*>(&record);
    Coefficients coefficients;
    std::memcpy(&coefficients.a, bytes + offsetof(TR_PRM, dA0), sizeof coefficients.a);
    std::memcpy(&coefficients.b, bytes + offsetof(TR_PRM, dB0), sizeof coefficients.b);
    return coefficients;
}

inline TR_PRM MakeRecord(enuTR_TYPE type, const Coefficients& coefficients) {
    TR_PRM record;
    record.eType = type;
    auto* bytes = reinterpret_cast<std::byte*>(&record);
    std::memcpy(bytes + offsetof(TR_PRM, dA0), &coefficients.a, sizeof coefficients.a);
    std::memcpy(bytes + offsetof(TR_PRM, dB0), &coefficients.b, sizeof coefficients.b);
    return record;
}

/// What a record means.
inline Transformation TransformationOf(const TR_PRM& record) {
    const auto [a, b] = CoefficientsOf(record);
    return {.type = static_cast<Type>(record.eType), .a = a, .b = b};
}

/// The published record of a transformation.
inline TR_PRM RecordOf(const Transformation& transformation) {
    return MakeRecord(static_cast<enuTR_TYPE>(transformation.type),
                      {transformation.a, transformation.b});
}

}  // namespace kv_tr
