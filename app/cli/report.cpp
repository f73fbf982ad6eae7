// The reports that adjust writes.
#include "cli/report.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cli/file_options.h"
#include "cli/program.h"
#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/files/report_html.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/replacing_file.h"
#include "kv_tr/text/sha256.h"
#ifdef KV_TR_PDF
#include "kv_tr/pdf/report_pdf.h"
#endif

namespace kv_tr::cli {
namespace {

#ifdef KV_TR_PDF
constexpr bool kHasPdf = true;
#else
constexpr bool kHasPdf = false;
#endif

std::string CheckReportName(const std::string& name) {
    if (HasExtension(name, "html")) return {};
    if (!HasExtension(name, "pdf")) return Translated(Text::kReportExtension, {Excerpt(name)});
    return kHasPdf ? "" : Translated(Text::kReportNoPdf, {Excerpt(name)});
}

std::string CheckDate(const std::string& text) {
    const auto digits = [&text](std::size_t first, std::size_t count) {
        int number = 0;
        for (const char c : text.substr(first, count)) {
            if (c < '0' || c > '9') return -1;
            number = 10 * number + (c - '0');
        }
        return number;
    };
    if (text.size() == 10 && text[4] == '-' && text[7] == '-' && digits(0, 4) > 0 &&
        digits(5, 2) > 0 && digits(8, 2) > 0) {
        const std::chrono::year_month_day day{
            std::chrono::year(digits(0, 4)),
            std::chrono::month(static_cast<unsigned>(digits(5, 2))),
            std::chrono::day(static_cast<unsigned>(digits(8, 2)))};
        if (day.ok()) return {};
    }
    return Translated(Text::kReportBadDate, {Excerpt(text)});
}

/// Today, or the day that SOURCE_DATE_EPOCH names, seconds since 1970, for builds that are to come
/// out the same again; empty after a value that is no such number was reported.
std::string Today() {
    std::time_t now = std::time(nullptr);
    const char* const epoch = std::getenv("SOURCE_DATE_EPOCH");
    const bool isSet = epoch != nullptr && *epoch != '\0';
    if (isSet) {
        constexpr double kEndOf9999 = 253402300799;
        const auto seconds = ParseNumber(epoch);
        if (!seconds || *seconds < 0 || *seconds > kEndOf9999) {
            ShowMessage(
                "SOURCE_DATE_EPOCH: " + Translated(Text::kUnsuitableNumber, {Excerpt(epoch)}),
                Icon::kExclamation);
            return {};
        }
        now = static_cast<std::time_t>(*seconds);
    }
    const std::tm* const day = isSet ? std::gmtime(&now) : std::localtime(&now);
    char text[11];
    std::strftime(text, sizeof text, "%Y-%m-%d", day);
    return text;
}

/// The checksum of a file; empty for a pipe, which has been read already, and where reading fails.
std::string ChecksumOf(const std::string& name) {
    std::error_code error;
    std::ifstream file(name, std::ios::binary);
    if (!std::filesystem::is_regular_file(name, error) || !file) return {};
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return file.bad() ? "" : Sha256(bytes);
}

bool Save(const Report& report, const std::string& name) {
    std::string bytes;
    if (HasExtension(name, "html")) {
        bytes = HtmlOf(report);
    } else {
#ifdef KV_TR_PDF
        try {
            bytes = PdfOf(report);
        } catch (const PdfError& error) {
            ShowMessage(Translated(Text::kReportNotMade, {error.what()}), Icon::kExclamation);
            return false;
        }
#endif
    }
    ReplacingFile file(name);
    if (!file.IsOpen()) {
        ReportOpenFailure(name);
        return false;
    }
    file.Write(bytes);
    if (file.Commit()) return true;
    ShowMessage(WriteFailure(name).what(), Icon::kExclamation);
    return false;
}

}  // namespace

void AddReportOptions(CLI::App& command, ReportOptions& options) {
    command.add_option("--report", options.files, Translated(Text::kReportOption))
        ->type_name("FILE")
        ->allow_extra_args(false)
        ->check([](const std::string& name) -> std::string {
            if (name.starts_with("--")) throw CLI::ArgumentMismatch("--report: " + name);
            return CheckReportName(name);
        });
    command.add_option("--report-date", options.date, Translated(Text::kReportDateOption))
        ->type_name("DATE")
        ->check(CheckDate);
}

bool SaveReports(
    const ReportWork& work, const ReportOptions& options,
    const std::function<bool(const std::string&, const std::function<bool()>&)>& save) {
    if (options.files.empty()) return true;
    const std::string date = options.date.empty() ? Today() : options.date;
    if (date.empty()) return false;
    const TypeAdvice advice = work.findings.advice
                                  ? *work.findings.advice
                                  : Advise(work.adjustment.Points(), work.findings.options);
    const Report report =
        ReportOf({.adjustment = work.adjustment,
                  .assessment = work.findings.assessment,
                  .advice = advice,
                  .options = work.findings.options,
                  .outcome = work.findings.outcome,
                  .solution = work.solution,
                  .limit = work.limit,
                  .files = {{std::filesystem::path(work.points).filename().string(),
                             ChecksumOf(work.points)}},
                  .date = date,
                  .version = "KV_Tr " KV_TR_VERSION},
                 ComponentTexts(), ComponentNumberStyle());
    bool saved = true;
    for (const std::string& name : options.files) {
        saved &= save(name, [&] { return Save(report, name); });
    }
    return saved;
}

}  // namespace kv_tr::cli
