// The sections of the report of an adjustment.
#pragma once

#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/files/report_words.h"

namespace kv_tr {

ReportSection ParameterSection(const ReportSubject& subject, const ReportWords& words);
ReportSection AccuracySection(const ReportSubject& subject, const ReportWords& words);
/// Residuals and tests of the points in use.
std::vector<ReportSection> PointSections(const ReportSubject& subject, const ReportWords& words);
ReportSection ExcludedSection(const ReportSubject& subject, const ReportWords& words);
/// A plan of the points with their residual vectors, enlarged; the picture says how much.
ReportPicture ResidualPlanOf(const ReportSubject& subject, const ReportWords& words);
ReportSection DistortionSection(const ReportSubject& subject, const ReportWords& words);

}  // namespace kv_tr
