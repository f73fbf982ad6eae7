// What the fit does at a place: for the status line of a plan.
#include "workbench/place_info.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/model/distortion.h"
#include "kv_tr/model/hull.h"

namespace kv_tr::workbench {

/// False where there is no fit.
bool PlaceInfo::Prepare() {
    if (!document_.HasFit()) return false;
    if (prepared_ == document_.Version()) return true;
    prepared_ = document_.Version();
    precision_.reset();
    const Adjustment& adjustment = document_.Adjusted();
    inverse_ = ExactInverse::Of(adjustment.Result());
    if (!adjustment.Check().undetermined) {
        precision_.emplace(AdjustedModel(adjustment.Points(), adjustment.FitType(),
                                         document_.Findings().Options().sigmas));
    }
    return true;
}

std::optional<PlaceFigures> PlaceInfo::AtSource(Point source) {
    if (!Prepare()) return std::nullopt;
    const Transformation& transformation = document_.Adjusted().Result();
    PlaceFigures figures{.source = source, .image = transformation.Apply(source)};
    if (!std::isfinite(figures.image.first) || !std::isfinite(figures.image.second))
        return std::nullopt;
    figures.scale = MeanScaleAt(transformation, source);
    figures.rotation = DistortionAt(transformation, source).rotation;
    if (!precision_) return figures;
    const auto covariance = precision_->At(std::span(&source, 1)).front();
    figures.sigma = std::max(covariance.SigmaFirst(), covariance.SigmaSecond());
    figures.distanceOutside = DistanceOutside(precision_->Hull(), source);
    return figures;
}

std::optional<PlaceFigures> PlaceInfo::AtDestination(Point destination) {
    if (!Prepare() || !inverse_) return std::nullopt;
    const SourcePoint source = inverse_->Apply(destination);
    if (!source.Found()) return std::nullopt;
    return AtSource(source.point);
}

}  // namespace kv_tr::workbench
