// A picture below a plan, such as a scanned map.
#pragma once

#include <QImage>
#include <QTransform>
#include <optional>
#include <string>

#include "kv_tr/forms/plan_view.h"

class QPainter;

namespace kv_tr {

struct PlanBackground {
    QImage image;
    QTransform toPlan;  ///< from pixels, counted from the corner of the first one, to metres
};

/// A picture that Qt can read, placed by the world file beside it (.pgw, .jgw, .tfw, .wld, ...);
/// nothing where one of both is missing or damaged.
std::optional<PlanBackground> ReadBackground(const std::string& fileName);

/// Paints the part that is in view, pale enough for what is painted over it.
void PaintBackground(QPainter& painter, const PlanBackground& background, const PlanView& view);

}  // namespace kv_tr
