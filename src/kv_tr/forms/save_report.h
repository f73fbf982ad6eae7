// Saving a report; what goes wrong is a message.
#pragma once

#include <string>

#include "kv_tr/files/report_file.h"

namespace kv_tr {

/// The complaint about a name that a report cannot get; empty for one that it can. The name is
/// shown as `shown`.
std::string ComplaintOfReportName(const std::string& fileName, bool hasPdf,
                                  const std::string& shown);

/// Saves a report under a name that ends in .html or .pdf; false after a message.
bool SaveReport(const Report& report, const std::string& fileName, const PdfMaker& makePdf);

/// The day of a report as DayOfReport tells it; empty after a message.
std::string DayOfReportOrMessage();

}  // namespace kv_tr
