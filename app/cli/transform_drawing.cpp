// Drawings in DXF through kv_tr transform.
#include "cli/transform_drawing.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>

#include "cli/export.h"
#include "cli/interruption.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "common/lost_points.h"
#include "kv_tr/interchange/drawing.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/file_names.h"
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

}  // namespace

void AddDrawingOptions(CLI::App& command, DrawingFileOptions& options) {
    command.add_option("--axes", options.axes, Translated(Text::kMapAxesOption, {AxisWords()}))
        ->type_name("AXES")
        ->check(CheckAxes);
    command
        .add_option_function<std::string>(
            "--tolerance",
            [&options](const std::string& text) { options.tolerance = *ParseNumber(text); },
            Translated(Text::kDrawingToleranceOption))
        ->type_name("UNITS")
        ->default_str(ShortestText(options.tolerance))
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            const bool suitable = number && *number > 0;
            return suitable ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--overwrite", options.overwrite, Translated(Text::kOverwriteOption));
}

bool IsDrawing(const std::string& input, const std::string& output) {
    return HasExtension(input, "dxf") && HasExtension(output, "dxf");
}

int TransformDrawingFile(const std::string& input, const std::string& output,
                         const ParameterSource& source, const DrawingFileOptions& options,
                         bool keepGoing) {
    std::error_code error;
    if (!options.overwrite && std::filesystem::exists(output, error)) {
        ShowMessage(Translated(Text::kTargetExists, {output}), Icon::kExclamation);
        return kReported;
    }
    MapWithAxes loaded;
    if (const int code = LoadMapWithAxes(loaded, source, options.axes); code != kDone) {
        if (code == kReported) PrintNote(Translated(Text::kNothingTransformed));
        return code;
    }
    const auto bytes = ReadDrawing(input);
    if (!bytes) return kReported;

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
                          .tolerance = options.tolerance,
                          .keepGoing = keepGoing},
                         {.write = [&file](std::string_view text) { file->Write(text); },
                          .goOn =
                              [&progress](std::uint64_t lines, std::uint64_t done) {
                                  progress.Show(lines, done);
                                  return true;
                              }});
    ShowProblems(report, input);
    if (!report.complete) {
        PrintNote(Translated(Text::kNothingWritten, {output}));
        return kReported;
    }
    if (!file->Commit()) throw WriteFailure(output);
    NoteCounts(report, input, options.tolerance);
    return report.problems.empty() && report.unknown.empty() ? kDone : kReported;
}

}  // namespace kv_tr::cli
