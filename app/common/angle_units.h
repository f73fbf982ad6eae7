// The units that directions are typed and shown in.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "kv_tr/model/transformation.h"

namespace kv_tr::app {

struct AngleUnit {
    std::string_view name;
    double perHalfTurn;
    std::uint8_t decimals;  // that show about the same angle
};
std::span<const AngleUnit> AngleUnits();

/// The direction's image at a point, taken over a length in metres, as text in the same unit.
std::string TransformedDirection(const Transformation& transformation, double direction,
                                 const AngleUnit& unit, Point point, double length);

/// How far that may be off because the image coordinates are rounded to single precision before
/// they are subtracted, as text in the unit: the greatest rounding over the length. It falls as
/// the length grows.
std::string DirectionUncertainty(const Transformation& transformation, const AngleUnit& unit,
                                 Point point, double length);

}  // namespace kv_tr::app
