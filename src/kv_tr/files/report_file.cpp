// Reports as files, and what a report tells of the program and of the files of points.
#include "kv_tr/files/report_file.h"

#include <chrono>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "kv_tr/files/report_html.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"
#include "kv_tr/text/sha256.h"
#include "kv_tr/text/version.h"

namespace kv_tr {
namespace {

using Trouble = WrittenReport::Trouble;

/// The checksum of a file; empty where reading fails.
std::string ChecksumOf(const std::filesystem::path& path) {
    std::ifstream file = OpenToRead(path);
    if (!file) return {};
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return file.bad() ? "" : Sha256(bytes);
}

/// The number that a text of digits is; -1 for any other text.
int DigitsOf(std::string_view text) {
    int number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return -1;
        number = 10 * number + (c - '0');
    }
    return number;
}

}  // namespace

Trouble TroubleOfReportName(std::string_view fileName, bool hasPdf) {
    if (HasExtension(fileName, "html")) return Trouble::kNone;
    if (!HasExtension(fileName, "pdf")) return Trouble::kExtension;
    return hasPdf ? Trouble::kNone : Trouble::kNoPdf;
}

WrittenReport WriteReport(const Report& report, const std::string& fileName,
                          const PdfMaker& makePdf) {
    const Trouble ofName = TroubleOfReportName(fileName, makePdf != nullptr);
    if (ofName != Trouble::kNone) return {ofName};
    std::string bytes;
    try {
        bytes = HasExtension(fileName, "pdf") ? makePdf(report) : HtmlOf(report);
    } catch (const std::runtime_error& error) {
        return {Trouble::kNotMade, error.what()};
    }
    ReplacingFile file(fileName);
    if (!file.IsOpen()) return {Trouble::kNotOpened};
    file.Write(bytes);
    return {file.Commit() ? Trouble::kNone : Trouble::kNotWritten};
}

std::string ReportingProgram() { return std::string("KV_Tr ") + Version(); }

bool IsCalendarDay(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
    const int year = DigitsOf(text.substr(0, 4));
    const int month = DigitsOf(text.substr(5, 2));
    const int day = DigitsOf(text.substr(8, 2));
    if (year <= 0 || month <= 0 || day <= 0) return false;
    return std::chrono::year_month_day{std::chrono::year(year),
                                       std::chrono::month(static_cast<unsigned>(month)),
                                       std::chrono::day(static_cast<unsigned>(day))}
        .ok();
}

ReportFile ReportFileOf(const PointSource& source) {
    std::string checksum = IsUnchanged(source) ? ChecksumOf(source.path) : "";
    if (!IsUnchanged(source)) checksum.clear();  // changed while its bytes were read
    return {NameOfPath(source.path.filename()), checksum};
}

}  // namespace kv_tr
