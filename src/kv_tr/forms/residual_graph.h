// The plan of the control points as marks to be painted, without a toolkit.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/forms/colour.h"

namespace kv_tr {

/// Where destination coordinates lie on a surface, whose second axis runs downwards.
struct GraphScale {
    double metresPerUnit = 1;
    double originFirst = 0;   // at the left edge
    double originSecond = 0;  // at the top edge

    Point ToSurface(Point destination) const;
    Point ToDestination(Point surface) const;
};

/// The scale at which all pairs fit on a surface. Its margins are a tenth of each axis's own range
/// on either side, as users know their plans: the axis that sets the scale is centred, the other
/// one begins at the left or upper edge. Without any extent the scale is 1 and the plan is in the
/// middle.
GraphScale ScaleFor(const Adjustment& adjustment, double width, double height);

/// Which texts stand at the corners of the crosses.
struct GraphLabels {
    bool identifier = true;
    bool first = false;
    bool second = false;
    bool total = false;
};

/// The arms of a cross reach this many units to each side.
inline constexpr double kCrossArm = 5;

/// The texts of a cross begin and end this far to the side of it, so that two of them do not run
/// together.
inline constexpr double kLabelGap = 3;

/// A cross with its texts, each at the corner that its place names; empty ones are not shown.
struct GraphMark {
    enum Corner { kUpperLeft, kLowerLeft, kUpperRight, kLowerRight };

    Point place;
    Colour colour;
    bool bold = false;
    std::array<std::string, 4> labels{};  // by corner
};

/// A mark for every pair, in their order. Black: excluded; blue: within the limit; red and bold:
/// equal to it, beyond it or no number. Pairs without a place on the surface have no mark.
std::vector<GraphMark> GraphMarks(const Adjustment& adjustment, double limit,
                                  const GraphScale& scale, const GraphLabels& labels);

/// The pair nearest to a destination point, the first of equally near ones; none beyond
/// 10^10 metres.
std::optional<std::int32_t> NearestPair(std::span<const ControlPoint> points, Point destination);

}  // namespace kv_tr
