// The report of an adjustment, which a surveyor signs.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/analysis/assessment.h"
#include "kv_tr/analysis/type_advice.h"
#include "kv_tr/files/report.h"
#include "kv_tr/fit/adjustment.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// A file that an adjustment comes from.
struct ReportFile {
    std::string name;
    std::string checksum;  ///< SHA-256; empty where it is not known
};

/// What a report is about: the last fit of an adjustment, and what was found out about that fit
/// with the options. The date and the version are told as they are given.
struct ReportSubject {
    const Adjustment& adjustment;
    const Assessment& assessment;  ///< of all points of the adjustment and the type fitted
    const TypeAdvice& advice;
    const AssessmentOptions& options;
    FitOutcome outcome{};
    Solution solution = Solution::kDocumented;
    std::optional<double> limit{};  ///< residuals that reach it are marked, metres
    std::vector<ReportFile> files{};
    std::string date{};     ///< "2026-05-31"
    std::string version{};  ///< of the program, with its name
    /// Why points are excluded: a note a point, empty where there is none, or no notes at all; and
    /// what the column of the notes is called.
    std::span<const std::string> notes{};
    std::string noteHeading{};
};

/// The report. The same subject gives the same report.
Report ReportOf(const ReportSubject& subject, const TextLookup& texts, NumberStyle style = {});

/// Which type is advised and what that gains, in a sentence or two.
std::string DescribeAdvice(const TypeAdvice& advice, const TextLookup& texts,
                           NumberStyle style = {});

}  // namespace kv_tr
