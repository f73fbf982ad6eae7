// What a plan of control points shows, and in which words, as values of its caller.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kv_tr/fit/statistics.h"
#include "kv_tr/model/point.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

/// What is known about a pair in use.
enum class PlanStanding { kGood, kOverLimit, kSuspect };

struct PlanPair {
    Point place;          ///< metres to the right and upwards on the plan
    Residual residual{};  ///< metres, in the same directions; may be no number
    bool isUsed = true;   ///< a pair that is not used counts as excluded, whatever its standing
    PlanStanding standing = PlanStanding::kGood;
    std::string id{};
};

/// An error ellipse around the place of a pair.
struct PlanEllipse {
    double semiMajor = 0;  ///< metres
    double semiMinor = 0;
    double bearing = 0;  ///< of the major axis, radians clockwise from the plan's upward direction
};

/// One of the two axes. Where a coordinate rises to the left or downwards, the axis is reversed:
/// places are then the negative coordinates.
struct PlanAxis {
    std::string name;
    bool isReversed = false;
};

struct PlanData {
    std::vector<PlanPair> pairs{};
    std::vector<Point> hull{};  ///< corners of the convex hull, in order
    PlanAxis right{"Y"};
    PlanAxis up{"X"};
    bool hasNorthArrow = false;           ///< instead of the two axes
    double limit = 0;                     ///< error limit in metres, for the legend; 0: none
    std::vector<PlanEllipse> ellipses{};  ///< one a pair, or none at all
    /// The distortion of lengths at a place, millionths; empty: not known.
    std::function<double(Point)> scalePpm{};
};

/// The words of legend, tool tips and pages, in the user's language.
struct PlanWords {
    std::string title{};               ///< of a page
    std::vector<std::string> notes{};  ///< lines below the title of a page
    std::string good{};
    std::string overLimit{};
    std::string suspect{};
    std::string excluded{};
    std::string shown{};       ///< before "1220 / 50000"
    std::string residuals{};   ///< beside the bar of the residual vectors
    std::string cut{};         ///< vectors that are longer than drawn
    std::string hull{};        ///< the hull of the control points
    std::string ellipses{};    ///< error ellipses, with their probability
    std::string distortion{};  ///< isolines of the scale, with their unit ppm
    std::string north{"N"};
    NumberStyle numbers{};
};

/// What is shown beside the points.
struct PlanOptions {
    bool showsVectors = true;
    bool showsLabels = true;
    bool showsHull = true;
    bool showsGrid = false;
    bool showsEllipses = false;
    bool showsDistortion = false;
    double vectorBar = 0;  ///< residual in metres that is drawn kVectorBar units long; 0: chosen

    bool operator==(const PlanOptions&) const = default;
};

/// The length of the bar beside which the scale of the vectors is told.
inline constexpr double kVectorBar = 60;

}  // namespace kv_tr
