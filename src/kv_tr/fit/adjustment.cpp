// What a user does with a set of control points.
#include "kv_tr/fit/adjustment.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "kv_tr/fit/fit_into.h"

namespace kv_tr {

void Adjustment::Append(std::span<const ControlPoint> points) {
    Add({points.begin(), points.end()});
}

void Adjustment::Assign(std::span<const ControlPoint> points) {
    std::vector<ControlPoint> assigned(points.begin(), points.end());
    points_.clear();
    residuals_.clear();
    excludedCount_ = 0;
    swapped_ = false;
    Add(std::move(assigned));
}

void Adjustment::Add(std::vector<ControlPoint> points) {
    if (points.empty()) return;
    if (points_.empty()) {
        sums_ = {};
        extent_.reset();
    }
    sums_.Add(points);
    means_ = sums_.Means();
    Widen(points);
    excludedCount_ +=
        static_cast<std::size_t>(std::ranges::count(points, false, &ControlPoint::used));
    points_.insert(points_.end(), std::make_move_iterator(points.begin()),
                   std::make_move_iterator(points.end()));
    residuals_.resize(points_.size());
}

void Adjustment::Widen(std::span<const ControlPoint> points) {
    for (const ControlPoint& point : points) {
        const Point image = point.destination;
        if (!extent_) extent_ = {image, image};
        auto& [least, greatest] = *extent_;
        least = {std::min(least.first, image.first), std::min(least.second, image.second)};
        greatest = {std::max(greatest.first, image.first), std::max(greatest.second, image.second)};
    }
}

void Adjustment::SumUp() {
    if (points_.empty()) return;
    sums_ = {};
    sums_.Add(points_);
    means_ = sums_.Means();
    extent_.reset();
    Widen(points_);
}

void Adjustment::Replace(std::size_t index, const ControlPoint& point) {
    excludedCount_ += points_[index].used ? 1 : 0;
    excludedCount_ -= point.used ? 1 : 0;
    points_[index] = point;
    SumUp();
}

bool Adjustment::Toggle(std::size_t index) {
    if (index >= points_.size()) return false;
    bool& used = points_[index].used;
    if (used && UsedCount() == 2) return false;
    used = !used;
    used ? --excludedCount_ : ++excludedCount_;
    return true;
}

void Adjustment::UseAll() {
    for (ControlPoint& point : points_) point.used = true;
    excludedCount_ = 0;
}

void Adjustment::RemoveExcluded() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < points_.size(); ++i) {
        if (!points_[i].used) continue;
        if (kept != i) points_[kept] = std::move(points_[i]);
        residuals_[kept++] = residuals_[i];
    }
    points_.resize(kept);
    residuals_.resize(kept);
    excludedCount_ = 0;
    SumUp();
}

void Adjustment::Swap() {
    swapped_ = !swapped_;
    for (ControlPoint& point : points_) std::swap(point.source, point.destination);
    sums_.Swap();
    std::swap(means_.source, means_.destination);
    if (points_.empty()) return;
    extent_.reset();
    Widen(points_);
}

bool Adjustment::IsEnoughFor(Type type) const {
    return UsedCount() >= static_cast<std::size_t>(MinimumPoints(type));
}

std::optional<Type> Adjustment::LowerType() {
    if (IsEnoughFor(type_)) return std::nullopt;
    const auto lower = StepDown(type_);
    if (lower) type_ = *lower;
    return lower;
}

FitOutcome Adjustment::Fit(const FitOptions& options) {
    Transformation fitted = result_;
    fitted.type = type_;
    const FitOutcome outcome = FitInto(fitted, points_, means_, options);
    if (!outcome.Computed()) return outcome;
    result_ = fitted;
    residuals_ = ResidualsOf(points_, result_);
    figures_ = StatisticsOf(points_, residuals_);
    check_ = CheckFit(points_, result_, residuals_);
    outcome_ = outcome;
    solution_ = options.solution;
    return outcome;
}

void Adjustment::SetResult(const Transformation& transformation) {
    result_ = transformation;
    type_ = transformation.type;
}

void Adjustment::SetLastResiduals(std::span<const Residual> residuals) {
    std::ranges::copy(residuals, residuals_.end() - std::ssize(residuals));
}

}  // namespace kv_tr
