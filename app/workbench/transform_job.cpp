// Transforming files in a thread of its own, with progress.
#include "workbench/transform_job.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "common/coordinate_file.h"
#include "common/drawing_words.h"
#include "common/excerpt.h"
#include "kv_tr/interchange/point_readers.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace fs = std::filesystem;
namespace {

using State = FileProgress::State;

/// The sentence of a file that cannot be gone on with.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::vector<std::string> ProblemsOf(const app::CoordinateResult& result, const std::string& name) {
    std::vector<std::string> problems;
    if (result.mayHaveDecimalCommas) {
        problems.push_back(Translated(Text::kCoordinatesHaveDecimalCommas,
                                      {name, Translated(Text::kHasDecimalCommas)}));
    }
    std::vector<app::BadLine> lines = result.named;
    if (result.endedBy) lines.push_back({result.lines, *result.endedBy, result.endedBecause});
    for (const auto& [line, text, reason] : lines) {
        const std::string number = std::to_string(line);
        problems.push_back(
            reason == NoSource::kNone
                ? Translated(Text::kBadCoordinateLine, {name, number, app::Excerpt(text)})
                : Translated(Text::kLineHasNoInverse,
                             {name, number, app::ReasonText(reason), app::Excerpt(text)}));
    }
    if (result.badLines > result.named.size()) {
        problems.push_back(Said(Phrase::kMoreBadLines,
                                {name, std::to_string(result.badLines - result.named.size())}));
    }
    return problems;
}

std::ifstream Opened(const std::string& name) {
    std::ifstream stream = OpenToRead(PathOf(name));
    if (!stream.is_open()) throw Refusal(Said(Phrase::kCannotOpen, {name}));
    return stream;
}

void RequireWritable(const ReplacingFile& file, const std::string& name) {
    if (!file.IsOpen()) throw Refusal(Said(Phrase::kCannotSave, {name}));
}

void Finish(ReplacingFile& file, const std::string& name) {
    if (!file.Commit()) throw Refusal(Said(Phrase::kCannotSave, {name}));
}

}  // namespace

bool IsDrawing(const std::string& fileName) {
    std::string ending = NameOfPath(PathOf(fileName).extension());
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".dxf";
}

TransformJob::TransformJob(TransformPlan plan)
    : plan_(std::move(plan)), files_(plan_.tasks.size()), thread_([this] { Run(); }) {}

TransformJob::~TransformJob() {
    Cancel();
    Wait();
}

void TransformJob::Wait() {
    if (thread_.joinable()) thread_.join();
}

std::vector<FileProgress> TransformJob::Files() const {
    const std::scoped_lock lock(mutex_);
    return files_;
}

std::string TransformJob::TransformedText() const {
    const std::scoped_lock lock(mutex_);
    return text_;
}

void TransformJob::Run() {
    for (std::size_t i = 0; i < plan_.tasks.size(); ++i) RunOne(i);
    over_ = true;
}

void TransformJob::RunOne(std::size_t index) {
    const TransformTask& task = plan_.tasks[index];
    FileProgress progress{.state = State::kCancelled};
    if (Note(index, 0)) {
        try {
            std::error_code error;
            if (!plan_.mayReplace && !task.output.empty() && fs::exists(PathOf(task.output), error))
                throw Refusal(Said(Phrase::kResultExists, {task.output}));
            progress = !task.text && IsDrawing(task.input) ? DrawingDone(index) : TextDone(index);
        } catch (const std::exception& error) {
            progress = {.state = State::kFailed, .problems = {error.what()}};
        }
    }
    if (progress.state == State::kDone) progress.done = 1;
    const std::scoped_lock lock(mutex_);
    files_[index] = std::move(progress);
}

/// False when the work is cancelled.
bool TransformJob::Note(std::size_t index, double done) {
    const std::scoped_lock lock(mutex_);
    files_[index].state = State::kRunning;
    files_[index].done = std::min(done, 1.0);
    return !cancelled_;
}

FileProgress TransformJob::TextDone(std::size_t index) {
    const TransformTask& task = plan_.tasks[index];
    std::istringstream text(task.text.value_or(""));
    std::ifstream source;
    std::optional<ReplacingFile> file;
    std::error_code error;
    auto size = static_cast<double>(task.text ? task.text->size() : 0);
    if (!task.text) {
        source = Opened(task.input);
        size = static_cast<double>(fs::file_size(PathOf(task.input), error));
        RequireWritable(file.emplace(task.output), task.output);
    }
    std::string written;
    const app::CoordinateOutput to{
        .write =
            [&](std::string_view bytes) {
                if (file) {
                    file->Write(bytes);
                } else {
                    written += bytes;
                }
            },
        .goOn =
            [&](std::uint64_t, std::uint64_t bytes) {
                return Note(index, static_cast<double>(bytes) / std::max(size, 1.0));
            }};
    std::streambuf* const from = task.text ? text.std::ios::rdbuf() : source.std::ios::rdbuf();
    const auto result = app::TransformText(*from, to, plan_.map, plan_.options);
    FileProgress progress{
        .state = result.Complete()  ? State::kDone
                 : result.cancelled ? State::kCancelled
                                    : State::kFailed,
        .count = result.lines - result.badLines - std::min(result.lines, plan_.options.headerLines),
        .outside = result.outside.count,
        .badLines = result.badLines,
        .problems = ProblemsOf(result, task.input),
    };
    if (!result.Complete()) return progress;
    if (file) {
        Finish(*file, task.output);
    } else {
        const std::scoped_lock lock(mutex_);
        text_ = std::move(written);
    }
    return progress;
}

FileProgress TransformJob::DrawingDone(std::size_t index) {
    const TransformTask& task = plan_.tasks[index];
    std::string bytes;
    std::ifstream source = Opened(task.input);
    if (!TakeBytes(source, bytes)) throw Refusal(Said(Phrase::kCannotOpen, {task.input}));
    ReplacingFile file(task.output);
    RequireWritable(file, task.output);
    const DrawingOptions options{
        .from = plan_.from, .to = plan_.to, .keepGoing = plan_.options.keepGoing};
    const auto size = static_cast<double>(std::max<std::size_t>(bytes.size(), 1));
    const DrawingReport report =
        TransformDrawing(bytes, plan_.map, options,
                         {.write = [&file](std::string_view part) { file.Write(part); },
                          .goOn =
                              [&](std::uint64_t, std::uint64_t done) {
                                  return Note(index, static_cast<double>(done) / size);
                              }});
    FileProgress progress{
        .state = report.complete    ? State::kDone
                 : report.cancelled ? State::kCancelled
                                    : State::kFailed,
        .count = report.moved,
        .badLines = report.unmoved,
        .problems = app::DrawingProblems(report, task.input),
    };
    if (!report.complete) return progress;
    Finish(file, task.output);
    for (std::string& note : app::DrawingNotes(report, task.input, options.tolerance))
        progress.problems.push_back(std::move(note));
    return progress;
}

}  // namespace kv_tr::workbench
