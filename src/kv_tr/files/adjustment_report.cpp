// The report of an adjustment, which a surveyor signs.
#include "kv_tr/files/adjustment_report.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/analysis/warnings.h"
#include "kv_tr/files/report_sections.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

using Kind = ReportTable::Kind;
using Style = ReportParagraph::Kind;

ReportTable Heading(const ReportSubject& subject, const ReportWords& words) {
    return {.columns = {{"", Kind::kText}, {"", Kind::kForeign}},
            .rows = {{words(Text::kReportDate), WithoutControls(subject.date)},
                     {words(Text::kReportProgram), WithoutControls(subject.version)}}};
}

ReportTable Files(const ReportSubject& subject, const ReportWords& words) {
    ReportTable table{
        .columns = {{words(Text::kReportFile), Kind::kForeign}, {"SHA-256", Kind::kForeign}},
        .rows = {}};
    for (const auto& [name, checksum] : subject.files) {
        table.rows.push_back(
            {WithoutControls(name), checksum.empty() ? kUndefinedText : WithoutControls(checksum)});
    }
    return table;
}

/// What the points in use have for least and greatest coordinates and for means.
struct Span {
    double least = kUndefined;
    double greatest = kUndefined;
    double mean = kUndefined;
};

Span SpanOf(std::span<const ControlPoint> points, Point ControlPoint::*place,
            double Point::*coordinate) {
    Span span;
    double reference = 0.0;
    double sum = 0.0;
    double count = 0.0;
    for (const ControlPoint& point : points) {
        if (!point.used) continue;
        const double value = point.*place.*coordinate;
        if (count == 0.0) span.least = span.greatest = reference = value;
        span.least = std::min(span.least, value);
        span.greatest = std::max(span.greatest, value);
        sum += value - reference;
        count += 1.0;
    }
    span.mean = count > 0.0 ? reference + sum / count : kUndefined;
    return span;
}

ReportSection Data(const ReportSubject& subject, const ReportWords& words) {
    const Adjustment& adjustment = subject.adjustment;
    const auto points = adjustment.Points();
    ReportSection section{words(Text::kReportData)};
    section.blocks.emplace_back(ReportParagraph{
        words(Text::kReportPointCount,
              {std::to_string(points.size()), std::to_string(adjustment.UsedCount()),
               std::to_string(adjustment.ExcludedCount())})});
    if (adjustment.IsSwapped()) {
        section.blocks.emplace_back(ReportParagraph{words(Text::kReportSwapped)});
    }
    ReportTable table{.columns = {{"", Kind::kText}, {"Y1"}, {"X1"}, {"Y2"}, {"X2"}},
                      .rows = {{words(Text::kReportLeast)},
                               {words(Text::kReportGreatest)},
                               {words(Text::kReportRange)},
                               {words(Text::kReportCentroid)}}};
    for (Point ControlPoint::*const place : {&ControlPoint::source, &ControlPoint::destination}) {
        for (double Point::*const coordinate : {&Point::first, &Point::second}) {
            const Span span = SpanOf(points, place, coordinate);
            table.rows[0].push_back(words.Coordinate(span.least));
            table.rows[1].push_back(words.Coordinate(span.greatest));
            table.rows[2].push_back(words.Coordinate(span.greatest - span.least));
            table.rows[3].push_back(words.Coordinate(span.mean));
        }
    }
    section.blocks.emplace_back(std::move(table));
    if (IsPolynomial(adjustment.Result().type)) {
        section.blocks.emplace_back(
            ReportParagraph{words(Text::kReportOrigin, {words.Whole(adjustment.Result().a[0]),
                                                        words.Whole(adjustment.Result().b[0])})});
    }
    return section;
}

std::string MarksOf(const TypeFigures& figures, const ReportSubject& subject,
                    const ReportWords& words) {
    std::string marks;
    const auto add = [&](bool applies, Text text) {
        if (applies) marks += (marks.empty() ? "" : ", ") + words(text);
    };
    const TypeAdvice& advice = subject.advice;
    add(advice.Of(subject.adjustment.FitType()) == &figures, Text::kReportFittedMark);
    add(advice.advised == figures.type, Text::kReportAdvisedMark);
    add(advice.best == figures.type, Text::kReportBestMark);
    add(!figures.isDetermined, Text::kReportUndeterminedMark);
    add(figures.isDetermined && figures.redundancy == 0, Text::kReportNoControlMark);
    return marks;
}

ReportSection TypeAndWhy(const ReportSubject& subject, const ReportWords& words) {
    ReportSection section{words(Text::kReportType)};
    section.blocks.emplace_back(ReportParagraph{
        words(Text::kReportFitted, {TypeName(subject.adjustment.FitType(), words.Texts()),
                                    std::to_string(subject.assessment.unknowns),
                                    std::to_string(subject.assessment.redundancy)})});
    section.blocks.emplace_back(
        ReportParagraph{DescribeAdvice(subject.advice, words.Texts(), words.Style())});
    ReportTable table{.columns = {{words(Text::kTypeHeading), Kind::kText},
                                  {"r"},
                                  {subject.options.sigmas.empty() ? "s0 [m]" : "s0"},
                                  {"loo [m]"},
                                  {"AICc"},
                                  {"F"},
                                  {"p"},
                                  {words(Text::kReportMark), Kind::kText}},
                      .rows = {}};
    for (const TypeFigures& figures : subject.advice.types) {
        table.rows.push_back({TypeName(figures.type, words.Texts()),
                              std::to_string(figures.redundancy), words.Figure(figures.sigma0),
                              words.Figure(figures.leaveOneOut), words.Fixed(figures.aicc, 1),
                              words.Figure(figures.fisher), words.Figure(figures.probability),
                              MarksOf(figures, subject, words)});
    }
    if (!table.rows.empty()) {
        section.blocks.emplace_back(std::move(table));
        section.blocks.emplace_back(
            ReportParagraph{words(Text::kReportTypeLegend), Style::kLegend});
    }
    return section;
}

ReportSection SolutionAndWarnings(const ReportSubject& subject, const ReportWords& words) {
    const Adjustment& adjustment = subject.adjustment;
    ReportSection section{words(Text::kReportSolution)};
    section.blocks.emplace_back(
        ReportParagraph{words(subject.solution == Solution::kAccurate ? Text::kReportAccurate
                                                                      : Text::kReportDocumented)});
    const TruthCheck& check = adjustment.Check();
    if (!check.undetermined && check.level <= TruthCheck::Level::kNote) {
        section.blocks.emplace_back(
            ReportParagraph{DescribeCheck(check, words.Texts(), words.Style()) + "."});
    }
    const auto warnings = FindWarnings({.points = adjustment.Points(),
                                        .transformation = adjustment.Result(),
                                        .check = check,
                                        .outcome = subject.outcome,
                                        .solution = subject.solution,
                                        .assessment = &subject.assessment,
                                        .advice = &subject.advice});
    if (warnings.empty()) {
        section.blocks.emplace_back(ReportParagraph{words(Text::kReportNoWarnings)});
    } else {
        section.title += ", " + words(Text::kReportWarnings);
    }
    for (const Warning& warning : warnings) {
        const Style style = warning.severity == Warning::Severity::kSevere    ? Style::kSevere
                            : warning.severity == Warning::Severity::kWarning ? Style::kWarning
                                                                              : Style::kNote;
        section.blocks.emplace_back(ReportParagraph{
            CodeOf(warning) + ": " +
                WithoutControls(DescribeWarning(warning, words.Texts(), words.Style())),
            style});
    }
    return section;
}

}  // namespace

std::string DescribeAdvice(const TypeAdvice& advice, const TextLookup& texts, NumberStyle style) {
    const ReportWords words(texts, style);
    if (!advice.advised) return words(Text::kAdviceNone);
    const auto isEligible = [](const TypeFigures& figures) { return figures.isEligible; };
    const TypeFigures* const advised = advice.Of(*advice.advised);
    const TypeFigures* const end = advice.types.data() + advice.types.size();
    const TypeFigures* const higher = std::find_if(advised + 1, end, isEligible);
    const TypeFigures* simpler = advised;
    while (simpler != advice.types.data() && (simpler == advised || !simpler->isEligible)) {
        --simpler;
    }
    const bool cuts = simpler->isEligible && simpler->leaveOneOut > advised->leaveOneOut;

    const bool inMillimetres = (cuts ? simpler : advised)->leaveOneOut < 1.0;
    const std::string unit = inMillimetres ? "mm" : "m";
    const auto length = [&](const TypeFigures* figures) {
        return words.Figure(figures->leaveOneOut * (inMillimetres ? 1000.0 : 1.0));
    };
    const auto name = [&](const TypeFigures* figures) { return TypeName(figures->type, texts); };
    std::string text =
        cuts ? words(Text::kAdviceCuts, {name(advised), length(simpler), length(advised), unit})
             : words(Text::kAdviceHas, {name(advised), length(advised), unit});
    if (higher != end && length(higher) != length(advised)) {
        const bool raises = higher->leaveOneOut >= advised->leaveOneOut;
        text += " " + words(raises ? Text::kAdviceRaises : Text::kAdviceLowers,
                            {name(higher), length(higher), unit});
    }
    return text;
}

Report ReportOf(const ReportSubject& subject, const TextLookup& texts, NumberStyle style) {
    const ReportWords words(texts, style);
    Report report{.language = words(Text::kReportLanguage),
                  .title = words(Text::kReportTitle),
                  .date = subject.date,
                  .pageText = words(Text::kReportPage)};
    ReportSection front{""};
    front.blocks.emplace_back(Heading(subject, words));
    if (!subject.files.empty()) front.blocks.emplace_back(Files(subject, words));
    front.blocks.emplace_back(ReportParagraph{words(Text::kReportNotation)});
    auto& sections = report.sections;
    sections.push_back(std::move(front));
    sections.push_back(Data(subject, words));
    sections.push_back(TypeAndWhy(subject, words));
    sections.push_back(SolutionAndWarnings(subject, words));
    sections.push_back(ParameterSection(subject, words));
    sections.push_back(AccuracySection(subject, words));
    for (ReportSection& section : PointSections(subject, words)) {
        sections.push_back(std::move(section));
    }
    if (subject.adjustment.ExcludedCount() > 0) {
        sections.push_back(ExcludedSection(subject, words));
    }
    sections.push_back({words(Text::kReportPlan), {ResidualPlanOf(subject, words)}});
    sections.push_back(DistortionSection(subject, words));
    sections.push_back({"",
                        {ReportSignature{{words(Text::kReportPlace), words(Text::kReportDate),
                                          words(Text::kReportSignature)}}}});
    return report;
}

}  // namespace kv_tr
