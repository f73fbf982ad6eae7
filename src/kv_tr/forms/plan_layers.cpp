// What a plan shows beneath its points: grid, hull, isolines of the distortion.
#include "kv_tr/forms/plan_layers.h"

#include <cmath>
#include <numeric>

#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

constexpr double kGridSpacing = 90;  // at least

/// The round coordinates between two places of an axis; none where coordinates are so great that
/// they cannot tell neighbouring lines apart.
std::vector<double> RoundBetween(double least, double greatest, double step) {
    constexpr double kMost = 100;
    std::vector<double> values;
    const double first = std::ceil(least / step);
    const double last = std::floor(greatest / step);
    const bool isExact = std::abs(first) < 1e15 && std::abs(last) < 1e15;
    if (!isExact || last - first > kMost) return values;
    for (double i = first; i <= last; ++i) values.push_back(i * step);
    return values;
}

void AddWhereFree(std::vector<PlanItem>& items, PlanRoom& room, PlanText text) {
    const PlanRect box = BoxOf(text);
    if (!room.IsFree(box)) return;
    room.Take(box);
    items.emplace_back(std::move(text));
}

}  // namespace

std::string RoundLengthText(double metres, NumberStyle style) {
    const auto text = [&](double value, const char* unit) {
        return FixedText(value, DecimalsOfRound(value), style) + unit;
    };
    if (metres < 1) return text(metres * 1000, " mm");
    return metres < 1000 ? text(metres, " m") : text(metres / 1000, " km");
}

void AddGrid(std::vector<PlanItem>& items, std::vector<PlanItem>& above, PlanRoom& room,
             const PlanView& view, const PlanData& data, NumberStyle style) {
    constexpr double kSize = 10;
    const double step = RoundAbove(kGridSpacing * view.metresPerUnit);
    const Point least = view.ToPlan({0, view.height});
    const Point greatest = view.ToPlan({view.width, 0});
    PlanLines lines{.ink = PlanInk::kFaint};
    std::vector<PlanText> labels;
    const auto label = [&](Point base, const PlanAxis& axis, double value) {
        labels.push_back(
            {.base = base,
             .text = FixedText(axis.isReversed ? -value : value, DecimalsOfRound(step), style),
             .ink = PlanInk::kCoordinate,
             .size = kSize});
    };
    for (const double value : RoundBetween(least.first, greatest.first, step)) {
        const double x = view.ToSurface({value, 0}).first;
        lines.segments.push_back({{x, 0}, {x, view.height}});
        label({x + 3, view.height - 4}, data.right, value);
    }
    for (const double value : RoundBetween(least.second, greatest.second, step)) {
        const double y = view.ToSurface({0, value}).second;
        lines.segments.push_back({{0, y}, {view.width, y}});
        label({3, y - 3}, data.up, value);
    }
    items.emplace_back(std::move(lines));
    for (PlanText& text : labels) AddWhereFree(above, room, std::move(text));
}

void AddHull(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
             const std::vector<Point>& hull) {
    PlanLines lines{.ink = PlanInk::kHull, .width = 1.2, .isDashed = true};
    for (std::size_t i = 0; i < hull.size(); ++i) {
        const auto segment = Clipped(
            {view.ToSurface(hull[i]), view.ToSurface(hull[(i + 1) % hull.size()])}, view.Frame());
        if (!segment) continue;
        lines.segments.push_back(*segment);
        room.TakeAlong(*segment);
    }
    items.emplace_back(std::move(lines));
}

void AddIsolines(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
                 const PlanIsolines& isolines, NumberStyle style) {
    for (const PlanIsolines::Level& level : isolines.levels) {
        PlanLines lines{.ink = PlanInk::kDistortion};
        for (const auto& [from, to] : level.segments) {
            const auto segment = Clipped({view.ToSurface(from), view.ToSurface(to)}, view.Frame());
            if (segment) lines.segments.push_back(*segment);
        }
        if (lines.segments.empty()) continue;
        const auto [from, to] = lines.segments[lines.segments.size() / 2];
        PlanText text{.base = {std::midpoint(from.first, to.first) + 3,
                               std::midpoint(from.second, to.second) - 3},
                      .text = FixedText(level.value, DecimalsOfRound(isolines.step), style),
                      .ink = PlanInk::kDistortion,
                      .size = 10};
        items.emplace_back(std::move(lines));
        AddWhereFree(items, room, std::move(text));
    }
}

}  // namespace kv_tr
