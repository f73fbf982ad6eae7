// What is known about the last fit of an engine, computed when something shows it.
#include "kv_tr/forms/findings_cache.h"

namespace kv_tr {

void FindingsCache::Forget() {
    assessment_.reset();
    points_.clear();
    advice_.reset();
    warnings_.reset();
}

const Assessment& FindingsCache::Assessed() {
    if (assessment_) return *assessment_;
    const auto points = engine_.Held().Points();
    assessment_.emplace();
    points_.assign(points.size(), nullptr);
    warnings_.reset();
    if (const TruthCheck& check = engine_.Truth(); check.undetermined) {
        assessment_->type = ModelOf(engine_.Held().FitType());
        assessment_->used = engine_.Held().UsedCount();
        assessment_->unknowns = check.unknowns;
        assessment_->redundancy = check.redundancy;
        assessment_->sigma0Separate = assessment_->centroidSigma = {kUndefined, kUndefined};
        return *assessment_;
    }
    ++computed_.assessments;
    *assessment_ = Assess(points, engine_.Held().FitType());
    for (const PointAssessment& point : assessment_->points) points_[point.index] = &point;
    return *assessment_;
}

const TypeAdvice& FindingsCache::Advised() {
    if (advice_) return *advice_;
    ++computed_.advices;
    advice_ = Advise(engine_.Held().Points());
    warnings_.reset();
    return *advice_;
}

const std::vector<Warning>& FindingsCache::Warnings() {
    const Adjustment& adjustment = engine_.Held();
    if (adjustment.UsedCount() <= kAssessedPoints) Assessed();
    if (warnings_) return *warnings_;
    ++computed_.warnings;
    warnings_ = FindWarnings({.points = adjustment.Points(),
                              .transformation = adjustment.Result(),
                              .check = engine_.Truth(),
                              .outcome = engine_.Outcome(),
                              .solution = engine_.Solution(),
                              .assessment = assessment_ ? &*assessment_ : nullptr,
                              .advice = advice_ ? &*advice_ : nullptr});
    return *warnings_;
}

const PointAssessment* FindingsCache::Of(std::size_t index) {
    Assessed();
    return index < points_.size() ? points_[index] : nullptr;
}

}  // namespace kv_tr
