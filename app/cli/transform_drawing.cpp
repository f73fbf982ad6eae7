// Drawings in DXF through kv_tr transform.
#include "cli/transform_drawing.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "cli/interruption.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "common/lost_points.h"
#include "kv_tr/interchange/drawing.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

std::optional<std::string> ReadDrawing(const std::string& name) {
    std::error_code error;
    std::ifstream stream;
    if (!std::filesystem::is_directory(name, error)) stream.open(name, std::ios::binary);
    if (!stream.is_open()) {
        ReportOpenFailure(name);
        return std::nullopt;
    }
    std::string bytes;
    const auto size = std::filesystem::file_size(name, error);
    if (!error) {
        bytes.resize(size);
        stream.read(bytes.data(), static_cast<std::streamsize>(size));
        bytes.resize(static_cast<std::size_t>(stream.gcount()));
    } else {
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
    }
    if (!stream.bad()) return bytes;
    ReportOpenFailure(name);
    return std::nullopt;
}

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
    return app::ReasonText(problem.reason);
}

std::string Listed(const DrawingReport::Counts& counts) {
    std::string list;
    for (const auto& [type, count] : counts) {
        list += (list.empty() ? "" : ", ") + type + " " + std::to_string(count);
    }
    return list;
}

void ShowProblems(const DrawingReport& report, const std::string& name) {
    std::string text;
    const auto add = [&text](const std::string& line) {
        text += (text.empty() ? "" : "\r\n") + line;
    };
    for (const DrawingProblem& problem : report.problems) {
        std::string what = problem.entity;
        if (!problem.handle.empty()) what += " " + problem.handle;
        add(Translated(Text::kDrawingLine,
                       {name, std::to_string(problem.line),
                        (what.empty() ? "" : what + ": ") + CauseText(problem)}));
    }
    if (!report.unknown.empty()) {
        add(Translated(Text::kUnknownEntities,
                       {name, std::to_string(report.firstUnknownLine), Listed(report.unknown)}));
    }
    if (report.complete && !text.empty()) {
        add(Translated(Text::kEntitiesUnmoved, {name, std::to_string(report.unmoved)}));
    }
    if (!text.empty()) ShowMessage(text, Icon::kExclamation);
}

void NoteCounts(const DrawingReport& report, const std::string& name, double tolerance) {
    if (!report.polylines.empty()) {
        PrintNote(Translated(Text::kCurvesToPolylines,
                             {name, ShortestText(tolerance), Listed(report.polylines)}));
    }
    if (!report.ellipses.empty()) {
        PrintNote(Translated(Text::kCirclesToEllipses, {name, Listed(report.ellipses)}));
    }
    if (!report.nearly.empty()) {
        char departure[32];
        std::snprintf(departure, sizeof departure, "%.2g", report.greatestDeparture);
        PrintNote(Translated(Text::kTurnedNearly, {name, departure, Listed(report.nearly)}));
    }
    if (report.views > 0) {
        PrintNote(Translated(Text::kViewsKept, {name, std::to_string(report.views)}));
    }
    PrintNote(Translated(Text::kDrawingWritten, {name, std::to_string(report.moved)}));
}

/// Transforms one drawing; the exit code.
int TransformOne(const TransformTask& task, const MapWithAxes& loaded,
                 const LayerOptions& options) {
    const std::string& output = task.output;
    std::error_code error;
    if (!options.overwrite && std::filesystem::exists(output, error)) {
        ShowMessage(Translated(Text::kTargetExists, {output}), Icon::kExclamation);
        return kReported;
    }
    const auto bytes = ReadDrawing(task.input);
    if (!bytes) return kReported;
    if (task.intoFolder) {
        std::filesystem::create_directories(std::filesystem::path(output).parent_path(), error);
    }

    std::optional<ReplacingFile> file;
    std::optional<RemovedWhenInterrupted> guard;
    {
        const SignalsWait wait;
        file.emplace(output);
        guard.emplace(file->Temporary());
    }
    if (!file->IsOpen()) {
        ReportOpenFailure(output);
        return kReported;
    }
    Progress progress(bytes->size(), false);
    const DrawingReport report =
        TransformDrawing(*bytes, loaded.map,
                         {.from = loaded.sourceAxes,
                          .to = loaded.targetAxes,
                          .tolerance = options.curveTolerance,
                          .keepGoing = options.keepGoing},
                         {.write = [&file](std::string_view text) { file->Write(text); },
                          .goOn =
                              [&progress](std::uint64_t lines, std::uint64_t done) {
                                  progress.Show(lines, done);
                                  return true;
                              }});
    ShowProblems(report, task.input);
    if (!report.complete) {
        PrintNote(Translated(Text::kNothingWritten, {output}));
        return kReported;
    }
    if (!file->Commit()) throw WriteFailure(output);
    NoteCounts(report, task.input, options.curveTolerance);
    return report.problems.empty() && report.unknown.empty() ? kDone : kReported;
}

}  // namespace

int TransformDrawings(const std::vector<TransformTask>& tasks, const ParameterSource& source,
                      const LayerOptions& options) {
    MapWithAxes loaded;
    if (const int code = LoadMapWithAxes(loaded, source, options.axes); code != kDone) {
        if (code == kReported) PrintNote(Translated(Text::kNothingTransformed));
        return code;
    }
    int code = kDone;
    for (const TransformTask& task : tasks) {
        if (task.kind != TaskKind::kDrawing) continue;
        code = std::max(code, TransformOne(task, loaded, options));
        if (code != kDone && !options.keepGoing) break;
    }
    return code;
}

}  // namespace kv_tr::cli
