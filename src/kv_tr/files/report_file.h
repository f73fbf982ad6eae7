// Reports as files, and what a report tells of the program and of the files of points.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/files/point_source.h"
#include "kv_tr/files/report.h"

namespace kv_tr {

/// Makes a PDF document of a report; throws std::runtime_error, whose what() tells why, when none
/// can be made. Empty in a program without PDF.
using PdfMaker = std::function<std::string(const Report&)>;

/// What became of the file of a report.
struct WrittenReport {
    enum class Trouble {
        kNone,
        kExtension,   ///< the name ends neither in .html nor in .pdf
        kNoPdf,       ///< the name ends in .pdf, and there is no maker
        kNotMade,     ///< the maker has thrown
        kNotOpened,   ///< the file cannot be written
        kNotWritten,  ///< not everything could be written; an older file stays as it was
    };
    Trouble trouble = Trouble::kNone;
    std::string cause{};  ///< of kNotMade, what the maker says
};

/// Whether a report can get this name: kNone, kExtension or kNoPdf.
WrittenReport::Trouble TroubleOfReportName(std::string_view fileName, bool hasPdf);

/// Writes a report as HTML or PDF, by the extension of the name; the file takes the place of an
/// older one only when it is complete.
WrittenReport WriteReport(const Report& report, const std::string& fileName,
                          const PdfMaker& makePdf);

/// The name and version of the program, as reports tell it.
std::string ReportingProgram();

/// Whether a text is a day of the calendar in the form "2026-05-31".
bool IsCalendarDay(std::string_view text);

/// The file as a report names it; with its checksum only if it can be read and still is as it was.
ReportFile ReportFileOf(const PointSource& source);

}  // namespace kv_tr
