// What the panels and the status line of a document say.
#include "workbench/panels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kv_tr/published/ml_strings.h"
#include "workbench/points_view.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

std::string Millimetres(double metres) { return FixedFigure(metres, 3); }

std::string Angle(double radians, AngleUnit unit) {
    const AngleLook& look = LookOf(unit);
    return FixedFigure(radians * look.factor, look.decimals);
}

FindingsTable::Row RowOf(std::string name, const PlaceFigures& at, AngleUnit unit) {
    return {{std::move(name), Millimetres(at.source.first), Millimetres(at.source.second),
             FixedFigure(at.Ppm(), 2), Angle(at.rotation, unit), ShortFigure(at.sigma)}};
}

}  // namespace

FindingsTable PointsTable(Document& document, const Places& places) {
    constexpr Column kColumns[] = {Column::kIdentifier,        Column::kSourceFirst,
                                   Column::kSourceSecond,      Column::kDestinationFirst,
                                   Column::kDestinationSecond, Column::kResidualFirst,
                                   Column::kResidualSecond,    Column::kResidual,
                                   Column::kStudentisedFirst,  Column::kStudentisedSecond,
                                   Column::kRedundancyFirst,   Column::kRedundancySecond,
                                   Column::kProbability,       Column::kUse};
    PointsView view(document);
    FindingsTable table;
    for (const Column column : kColumns) table.headings.push_back(view.Heading(column));
    for (const std::size_t place : places) {
        if (table.rows.size() == kMostPointRows) break;
        FindingsTable::Row row;
        for (const Column column : kColumns) row.cells.push_back(view.CellText(place, column));
        row.isMarked = MarkAt(document, place) == PointsView::Mark::kSuspect;
        table.rows.push_back(std::move(row));
    }
    return table;
}

FindingsTable DistortionTable(Document& document, AngleUnit unit) {
    FindingsTable table{
        .headings = {Said(Phrase::kPlaceHeading), "Y1", "X1", Said(Phrase::kScaleHeading),
                     Translated(Text::kRotationHeading, {LookOf(unit).name}), "σ [m]"}};
    struct Extreme {
        PlaceFigures at;
        std::string id;
    };
    PlaceInfo info(document);
    std::optional<Extreme> least, greatest, worst;
    Point sum{};
    for (const ControlPoint& point : document.Points()) {
        if (!point.used) continue;
        sum = {sum.first + point.source.first, sum.second + point.source.second};
        const auto at = info.AtSource(point.source);
        if (!at) continue;
        if (!least || at->scale < least->at.scale) least = {*at, point.id};
        if (!greatest || at->scale > greatest->at.scale) greatest = {*at, point.id};
        if (!worst || at->sigma > worst->at.sigma) worst = {*at, point.id};
    }
    const auto count = static_cast<double>(document.UsedCount());
    const auto middle = info.AtSource({sum.first / count, sum.second / count});
    if (!middle || !least) return table;
    table.rows.push_back(RowOf(Said(Phrase::kMiddle), *middle, unit));
    table.rows.push_back(RowOf(Said(Phrase::kLeastScale, {least->id}), least->at, unit));
    table.rows.push_back(RowOf(Said(Phrase::kGreatestScale, {greatest->id}), greatest->at, unit));
    table.rows.push_back(RowOf(Said(Phrase::kGreatestSigma, {worst->id}), worst->at, unit));
    return table;
}

FindingsTable StepsTable(const History& history) {
    FindingsTable table{.headings = {Said(Phrase::kStepHeading), "σ0 [m]"}};
    for (const Step& step : history.Steps())
        table.rows.push_back({{step.text.Sentence(), FixedFigure(step.sigma0, 4)}});
    table.rows[history.Done()].isMarked = true;
    return table;
}

PlaceTexts TextsOf(const PlaceFigures& figures, AngleUnit unit) {
    const auto pair = [](Point point) {
        return "Y " + Millimetres(point.first) + "  X " + Millimetres(point.second);
    };
    PlaceTexts texts{.coordinates = pair(figures.source) + "  →  " + pair(figures.image)};
    if (!std::isnan(figures.sigma)) texts.coordinates += "  ± " + Millimetres(figures.sigma) + " m";
    texts.figures =
        Said(Phrase::kScaleHere, {FixedFigure(figures.Ppm(), 2)}) + "   " +
        Said(Phrase::kRotationHere, {Angle(figures.rotation, unit) + LookOf(unit).unit});
    if (figures.IsOutside()) {
        texts.outside = Said(Phrase::kOutsideHere, {FixedFigure(figures.distanceOutside, 1)});
    }
    return texts;
}

}  // namespace kv_tr::workbench
