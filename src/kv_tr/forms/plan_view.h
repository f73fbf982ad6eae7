// Which part of the plane a plan shows.
#pragma once

#include <optional>

#include "kv_tr/forms/plan_picture.h"

namespace kv_tr {

/// The smallest upright rectangle around places.
struct PlanExtent {
    Point least;
    Point greatest;
};

/// Where places of the plane lie in a frame of some width and height, whose second axis runs
/// downwards.
struct PlanView {
    Point centre;  ///< the place in the middle of the frame
    double metresPerUnit = 1;
    double width = 0;
    double height = 0;

    Point ToSurface(Point place) const {
        return {width / 2 + (place.first - centre.first) / metresPerUnit,
                height / 2 - (place.second - centre.second) / metresPerUnit};
    }
    Point ToPlan(Point surface) const {
        return {centre.first + (surface.first - width / 2) * metresPerUnit,
                centre.second - (surface.second - height / 2) * metresPerUnit};
    }
    PlanRect Frame() const { return {0, 0, width, height}; }

    /// The view in which the plan has moved by so many units to the right and downwards.
    PlanView Moved(double right, double down) const;
    /// The view that shows everything so many times greater and leaves one place of the surface
    /// where it is.
    PlanView Zoomed(double factor, Point about) const;
    /// The view of a frame of another size with the same middle.
    PlanView Resized(double newWidth, double newHeight) const;

    bool operator==(const PlanView&) const = default;
};

/// The view that shows the whole extent with room around it for names. Without any extent a unit
/// is a metre.
PlanView ViewOf(const std::optional<PlanExtent>& extent, double width, double height);

/// The part of a segment that lies in a rectangle.
std::optional<PlanLines::Segment> Clipped(PlanLines::Segment segment, const PlanRect& rect);

}  // namespace kv_tr
