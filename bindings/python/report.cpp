// Reports of fits for Python.
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/files/report_file.h"
#include "kv_tr/published/day_of_report.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "python/fitted_points.h"
#include "python/worth.h"
#ifdef KV_TR_PDF
#include "kv_tr/pdf/report_pdf.h"
#endif

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;
using Trouble = WrittenReport::Trouble;

PdfMaker MakerOfReports() {
#ifdef KV_TR_PDF
    return [](const Report& report) { return PdfOf(report); };
#else
    return {};
#endif
}

[[noreturn]] void RaiseOSError(const std::string& text) {
    PyErr_SetString(PyExc_OSError, text.c_str());
    throw py::error_already_set();
}

std::string ShownName(const Path& path) {
    return py::repr(py::module_::import("os").attr("fsdecode")(py::bytes(path.string())))
        .cast<std::string>();
}

/// Raises what is wrong with a report's name or with its file, if anything is.
void RaiseFor(const WrittenReport& written, const Path& path) {
    const std::string name = ShownName(path);
    switch (written.trouble) {
        case Trouble::kNone: return;
        case Trouble::kExtension: throw py::value_error(name + ": reports end in .html or .pdf");
        case Trouble::kNoPdf:
            throw py::value_error(name + ": this package was built without PDF, .html is possible");
        case Trouble::kNotMade: RaiseOSError(name + ": no PDF can be made: " + written.cause);
        case Trouble::kNotOpened: RaiseOSError(name + ": the file cannot be written");
        case Trouble::kNotWritten: RaiseOSError(name + ": not everything could be written");
    }
}

std::string DayFrom(const std::optional<std::string>& given) {
    if (!given) {
        if (const auto today = DayOfReport()) return *today;
        throw py::value_error("SOURCE_DATE_EPOCH must be seconds since 1970");
    }
    if (IsCalendarDay(*given)) return *given;
    throw py::value_error("date must be a day of the calendar, YYYY-MM-DD, not " +
                          py::repr(py::str(*given)).cast<std::string>());
}

std::optional<double> LimitFrom(const py::object& given) {
    if (given.is_none()) return std::nullopt;
    const auto limit = Converted<double>(given, "limit", "a number");
    if (limit >= 0.0 && std::isfinite(limit)) return limit;
    throw py::value_error("limit must be a finite number that is not negative");
}

/// What ReportSubject is about.
struct Findings {
    Adjustment adjustment;
    FitOutcome outcome{};
    Assessment assessment{};
    TypeAdvice advice{};
};

/// The points are fitted again, with the same bits as before.
Findings FindingsOf(const FittedPoints& given, const std::vector<std::string>& ids,
                    Solution solution, const AssessmentOptions& options) {
    std::vector<ControlPoint> points = given.Points();
    for (std::size_t i = 0; i < points.size(); ++i) points[i].id = ids[i];
    Findings findings{.adjustment = Adjustment(points, given.FitType())};
    findings.outcome = findings.adjustment.Fit({.solution = solution});
    findings.assessment = Assess(points, given.FitType(), options);
    findings.advice = Advise(points, options);
    return findings;
}

/// Writes the report of a fit whose points have these identifiers, one each. The files are names
/// with checksums.
void WriteReportOf(const FittedPoints& points, const std::vector<std::string>& ids, bool isAccurate,
                   const Path& path, const std::optional<std::string>& date,
                   const py::object& limitGiven,
                   const std::vector<std::pair<std::string, std::string>>& files) {
    const PdfMaker makePdf = MakerOfReports();
    RaiseFor({TroubleOfReportName(path.string(), makePdf != nullptr)}, path);
    const std::optional<double> limit = LimitFrom(limitGiven);
    const std::string day = DayFrom(date);
    const Solution solution = isAccurate ? Solution::kAccurate : Solution::kDocumented;
    const AssessmentOptions options = points.Options();
    std::optional<Findings> findings;
    {
        const py::gil_scoped_release unlocked;
        findings = FindingsOf(points, ids, solution, options);
    }
    ReportSubject subject{.adjustment = findings->adjustment,
                          .assessment = findings->assessment,
                          .advice = findings->advice,
                          .options = options,
                          .outcome = findings->outcome,
                          .solution = solution,
                          .limit = limit,
                          .date = day,
                          .version = ReportingProgram()};
    for (const auto& [name, checksum] : files) subject.files.push_back({name, checksum});
    const Report report = ReportOf(subject, ShownTexts(), ComponentNumberStyle());
    WrittenReport written;
    {
        const py::gil_scoped_release unlocked;
        written = WriteReport(report, path.string(), makePdf);
    }
    RaiseFor(written, path);
}

}  // namespace

void AddReport(py::module_& module) { module.def("_report", WriteReportOf); }

}  // namespace kv_tr::python
