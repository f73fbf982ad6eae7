// kv_tr transform: the points of a file or of the standard input, line by line.
#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <optional>
#include <string_view>

#include "cli/file_options.h"
#include "cli/findings.h"
#include "cli/input.h"
#include "cli/interruption.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "cli/transform_drawing.h"
#include "common/coordinate_file.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

struct TransformOptions {
    std::string input = "-";
    ParameterSource source;
    std::string output;
    bool sigma = false;
    app::CoordinateOptions coordinates;
    DrawingFileOptions drawing;
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

app::CoordinateResult TransformAll(Input& input, Output& output, const PointMap& map,
                                   const TransformOptions& options,
                                   const app::CoordinateOptions& coordinates) {
    Progress progress(input.Size(), options.output.empty() && OutputIsTerminal());
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

int RunTransform(const TransformOptions& options) {
    if (!AreDistinct({{"--output", options.output}},
                     {{"--points", options.source.points}, {"--params", options.source.params}})) {
        return kWrongUsage;
    }
    if (IsDrawing(options.input, options.output)) {
        return TransformDrawingFile(options.input, options.output, options.source, options.drawing,
                                    options.coordinates.keepGoing);
    }
    PointMap map;
    auto coordinates = options.coordinates;
    const int code =
        LoadPointMap(map, options.source, options.sigma ? &coordinates.precision : nullptr);
    if (code != kDone) {
        if (code == kReported) PrintNote(Translated(Text::kNothingTransformed));
        return code;
    }
    Input input(options.input);
    if (!input.IsOpen()) {
        ReportOpenFailure(options.input);
        return kReported;
    }
    Output output(options.output);
    if (!output.IsOpen()) {
        ReportOpenFailure(options.output);
        return kReported;
    }
    const auto result = TransformAll(input, output, map, options, coordinates);
    if (!result.Complete()) return kReported;
    if (!output.Commit()) {
        if (!options.output.empty()) throw WriteFailure(options.output);
        throw RuntimeError(ErrorNumber::kWriteFailed, Translated(Text::kCannotWriteAll));
    }
    return result.badLines == 0 ? kDone : kReported;
}

}  // namespace

Run AddTransform(CLI::App& command) {
    const auto options = std::make_shared<TransformOptions>();
    command.add_option("FILE", options->input, Translated(Text::kTransformArgument));
    AddSourceOptions(command, options->source);
    AddInverseOption(command, options->source, Text::kExactInverseOption);
    AddFileOption(command, "--output", options->output, Text::kOutputOption);
    command.add_flag("--sigma", options->sigma, Translated(Text::kTransformSigmaOption));
    const auto setDecimals = [options](const std::string& text) {
        options->coordinates.decimals = static_cast<int>(*ParseNumber(text));
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
    AddDrawingOptions(command, options->drawing);
    command.get_option("--decimal-comma")->description(Translated(Text::kDecimalCommaOption));
    AddLanguageOption(command);
    return [options] {
        options->coordinates.decimalComma = options->source.decimalComma;
        return RunTransform(*options);
    };
}

}  // namespace kv_tr::cli
