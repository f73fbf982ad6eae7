// What is known about the last fit of an adjustment, computed when something shows it.
#pragma once

#include <optional>
#include <vector>

#include "kv_tr/analysis/warnings.h"
#include "kv_tr/fit/adjustment.h"

namespace kv_tr {

/// Assessment, advice and warnings of the last fit. Each is computed when it is asked for first and
/// kept until Forget is called, which whoever fits does after each fit.
class FindingsCache {
public:
    /// The adjustment outlives this object.
    explicit FindingsCache(const Adjustment& adjustment) : adjustment_(adjustment) {}

    const Adjustment& Fitted() const { return adjustment_; }
    /// Forgets what is known, and takes what is known beforehand of the fit after that.
    void Forget(AssessmentOptions options = {});
    const AssessmentOptions& Options() const { return options_; }

    /// Not determined when the points do not determine the type: no figure is defined then.
    const Assessment& Assessed();
    /// Whether Assessed would compute nothing.
    bool IsAssessed() const { return assessment_.has_value(); }
    const TypeAdvice& Advised();
    /// Includes those of the assessment where somebody has asked for that, and always when no more
    /// than kAssessedPoints points are in use; those of the advice where somebody has asked for it.
    const std::vector<Warning>& Warnings();
    /// The figures of a point by its index among all points; a null pointer where there are none.
    const PointAssessment* Of(std::size_t index);

    /// With more points in use the warnings alone are not worth waiting for the assessment.
    static constexpr std::size_t kAssessedPoints = 5000;

    /// How often each has been computed.
    struct Counts {
        int assessments = 0;
        int advices = 0;
        int warnings = 0;
    };
    const Counts& Computed() const { return computed_; }

private:
    const Adjustment& adjustment_;
    AssessmentOptions options_;
    std::optional<Assessment> assessment_;
    std::vector<const PointAssessment*> points_;  // of all points
    std::optional<TypeAdvice> advice_;
    std::optional<std::vector<Warning>> warnings_;
    Counts computed_;
};

}  // namespace kv_tr
