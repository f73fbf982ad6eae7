// What each published transformation type needs and how a type is lowered.
#pragma once

#include <cstdint>
#include <optional>

#include "kv_tr/model/type.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

constexpr Type TypeOf(enuTR_TYPE type) { return static_cast<Type>(type); }
constexpr enuTR_TYPE PublishedType(Type type) { return static_cast<enuTR_TYPE>(type); }

constexpr bool IsPolynomial(enuTR_TYPE type) { return IsPolynomial(TypeOf(type)); }
constexpr int TermCount(enuTR_TYPE type) { return TermCount(TypeOf(type)); }
inline std::int32_t MinimumPoints(enuTR_TYPE type) { return MinimumPoints(TypeOf(type)); }

}  // namespace kv_tr
