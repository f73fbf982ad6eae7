// The reports that adjust writes.
#include "cli/report.h"

#include <CLI/CLI.hpp>

#include "cli/program.h"
#include "kv_tr/forms/save_report.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr::cli {
namespace {

std::string CheckDate(const std::string& text) {
    return IsCalendarDay(text) ? "" : Translated(Text::kReportBadDate, {Excerpt(text)});
}

}  // namespace

void AddReportOptions(CLI::App& command, ReportOptions& options) {
    command.add_option("--report", options.files, Translated(Text::kReportOption))
        ->type_name("FILE")
        ->allow_extra_args(false)
        ->check([](const std::string& name) -> std::string {
            if (name.starts_with("--")) throw CLI::ArgumentMismatch("--report: " + name);
            return ComplaintOfReportName(name, MakerOfPdf() != nullptr, Excerpt(name));
        });
    command.add_option("--report-date", options.date, Translated(Text::kReportDateOption))
        ->type_name("DATE")
        ->check(CheckDate);
}

bool SaveReports(
    const ReportWork& work, const ReportOptions& options,
    const std::function<bool(const std::string&, const std::function<bool()>&)>& save) {
    if (options.files.empty()) return true;
    const std::string date = options.date.empty() ? DayOfReportOrMessage() : options.date;
    if (date.empty()) return false;
    const TypeAdvice advice = work.findings.advice
                                  ? *work.findings.advice
                                  : Advise(work.adjustment.Points(), work.findings.options);
    std::vector<ReportFile> files;
    for (const std::string& name : work.files) files.push_back(ReportFileOf(PointSourceOf(name)));
    const Report report = ReportOf({.adjustment = work.adjustment,
                                    .assessment = work.findings.assessment,
                                    .advice = advice,
                                    .options = work.findings.options,
                                    .outcome = work.findings.outcome,
                                    .solution = work.solution,
                                    .limit = work.limit,
                                    .files = std::move(files),
                                    .date = date,
                                    .version = ReportingProgram()},
                                   ComponentTexts(), ComponentNumberStyle());
    bool saved = true;
    for (const std::string& name : options.files) {
        saved &= save(name, [&] { return SaveReport(report, name, MakerOfPdf()); });
    }
    return saved;
}

}  // namespace kv_tr::cli
