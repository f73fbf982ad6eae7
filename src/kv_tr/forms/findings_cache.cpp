// What is known about the last fit of an adjustment, computed when something shows it.
#include "kv_tr/forms/findings_cache.h"

#include <utility>

namespace kv_tr {

void FindingsCache::Forget(AssessmentOptions options) {
    options_ = std::move(options);
    assessment_.reset();
    points_.clear();
    advice_.reset();
    warnings_.reset();
}

const Assessment& FindingsCache::Assessed() {
    if (assessment_) return *assessment_;
    const auto points = adjustment_.Points();
    assessment_.emplace();
    points_.assign(points.size(), nullptr);
    warnings_.reset();
    if (const TruthCheck& check = adjustment_.Check(); check.undetermined) {
        assessment_->type = ModelOf(adjustment_.FitType());
        assessment_->used = adjustment_.UsedCount();
        assessment_->unknowns = check.unknowns;
        assessment_->redundancy = check.redundancy;
        assessment_->sigma0Separate = assessment_->centroidSigma = {kUndefined, kUndefined};
        return *assessment_;
    }
    ++computed_.assessments;
    *assessment_ = Assess(points, adjustment_.FitType(), options_);
    for (const PointAssessment& point : assessment_->points) points_[point.index] = &point;
    return *assessment_;
}

const TypeAdvice& FindingsCache::Advised() {
    if (advice_) return *advice_;
    ++computed_.advices;
    advice_ = Advise(adjustment_.Points(), options_);
    warnings_.reset();
    return *advice_;
}

const std::vector<Warning>& FindingsCache::Warnings() {
    if (adjustment_.UsedCount() <= kAssessedPoints) Assessed();
    if (warnings_) return *warnings_;
    ++computed_.warnings;
    warnings_ = FindWarnings({.points = adjustment_.Points(),
                              .transformation = adjustment_.Result(),
                              .check = adjustment_.Check(),
                              .outcome = adjustment_.Outcome(),
                              .solution = adjustment_.FittedSolution(),
                              .assessment = assessment_ ? &*assessment_ : nullptr,
                              .advice = advice_ ? &*advice_ : nullptr});
    return *warnings_;
}

const PointAssessment* FindingsCache::Of(std::size_t index) {
    Assessed();
    return index < points_.size() ? points_[index] : nullptr;
}

}  // namespace kv_tr
