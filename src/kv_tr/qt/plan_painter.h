// Painting plans with Qt.
#pragma once

#include "kv_tr/forms/plan_picture.h"

class QPainter;

namespace kv_tr {

/// Paints a plan on a background of its paper; one unit of the plan is one of the painter's. Many
/// equal symbols are copied from one image where pixels are what counts.
void PaintPlan(QPainter& painter, const PlanPicture& picture, PlanPaper paper);

}  // namespace kv_tr
