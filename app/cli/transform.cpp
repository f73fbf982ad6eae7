// kv_tr transform: points of texts line by line, and whole data sets.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

#include "cli/file_options.h"
#include "cli/findings.h"
#include "cli/input.h"
#include "cli/interruption.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "cli/transform_drawing.h"
#include "cli/transform_layers.h"
#include "common/coordinate_file.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

struct TransformOptions {
    std::vector<std::string> inputs;  // none is the standard input
    ParameterSource source;
    std::string output;
    bool sigma = false;
    bool hasDecimals = false;
    LayerOptions layers;
    app::CoordinateOptions coordinates;
};

/// Where the lines go: the standard output, or a file that is complete or not there.
class Output {
public:
    explicit Output(const std::string& name) {
        if (name.empty()) return;
        const SignalsWait wait;
        file_.emplace(name);
        guard_.emplace(file_->Temporary());
    }

    bool IsOpen() const { return !file_ || file_->IsOpen(); }

    void Write(std::string_view bytes) {
        if (file_) {
            file_->Write(bytes);
        } else {
            std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        }
    }

    /// Hands over what has been written, to whoever reads the standard output.
    void Flush() {
        if (!file_) std::fflush(stdout);
    }

    bool Commit() {
        return file_ ? file_->Commit() : std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    }

private:
    std::optional<ReplacingFile> file_;
    std::optional<RemovedWhenInterrupted> guard_;
};

app::CoordinateResult TransformAll(Input& input, Output& output, bool toTerminal,
                                   const PointMap& map, const app::CoordinateOptions& coordinates) {
    Progress progress(input.Size(), toTerminal);
    const app::CoordinateOutput to{
        .write = [&output](std::string_view bytes) { output.Write(bytes); },
        .flush = [&output] { output.Flush(); },
        .goOn =
            [&progress](std::uint64_t lines, std::uint64_t bytes) {
                progress.Show(lines, bytes);
                return true;
            }};
    auto result = app::TransformText(input.Source(), to, map, coordinates);
    app::ReportBadLines(result, input.Name());
    if (const auto warning = ExtrapolationWarning(result.outside)) PrintWarnings({*warning}, true);
    if (result.mayHaveDecimalCommas) PrintNote(Translated(Text::kCommasMayBeDecimal));
    return result;
}

int TransformFile(const TransformTask& task, const PointMap& map,
                  const app::CoordinateOptions& coordinates) {
    Input input(task.input);
    if (!input.IsOpen()) {
        ReportOpenFailure(task.input);
        return kReported;
    }
    std::error_code error;
    if (task.intoFolder) {
        std::filesystem::create_directories(PathOf(task.output).parent_path(), error);
    }
    Output output(task.output);
    if (!output.IsOpen()) {
        ReportOpenFailure(task.output);
        return kReported;
    }
    const auto result =
        TransformAll(input, output, task.output.empty() && OutputIsTerminal(), map, coordinates);
    if (!result.Complete()) return kReported;
    input.Close();  // on Windows no file takes the place of an open one
    if (!output.Commit()) {
        if (!task.output.empty()) throw WriteFailure(task.output);
        throw RuntimeError(ErrorNumber::kWriteFailed, Translated(Text::kCannotWriteAll));
    }
    return result.badLines == 0 ? kDone : kReported;
}

int TransformTexts(const std::vector<TransformTask>& tasks, const TransformOptions& options) {
    PointMap map;
    auto coordinates = options.coordinates;
    int code = LoadPointMap(map, options.source, options.sigma ? &coordinates.precision : nullptr);
    if (code != kDone) {
        if (code == kReported) PrintNote(Translated(Text::kNothingTransformed));
        return code;
    }
    for (const TransformTask& task : tasks) {
        if (task.kind != TaskKind::kText) continue;
        if (task.intoFolder && !options.layers.overwrite &&
            std::filesystem::exists(PathOf(task.output))) {
            ShowMessage(Translated(Text::kTargetExists, {task.output}), Icon::kExclamation);
            code = kReported;
        } else {
            code = std::max(code, TransformFile(task, map, coordinates));
        }
        if (code != kDone && !coordinates.keepGoing) break;
    }
    return code;
}

/// Whether the options suit what is to be done; otherwise a note says which do not.
bool Suit(const TransformOptions& options, const std::vector<TransformTask>& tasks) {
    const std::string ofLayers = options.layers.First();
    std::string ofTexts = options.sigma ? "--sigma" : "";
    if (options.coordinates.noId) ofTexts = "--no-id";
    if (options.hasDecimals) ofTexts = "--decimals";
    const auto isText = [](const TransformTask& task) { return task.kind == TaskKind::kText; };
    if (!ofLayers.empty() && std::ranges::all_of(tasks, isText)) {
        PrintNote(Translated(Text::kForDataSetsOnly, {ofLayers, Excerpt(tasks.front().input)}));
        return false;
    }
    if (!ofTexts.empty() && std::ranges::none_of(tasks, isText)) {
        PrintNote(Translated(Text::kForTextsOnly, {ofTexts, Excerpt(tasks.front().input)}));
        return false;
    }
    const auto isDataSet = [](const TransformTask& task) {
        return task.kind == TaskKind::kDataSet;
    };
    if (!options.layers.targetCrs.empty() && std::ranges::none_of(tasks, isDataSet)) {
        PrintNote(Translated(Text::kDrawingHasNoCrs, {Excerpt(tasks.front().input)}));
        return false;
    }
    return std::ranges::all_of(tasks, [&](const TransformTask& task) {
        return AreDistinct({{"--output", task.output}}, {{"--points", options.source.points},
                                                         {"--params", options.source.params}});
    });
}

int RunTransform(const TransformOptions& options) {
    const auto inputs = options.inputs.empty() ? std::vector<std::string>{"-"} : options.inputs;
    std::vector<TransformTask> tasks;
    if (!PlanTasks(tasks, inputs, options.output, options.layers) || !Suit(options, tasks)) {
        return kWrongUsage;
    }
    const auto work = [&](TaskKind kind) -> int {
        if (std::ranges::find(tasks, kind, &TransformTask::kind) == tasks.end()) return kDone;
        if (kind == TaskKind::kText) return TransformTexts(tasks, options);
        const bool isDrawing = kind == TaskKind::kDrawing;
        return (isDrawing ? TransformDrawings : TransformDataSets)(tasks, options.source,
                                                                   options.layers);
    };
    int code = kDone;
    for (const TaskKind kind : {TaskKind::kText, TaskKind::kDrawing, TaskKind::kDataSet}) {
        if (code == kDone || options.coordinates.keepGoing) code = std::max(code, work(kind));
    }
    return code;
}

}  // namespace

Run AddTransform(CLI::App& command) {
    const auto options = std::make_shared<TransformOptions>();
    command.add_option("FILE", options->inputs, Translated(Text::kTransformArgument));
    AddSourceOptions(command, options->source);
    AddInverseOption(command, options->source, Text::kExactInverseOption);
    AddFileOption(command, "--output", options->output, Text::kOutputOption);
    command.add_flag("--sigma", options->sigma, Translated(Text::kTransformSigmaOption));
    const auto setDecimals = [options](const std::string& text) {
        options->coordinates.decimals = static_cast<int>(*ParseNumber(text));
        options->hasDecimals = true;
    };
    command
        .add_option_function<std::string>("--decimals", setDecimals,
                                          Translated(Text::kDecimalsOption))
        ->type_name("N")
        ->default_str(std::to_string(options->coordinates.decimals))
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            const bool suitable =
                number && *number >= 0 && *number <= 15 && *number == std::floor(*number);
            return suitable ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--no-id", options->coordinates.noId, Translated(Text::kNoIdOption));
    command.add_flag("--keep-going", options->coordinates.keepGoing,
                     Translated(Text::kKeepGoingOption));
    command.get_option("--decimal-comma")->description(Translated(Text::kDecimalCommaOption));
    AddLayerOptions(command, options->layers);
    AddLanguageOption(command);
    return [options] {
        options->layers.keepGoing = options->coordinates.keepGoing;
        options->coordinates.decimalComma = options->source.decimalComma;
        return RunTransform(*options);
    };
}

}  // namespace kv_tr::cli
