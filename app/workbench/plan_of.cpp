// The points of a document as a plan.
#include "workbench/plan_of.h"

#include <cmath>
#include <utility>

#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/model/distortion.h"
#include "kv_tr/model/hull.h"
#include "kv_tr/model/inverse.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

PlanStanding StandingOf(PointsView::Mark mark) {
    switch (mark) {
        case PointsView::Mark::kBeyondLimit: return PlanStanding::kOverLimit;
        case PointsView::Mark::kSuspect: return PlanStanding::kSuspect;
        default: return PlanStanding::kGood;
    }
}

/// The name of the coordinate that runs along a direction of the plan, and its sense.
PlanAxis AxisAlong(AxisMapping axes, Point direction) {
    const Point along = FromMap(axes, direction);
    const bool isFirst = along.first != 0;
    return {.name = isFirst ? "Y" : "X", .isReversed = along.first + along.second < 0};
}

/// The scale of a fit at places of the plan, parts per million from 1.
std::function<double(Point)> ScaleOf(const Transformation& fit, AxisMapping axes) {
    const auto inverse = ExactInverse::Of(fit);
    if (!inverse) return {};
    return [inverse = *inverse, fit, axes](Point place) {
        const SourcePoint source = inverse.Apply(FromMap(axes, place));
        return source.Found() ? (MeanScaleAt(fit, source.point) - 1.0) * 1e6 : kUndefined;
    };
}

std::vector<PlanEllipse> EllipsesOf(Document& document, AxisMapping axes) {
    constexpr double kProbability = 0.95;
    const Adjustment& adjustment = document.Adjusted();
    if (adjustment.Check().undetermined) return {};
    FindingsCache& findings = document.Findings();
    const int redundancy = findings.Assessed().redundancy;
    if (redundancy <= 0) return {};
    const double factor = ConfidenceFactor(kProbability, redundancy);
    std::vector<Point> sources;
    for (const ControlPoint& point : document.Points()) sources.push_back(point.source);
    const PointPrecision precision(
        AdjustedModel(adjustment.Points(), adjustment.FitType(), findings.Options().sigmas));
    std::vector<PlanEllipse> ellipses;
    for (const PointPrecision::Covariance& covariance : precision.At(sources)) {
        const double direction = covariance.Direction();
        const Point major = OnMap(axes, {std::cos(direction), std::sin(direction)});
        ellipses.push_back({.semiMajor = factor * covariance.Greatest(),
                            .semiMinor = factor * covariance.Least(),
                            .bearing = std::atan2(major.first, major.second)});
    }
    return ellipses;
}

}  // namespace

PlanData PlanOf(Document& document, bool withEllipses) {
    const AxisMapping axes = document.Current().destination.axes;
    PlanData data{
        .right = AxisAlong(axes, {1, 0}), .up = AxisAlong(axes, {0, 1}), .limit = document.Limit()};
    const bool hasFit = document.HasFit();
    std::vector<Point> used;
    data.pairs.reserve(document.Count());
    for (std::size_t place = 0; place < document.Count(); ++place) {
        const ControlPoint& point = document.PointAt(place);
        const Point at = OnMap(axes, point.destination);
        const Residual residual =
            hasFit ? document.Adjusted().Residuals()[place] : Residual{kUndefined, kUndefined};
        const Point vector = OnMap(axes, {residual.first, residual.second});
        if (point.used) used.push_back(at);
        data.pairs.push_back({.place = at,
                              .residual = {vector.first, vector.second},
                              .isUsed = point.used,
                              .standing = StandingOf(MarkAt(document, place)),
                              .id = point.id});
    }
    data.hull = ConvexHull(used);
    if (hasFit && withEllipses) data.ellipses = EllipsesOf(document, axes);
    if (hasFit) data.scalePpm = ScaleOf(document.Adjusted().Result(), axes);
    return data;
}

PlanWords WordsOfPlan(const Document& document) {
    PlanWords words{.title = Said(Phrase::kPlanTitle),
                    .good = Said(Phrase::kGood),
                    .overLimit = Said(Phrase::kOverLimit),
                    .suspect = Said(Phrase::kSuspect),
                    .excluded = Said(Phrase::kExcluded),
                    .shown = Said(Phrase::kShown),
                    .residuals = Said(Phrase::kResiduals),
                    .cut = Said(Phrase::kCut),
                    .hull = Said(Phrase::kHull),
                    .ellipses = Said(Phrase::kEllipses) + ", 95 %",
                    .distortion = Said(Phrase::kIsolines),
                    .numbers = ComponentNumberStyle()};
    words.notes.push_back(TypeName(document.Current().type, ComponentTexts()));
    for (const Origin& origin : document.Current().origins) words.notes.push_back(origin.file);
    return words;
}

Point DestinationOf(const Document& document, Point onPlan) {
    return FromMap(document.Current().destination.axes, onPlan);
}

}  // namespace kv_tr::workbench
