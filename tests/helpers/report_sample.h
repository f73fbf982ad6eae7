// Reports of small adjustments.
#pragma once

#include "kv_tr/files/adjustment_report.h"

namespace kv_tr::test {

/// Points on a rough square, moved and turned, with errors of centimetres.
inline std::vector<ControlPoint> RoughPoints(std::size_t count, const std::string& id = "P") {
    std::vector<ControlPoint> points;
    for (std::size_t i = 0; i < count; ++i) {
        const double first = static_cast<double>(i * 617 % 997);
        const double second = static_cast<double>(i * 389 % 1009);
        const double error = 0.01 * static_cast<double>(i * i % 7);
        points.push_back(
            {id + std::to_string(i),
             {600000 + first, 200000 + second},
             {100 + first - 0.002 * second + error, 50 + second + 0.002 * first - error * error}});
    }
    return points;
}

/// The report of a fit, of which nobody knows a standard deviation.
inline Report ReportFor(std::span<const ControlPoint> points, Type type,
                        std::int32_t language = kEnglish, NumberStyle style = {}) {
    Adjustment adjustment(points, type);
    const FitOutcome outcome = adjustment.Fit();
    const AssessmentOptions options;
    const Assessment assessment = Assess(points, type, options);
    const TypeAdvice advice = Advise(points, options);
    return ReportOf({.adjustment = adjustment,
                     .assessment = assessment,
                     .advice = advice,
                     .options = options,
                     .outcome = outcome,
                     .limit = 0.05,
                     .files = {{"points<1>.dat", "abc123"}},
                     .date = "2026-05-31",
                     .version = "program 7"},
                    TextsIn(language), style);
}

}  // namespace kv_tr::test
