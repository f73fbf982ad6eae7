// The units that directions are typed and shown in.
#include "common/angle_units.h"

#include <array>
#include <cmath>
#include <numbers>

#include "kv_tr/model/elementary.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/map_direction.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr::app {
namespace {

constexpr std::array kUnits{AngleUnit{"rad", std::numbers::pi, 9}, AngleUnit{"deg", 180.0, 7},
                            AngleUnit{"gon", 200.0, 7}};

/// The distance of the floats around a number.
double Spacing(double value) {
    const auto single = static_cast<float>(std::abs(value));
    return std::nextafter(single, HUGE_VALF) - single;
}

}  // namespace

std::span<const AngleUnit> AngleUnits() { return kUnits; }

std::string TransformedDirection(const Transformation& transformation, double direction,
                                 const AngleUnit& unit, Point point, double length) {
    const AngleConstants angles;
    const double image = MapDirection(transformation, direction * angles.pi / unit.perHalfTurn,
                                      point, length, angles);
    if (!std::isfinite(image)) return {};
    const auto text = [&unit](double value) { return FormatFixed(value, unit.decimals, 0); };
    const std::string shown = text(image * unit.perHalfTurn / angles.pi);
    return shown == text(2.0 * unit.perHalfTurn) ? text(0.0) : shown;  // when rounded to it
}

std::string DirectionUncertainty(const Transformation& transformation, const AngleUnit& unit,
                                 Point point, double length) {
    const Point image = transformation.Apply(point);
    // The half spacing of floats for each of the two points is a whole one for the difference.
    const double rounding = Hypotenuse(Spacing(image.first), Spacing(image.second));
    return FormatFixed(rounding / std::abs(length) * unit.perHalfTurn / AngleConstants{}.pi,
                       static_cast<std::uint8_t>(unit.decimals - 2), 0);
}

}  // namespace kv_tr::app
