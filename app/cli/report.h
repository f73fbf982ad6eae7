// The reports that adjust writes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/findings.h"

namespace kv_tr::cli {

struct ReportOptions {
    std::vector<std::string> files;  // .html or .pdf
    std::string date;                // "2026-05-31"; otherwise today
};

void AddReportOptions(CLI::App& command, ReportOptions& options);

/// What the reports are about.
struct ReportWork {
    const Adjustment& adjustment;
    const Findings& findings;
    Solution solution;
    double limit;
    std::vector<std::string> files;  // of the points: one, or a list of each system
};

/// Saves each report with `save`, which takes a file name and what writes that file. False after
/// anything was reported.
bool SaveReports(const ReportWork& work, const ReportOptions& options,
                 const std::function<bool(const std::string&, const std::function<bool()>&)>& save);

}  // namespace kv_tr::cli
