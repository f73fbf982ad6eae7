// The legend of a plan: what its marks mean, its scale bars, its axes.
#pragma once

#include <vector>

#include "kv_tr/forms/plan_marks.h"

namespace kv_tr {

/// How high the strip of the legend is on a surface of some width. Depends on the data, the words
/// and the options, but on no view, so that zooming never changes the size of the plan.
double LegendHeight(const PlanIndex& index, const PlanWords& words, const PlanOptions& options,
                    double width);

/// What the legend tells about one picture.
struct LegendFigures {
    double metresPerUnit = 1;
    VectorScale vectors{};
    bool isAnyCut = false;
    std::size_t shown = 0;
};

/// Fills a strip whose upper left corner lies somewhere.
void AddLegend(std::vector<PlanItem>& items, const PlanIndex& index, const PlanWords& words,
               const PlanOptions& options, const LegendFigures& figures, Point corner,
               double width);

/// The two axes, or the arrow to the north, in the upper right corner of the frame.
void AddAxes(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
             const PlanData& data, const PlanWords& words);

}  // namespace kv_tr
