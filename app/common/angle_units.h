// The units that directions are typed and shown in.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "kv_tr/published/clsTr.h"

namespace kv_tr::host {

struct AngleUnit {
    std::string_view name;
    double perHalfTurn;
    std::uint8_t decimals;  // that show about the same angle
};
std::span<const AngleUnit> AngleUnits();

/// The direction's image at a point, taken over a length in metres, as text in the same unit.
std::string TransformedDirection(const clsTr& transformation, double direction,
                                 const AngleUnit& unit, PlanePoint point, double length);

/// How far that may be off because the image coordinates are rounded to single precision before
/// they are subtracted, as text in the unit: the greatest rounding over the length. It falls as
/// the length grows.
std::string DirectionUncertainty(const clsTr& transformation, const AngleUnit& unit,
                                 PlanePoint point, double length);

}  // namespace kv_tr::host
