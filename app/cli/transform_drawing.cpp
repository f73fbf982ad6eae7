// Drawings in DXF through kv_tr transform.
#include "cli/transform_drawing.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "cli/interruption.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "common/drawing_words.h"
#include "kv_tr/interchange/drawing.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

std::optional<std::string> ReadDrawing(const std::string& name) {
    std::error_code error;
    std::ifstream stream = OpenToRead(PathOf(name));
    if (!stream.is_open()) {
        ReportOpenFailure(name);
        return std::nullopt;
    }
    std::string bytes;
    const auto size = std::filesystem::file_size(PathOf(name), error);
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

void ShowProblems(const DrawingReport& report, const std::string& name) {
    std::string text;
    for (const std::string& line : app::DrawingProblems(report, name))
        text += (text.empty() ? "" : "\r\n") + line;
    if (!text.empty()) ShowMessage(text, Icon::kExclamation);
}

/// Transforms one drawing; the exit code.
int TransformOne(const TransformTask& task, const MapWithAxes& loaded,
                 const LayerOptions& options) {
    const std::string& output = task.output;
    std::error_code error;
    if (!options.overwrite && std::filesystem::exists(PathOf(output), error)) {
        ShowMessage(Translated(Text::kTargetExists, {output}), Icon::kExclamation);
        return kReported;
    }
    const auto bytes = ReadDrawing(task.input);
    if (!bytes) return kReported;
    if (task.intoFolder) {
        std::filesystem::create_directories(PathOf(output).parent_path(), error);
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
    for (const std::string& note : app::DrawingNotes(report, task.input, options.curveTolerance))
        PrintNote(note);
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
