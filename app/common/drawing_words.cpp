// What became of a drawing, in words.
#include "common/drawing_words.h"

#include <cstdio>

#include "common/excerpt.h"
#include "common/lost_points.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::app {
namespace {

/// What is wrong, as a sentence without its end.
std::string CauseText(const DrawingProblem& problem) {
    switch (problem.kind) {
        case DrawingProblem::Kind::kNoDrawing: return Translated(Text::kNoDrawing);
        case DrawingProblem::Kind::kNotAGroupCode:
            return Translated(Text::kNotAGroupCode, {Excerpt(problem.text)});
        case DrawingProblem::Kind::kNotANumber:
            return Translated(Text::kUnsuitableNumber, {Excerpt(problem.text)});
        case DrawingProblem::Kind::kEndsEarly: return Translated(Text::kDrawingEndsEarly);
        case DrawingProblem::Kind::kMissingCoordinate: return Translated(Text::kEntityIncomplete);
        case DrawingProblem::Kind::kTiltedPlane: return Translated(Text::kTiltedPlane);
        case DrawingProblem::Kind::kNoImage: break;
    }
    return ReasonText(problem.reason);
}

std::string Listed(const DrawingReport::Counts& counts) {
    std::string list;
    for (const auto& [type, count] : counts) {
        list += (list.empty() ? "" : ", ") + type + " " + std::to_string(count);
    }
    return list;
}

}  // namespace

std::vector<std::string> DrawingProblems(const DrawingReport& report, const std::string& name) {
    std::vector<std::string> sentences;
    for (const DrawingProblem& problem : report.problems) {
        std::string what = problem.entity;
        if (!problem.handle.empty()) what += " " + problem.handle;
        sentences.push_back(Translated(Text::kDrawingLine,
                                       {name, std::to_string(problem.line),
                                        (what.empty() ? "" : what + ": ") + CauseText(problem)}));
    }
    if (!report.unknown.empty()) {
        sentences.push_back(
            Translated(Text::kUnknownEntities,
                       {name, std::to_string(report.firstUnknownLine), Listed(report.unknown)}));
    }
    if (report.complete && !sentences.empty()) {
        sentences.push_back(
            Translated(Text::kEntitiesUnmoved, {name, std::to_string(report.unmoved)}));
    }
    return sentences;
}

std::vector<std::string> DrawingNotes(const DrawingReport& report, const std::string& name,
                                      double tolerance) {
    std::vector<std::string> notes;
    if (!report.polylines.empty()) {
        notes.push_back(Translated(Text::kCurvesToPolylines,
                                   {name, ShortestText(tolerance), Listed(report.polylines)}));
    }
    if (!report.ellipses.empty())
        notes.push_back(Translated(Text::kCirclesToEllipses, {name, Listed(report.ellipses)}));
    if (!report.nearly.empty()) {
        char departure[32];
        std::snprintf(departure, sizeof departure, "%.2g", report.greatestDeparture);
        notes.push_back(Translated(Text::kTurnedNearly, {name, departure, Listed(report.nearly)}));
    }
    if (report.views > 0)
        notes.push_back(Translated(Text::kViewsKept, {name, std::to_string(report.views)}));
    notes.push_back(Translated(Text::kDrawingWritten, {name, std::to_string(report.moved)}));
    return notes;
}

}  // namespace kv_tr::app
