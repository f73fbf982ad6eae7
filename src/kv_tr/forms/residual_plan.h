// The plan of the control points on a surface: its scale, marks, labels, picking, and its page.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/forms/change_event.h"
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/forms/residual_graph.h"

namespace kv_tr {

/// The residual graph of an adjustment on a surface whose size and scale it keeps; functions named
/// after the control PicBox are what happens to the surface. Units are those of a screen.
class ResidualPlan {
public:
    /// The adjustment, the error limit and the event outlive the plan.
    ResidualPlan(const Adjustment& adjustment, const double& limit, ChangeEvent& changed)
        : adjustment_(adjustment),
          limit_(limit),
          changed_(changed),
          forgetMarks_(changed.Subscribe([this] { marks_.reset(); })) {}

    /// Takes the size of the surface and computes the scale; a size that is too small changes
    /// neither.
    void Resize(double width, double height);
    /// Computes the scale from the points as they are now.
    void CalcScale4Pic();

    const GraphLabels& Labels() const { return labels_; }
    /// Shows or hides one of the labels.
    void ToggleLabel(bool GraphLabels::*label);

    /// The marks of all points as they were at the last change.
    const std::vector<GraphMark>& Marks() const;

    void PicBoxDblClick() { doubleClicked_ = true; }
    /// Whether a double click came before this release of the mouse button; each counts once.
    bool PicBoxMouseUp() { return std::exchange(doubleClicked_, false); }
    /// The point nearest to a place on the surface.
    std::optional<std::int32_t> NearestTo(double x, double y) const;

    /// Whether the points lie in an area that is wider than high.
    bool IsWide() const;
    /// One page of that size with title, type, statistics and graph.
    GraphPage Page(double width, double height) const;

private:
    const Adjustment& adjustment_;
    const double& limit_;
    ChangeEvent& changed_;
    double width_ = 0;
    double height_ = 0;
    GraphScale scale_;
    GraphLabels labels_;
    bool doubleClicked_ = false;
    mutable std::optional<std::vector<GraphMark>> marks_;  // made when they are asked for
    Subscription forgetMarks_;
};

}  // namespace kv_tr
