// Which part of the plane a plan shows.
#include "kv_tr/forms/plan_view.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kv_tr {

PlanView PlanView::Moved(double right, double down) const {
    PlanView moved = *this;
    moved.centre = ToPlan({width / 2 - right, height / 2 - down});
    return moved;
}

PlanView PlanView::Zoomed(double factor, Point about) const {
    PlanView zoomed = *this;
    zoomed.metresPerUnit /= factor;
    const Point now = zoomed.ToSurface(ToPlan(about));
    return zoomed.Moved(about.first - now.first, about.second - now.second);
}

PlanView PlanView::Resized(double newWidth, double newHeight) const {
    PlanView resized = *this;
    resized.width = newWidth;
    resized.height = newHeight;
    return resized;
}

PlanView ViewOf(const std::optional<PlanExtent>& extent, double width, double height) {
    const auto [least, greatest] = extent.value_or(PlanExtent{});
    PlanView view{.centre = {std::midpoint(least.first, greatest.first),
                             std::midpoint(least.second, greatest.second)},
                  .width = width,
                  .height = height};
    const double margin = std::min({45.0, width / 8, height / 8});
    const double inner[] = {std::max(1.0, width - 2 * margin), std::max(1.0, height - 2 * margin)};
    // Divided before they are subtracted, since the range may be beyond that of numbers.
    const double scale = std::max(greatest.first / inner[0] - least.first / inner[0],
                                  greatest.second / inner[1] - least.second / inner[1]);
    if (scale > 0 && std::isfinite(scale)) view.metresPerUnit = scale;
    return view;
}

std::optional<PlanLines::Segment> Clipped(PlanLines::Segment segment, const PlanRect& rect) {
    const Point from = segment.from;
    const Point to = segment.to;
    const Point by{to.first - from.first, to.second - from.second};
    double begin = 0;
    double end = 1;
    // Each border of the rectangle leaves the part of the segment where by * part <= room.
    const auto cut = [&](double along, double room) {
        if (along == 0) return room >= 0;
        const double part = room / along;
        if (along > 0) {
            end = std::min(end, part);
        } else {
            begin = std::max(begin, part);
        }
        return begin <= end;
    };
    const bool isInside =
        cut(-by.first, from.first - rect.left) && cut(by.first, rect.right - from.first) &&
        cut(-by.second, from.second - rect.top) && cut(by.second, rect.bottom - from.second);
    const auto at = [&](double part) {
        return Point{from.first + part * by.first, from.second + part * by.second};
    };
    const PlanLines::Segment clipped{begin == 0 ? from : at(begin), end == 1 ? to : at(end)};
    if (!isInside || !std::isfinite(clipped.from.first + clipped.from.second + clipped.to.first +
                                    clipped.to.second)) {
        return {};
    }
    return clipped;
}

}  // namespace kv_tr
