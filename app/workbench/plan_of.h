// The points of a document as a plan.
#pragma once

#include "kv_tr/forms/plan_data.h"
#include "workbench/points_view.h"

namespace kv_tr::workbench {

/// The pairs in the order of the document at their places in the destination system, which is
/// turned so that its axes point where the settings say: north is up. Error ellipses of the
/// transformed points, which hold the true places with a probability of 95 %, only when they are
/// wanted; none where the points do not determine them.
PlanData PlanOf(Document& document, bool withEllipses = false);

/// What the legend and the page of a plan say, in the current language.
PlanWords WordsOfPlan(const Document& document);

/// The destination coordinates of a place on the plan.
Point DestinationOf(const Document& document, Point onPlan);

}  // namespace kv_tr::workbench
