// The sections of a report about points and places: residuals, tests, distortion.
#include <algorithm>
#include <cmath>

#include "kv_tr/files/report_sections.h"
#include "kv_tr/model/distortion.h"
#include "kv_tr/model/hull.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

using Kind = ReportTable::Kind;
using Style = ReportParagraph::Kind;
using Columns = std::vector<ReportTable::Column>;

/// Identifier, coordinates and residuals.
std::vector<std::string> PointRow(const Adjustment& adjustment, std::size_t index,
                                  const ReportWords& words) {
    const ControlPoint& point = adjustment.Points()[index];
    const Residual& residual = adjustment.Residuals()[index];
    return {WithoutControls(point.id),
            words.Coordinate(point.source.first),
            words.Coordinate(point.source.second),
            words.Coordinate(point.destination.first),
            words.Coordinate(point.destination.second),
            words.Length(residual.first),
            words.Length(residual.second),
            words.Length(residual.Length())};
}

Columns PointColumns(const ReportWords& words) {
    return {{words(Text::kReportPoint), Kind::kForeign},
            {"Y1"},
            {"X1"},
            {"Y2"},
            {"X2"},
            {"vY"},
            {"vX"},
            {"|v|"}};
}

std::string MarksOf(const ReportSubject& subject, std::size_t place) {
    const PointAssessment& point = subject.assessment.points[place];
    std::string marks;
    if (subject.assessment.suspect == place) marks += 'S';
    if (point.isLever) marks += 'H';
    if (std::isinf(point.detectable.first) || std::isinf(point.detectable.second)) marks += 'N';
    if (point.influence > 1.0) marks += 'D';
    return marks;
}

bool ReachesLimit(const ReportSubject& subject, std::size_t index) {
    return subject.limit && !(subject.adjustment.Residuals()[index].Length() < *subject.limit);
}

/// The least error found at a point; infinite where none is.
std::string Detectable(double metres, const ReportWords& words) {
    return std::isinf(metres) ? "∞" : words.Length(metres);
}

ReportSection TestSection(const ReportSubject& subject, const ReportWords& words) {
    const bool isKnown = subject.options.sigma0.has_value();
    const std::string symbol = isKnown ? "w" : "τ";
    ReportSection section{words(Text::kReportTests)};
    ReportTable table{.columns = {{words(Text::kReportPoint), Kind::kForeign},
                                  {"rY"},
                                  {"rX"},
                                  {symbol + "Y"},
                                  {symbol + "X"},
                                  {"tY"},
                                  {"tX"},
                                  {"p"},
                                  {"∇Y"},
                                  {"∇X"},
                                  {"MDB Y"},
                                  {"MDB X"},
                                  {"D"},
                                  {words(Text::kReportMark), Kind::kText}},
                      .rows = {}};
    for (std::size_t i = 0; i < subject.assessment.points.size(); ++i) {
        const PointAssessment& point = subject.assessment.points[i];
        const Residual& residual = isKnown ? point.normalised : point.studentised;
        table.rows.push_back(
            {WithoutControls(subject.adjustment.Points()[point.index].id),
             words.Fixed(point.redundancy.first, 2), words.Fixed(point.redundancy.second, 2),
             words.Fixed(residual.first, 2), words.Fixed(residual.second, 2),
             words.Fixed(point.external.first, 2), words.Fixed(point.external.second, 2),
             words.Figure(point.adjustedProbability), words.Length(point.grossError.first),
             words.Length(point.grossError.second), Detectable(point.detectable.first, words),
             Detectable(point.detectable.second, words), words.Fixed(point.influence, 2),
             MarksOf(subject, i)});
    }
    section.blocks.emplace_back(std::move(table));
    const double critical =
        isKnown ? subject.assessment.criticalNormal : subject.assessment.criticalStudentised;
    const auto say = [&section](std::string text) {
        section.blocks.emplace_back(ReportParagraph{std::move(text), Style::kLegend});
    };
    say(words(Text::kReportTestLegend, {"τ", "∇"}));
    say(words(Text::kReportCritical,
              {words.Whole(subject.options.alpha), symbol, words.Fixed(critical, 2),
               words.Fixed(subject.assessment.criticalExternal, 2), "α"}));
    say(words(Text::kReportMarkLegend));
    return section;
}

/// Places all over the area of the points in use, in rows of equal distance.
std::vector<Point> Grid(std::span<const Point> hull) {
    constexpr int kSteps = 4;
    Point least = hull.front();
    Point greatest = hull.front();
    for (const Point& corner : hull) {
        least = {std::min(least.first, corner.first), std::min(least.second, corner.second)};
        greatest = {std::max(greatest.first, corner.first),
                    std::max(greatest.second, corner.second)};
    }
    std::vector<Point> grid;
    for (int row = kSteps; row >= 0; --row) {
        for (int column = 0; column <= kSteps; ++column) {
            const Point place{std::lerp(least.first, greatest.first, column / 4.0),
                              std::lerp(least.second, greatest.second, row / 4.0)};
            if (DistanceOutside(hull, place) == 0.0) grid.push_back(place);
        }
    }
    return grid;
}

/// Scales as parts per million from the mean one, angles in degrees and, the change, in seconds.
struct Distortions {
    const Transformation& transformation;
    double mean;

    double Ppm(double scale) const { return (scale / mean - 1.0) * 1e6; }

    std::string RangeText(std::span<const Point> places, const ReportWords& words) const {
        double least = kUndefined;
        double greatest = kUndefined;
        double leastTurn = kUndefined;
        double greatestTurn = kUndefined;
        double change = kUndefined;
        for (const Point& place : places) {
            const Distortion at = DistortionAt(transformation, place);
            least = std::fmin(least, Ppm(at.leastScale));
            greatest = std::fmax(greatest, Ppm(at.greatestScale));
            leastTurn = std::fmin(leastTurn, at.rotation * kDegrees);
            greatestTurn = std::fmax(greatestTurn, at.rotation * kDegrees);
            change = std::fmax(change, at.greatestAngleChange * kDegrees * 3600.0);
        }
        return words(Text::kReportDistortionRange,
                     {words.Fixed(least, 2), words.Fixed(greatest, 2), words.Fixed(leastTurn, 6),
                      words.Fixed(greatestTurn, 6), words.Fixed(change, 2), "″"});
    }

    std::vector<std::string> Row(Point place, const ReportWords& words) const {
        const Distortion at = DistortionAt(transformation, place);
        return {words.Coordinate(place.first),
                words.Coordinate(place.second),
                words.Fixed(Ppm(at.greatestScale), 2),
                words.Fixed(Ppm(at.leastScale), 2),
                words.Fixed((std::abs(at.areaScale) / (mean * mean) - 1.0) * 1e6, 2),
                words.Fixed(at.rotation * kDegrees, 6),
                words.Fixed(at.greatestAngleChange * kDegrees * 3600.0, 2)};
    }
};

}  // namespace

std::vector<ReportSection> PointSections(const ReportSubject& subject, const ReportWords& words) {
    const Adjustment& adjustment = subject.adjustment;
    ReportSection section{words(Text::kReportPoints)};
    ReportTable table{.columns = PointColumns(words), .rows = {}};
    const auto& sigmas = subject.options.sigmas;
    if (!sigmas.empty()) table.columns.insert(table.columns.end(), {{"σY"}, {"σX"}});
    if (subject.limit) table.columns.push_back({words(Text::kReportMark), Kind::kText});
    for (std::size_t i = 0; i < adjustment.Points().size(); ++i) {
        if (!adjustment.Points()[i].used) continue;
        table.rows.push_back(PointRow(adjustment, i, words));
        if (!sigmas.empty()) {
            table.rows.back().push_back(words.Length(sigmas[i].first));
            table.rows.back().push_back(words.Length(sigmas[i].second));
        }
        if (subject.limit) table.rows.back().push_back(ReachesLimit(subject, i) ? "L" : "");
    }
    section.blocks.emplace_back(std::move(table));
    if (subject.limit) {
        section.blocks.emplace_back(ReportParagraph{
            words(Text::kReportLimitLegend, {words.Whole(*subject.limit)}), Style::kLegend});
    }
    std::vector<ReportSection> sections{std::move(section)};
    if (!subject.assessment.points.empty()) sections.push_back(TestSection(subject, words));
    return sections;
}

ReportSection ExcludedSection(const ReportSubject& subject, const ReportWords& words) {
    const Adjustment& adjustment = subject.adjustment;
    const auto& returnable = subject.assessment.returnable;
    const bool isTested = subject.assessment.redundancy > 0 && subject.assessment.isDetermined &&
                          !subject.assessment.fitsExactly;
    ReportSection section{words(Text::kReportExcluded)};
    ReportTable table{.columns = PointColumns(words), .rows = {}};
    table.columns.push_back({words(Text::kReportReturnable), Kind::kText});
    if (!subject.notes.empty()) table.columns.push_back({subject.noteHeading, Kind::kForeign});
    for (std::size_t i = 0; i < adjustment.Points().size(); ++i) {
        if (adjustment.Points()[i].used) continue;
        table.rows.push_back(PointRow(adjustment, i, words));
        const bool returns = std::ranges::find(returnable, i) != returnable.end();
        table.rows.back().push_back(!isTested ? kUndefinedText
                                              : words(returns ? Text::kYes : Text::kNo));
        if (!subject.notes.empty()) table.rows.back().push_back(WithoutControls(subject.notes[i]));
    }
    section.blocks.emplace_back(std::move(table));
    section.blocks.emplace_back(ReportParagraph{
        words(Text::kReportExcludedLegend, {words.Whole(subject.options.alpha), "α"}),
        Style::kLegend});
    return section;
}

ReportSection DistortionSection(const ReportSubject& subject, const ReportWords& words) {
    std::vector<Point> sources;
    for (const ControlPoint& point : subject.adjustment.Points()) {
        if (point.used) sources.push_back(point.source);
    }
    const auto hull = ConvexHull(sources);
    const auto samples = HullSamples(hull);
    ReportSection section{words(Text::kReportDistortion)};
    if (samples.empty()) return section;
    const Transformation& transformation = subject.adjustment.Result();
    const Point centre = samples.front();
    const Distortions distortions{transformation, MeanScaleAt(transformation, centre)};
    section.blocks.emplace_back(ReportParagraph{words(
        Text::kReferenceScale, {words.Fixed(distortions.mean, 9), words.Coordinate(centre.first),
                                words.Coordinate(centre.second)})});
    section.blocks.emplace_back(ReportParagraph{distortions.RangeText(samples, words)});
    ReportTable table{.columns = {{"Y1"},
                                  {"X1"},
                                  {"M [ppm]"},
                                  {"N [ppm]"},
                                  {words(Text::kAreaScaleHeading)},
                                  {words(Text::kRotationHeading, {"°"})},
                                  {"ω [″]"}},
                      .rows = {}};
    // A linear transformation distorts everywhere alike.
    const bool isUniform =
        !IsPolynomial(transformation.type) || TermCount(transformation.type) == 3;
    const auto places = isUniform ? std::vector<Point>{centre} : Grid(hull);
    for (const Point& place : places) table.rows.push_back(distortions.Row(place, words));
    if (!table.rows.empty()) section.blocks.emplace_back(std::move(table));
    section.blocks.emplace_back(
        ReportParagraph{words(Text::kDistortionLegend, {"ω"}), Style::kLegend});
    return section;
}

}  // namespace kv_tr
