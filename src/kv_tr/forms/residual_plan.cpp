// The plan of the control points on a surface: its scale, marks, labels, picking, and its page.
#include "kv_tr/forms/residual_plan.h"

namespace kv_tr {

void ResidualPlan::Resize(double width, double height) {
    constexpr double kLeastSize = 13;
    if (width < kLeastSize || height < kLeastSize) return;
    width_ = width;
    height_ = height;
    CalcScale4Pic();
}

void ResidualPlan::CalcScale4Pic() {
    scale_ = ScaleFor(adjustment_, width_, height_);
    marks_.reset();
}

void ResidualPlan::ToggleLabel(bool GraphLabels::*label) {
    labels_.*label = !(labels_.*label);
    changed_.Raise();
}

const std::vector<GraphMark>& ResidualPlan::Marks() const {
    if (!marks_) marks_ = GraphMarks(adjustment_, limit_, scale_, labels_);
    return *marks_;
}

std::optional<std::int32_t> ResidualPlan::NearestTo(double x, double y) const {
    return NearestPair(adjustment_.Points(), scale_.ToDestination({x, y}));
}

bool ResidualPlan::IsWide() const {
    const auto [least, greatest] = adjustment_.DestinationExtent().value_or(Extent{});
    return greatest.first - least.first > greatest.second - least.second;
}

GraphPage ResidualPlan::Page(double width, double height) const {
    return PageOf(adjustment_, limit_, labels_, width, height);
}

}  // namespace kv_tr
