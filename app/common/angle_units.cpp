// The units that directions are typed and shown in.
#include "common/angle_units.h"

#include <array>
#include <numbers>

#include "support/number_text.h"

namespace kv_tr::host {
namespace {

constexpr std::array kUnits{AngleUnit{"rad", std::numbers::pi, 9}, AngleUnit{"deg", 180.0, 7},
                            AngleUnit{"gon", 200.0, 7}};

}  // namespace

std::span<const AngleUnit> AngleUnits() { return kUnits; }

std::string TransformedDirection(const clsTr& transformation, double direction,
                                 const AngleUnit& unit, PlanePoint point, double length) {
    double image = 0.0;
    transformation.TrAngle(direction * transformation.PI / unit.perHalfTurn, image, point.first,
                           point.second, length);
    return FormatFixed(image * unit.perHalfTurn / transformation.PI, unit.decimals, 0);
}

}  // namespace kv_tr::host
