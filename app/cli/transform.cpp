// kv_tr transform: the points of a file or of the standard input, line by line.
#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string_view>

#include "cli/host.h"
#include "cli/parameters.h"
#include "cli/terminal.h"
#include "model/evaluate.h"
#include "support/errors.h"
#include "support/line_reader.h"
#include "support/message.h"
#include "support/ml_strings.h"
#include "support/number_text.h"
#include "support/replacing_file.h"

namespace kv_tr::cli {
namespace {

struct TransformOptions {
    std::string input = "-";
    ParameterSource source;
    std::string output;
    int decimals = 3;
    bool noId = false;
    bool keepGoing = false;
};

/// Where a line is read from.
class Input {
public:
    explicit Input(const std::string& name) : standard_(name == "-"), name_(name) {
        std::error_code error;
        if (standard_) {
            std::ios::sync_with_stdio(false);
            name_ = Text(TextId::kStandardInput);
        } else if (!std::filesystem::is_directory(name, error)) {
            stream_.open(name, std::ios::binary);
            const auto size = std::filesystem::file_size(name, error);
            if (!error) size_ = size;
        }
    }

    bool IsOpen() const { return standard_ || stream_.is_open(); }
    std::streambuf& Source() { return *(standard_ ? std::cin.rdbuf() : stream_.rdbuf()); }
    const std::string& Name() const { return name_; }
    std::uint64_t Size() const { return size_; }  // 0 when it is not known

private:
    bool standard_;
    std::string name_;
    std::ifstream stream_;
    std::uint64_t size_ = 0;
};

/// Where the lines go: the standard output, or a file that is complete or not there.
class Output {
public:
    explicit Output(const std::string& name) {
        if (!name.empty()) file_.emplace(name);
    }

    bool IsOpen() const { return !file_ || file_->IsOpen(); }

    void Write(std::string_view bytes) {
        if (file_) {
            file_->Write(bytes);
        } else {
            std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        }
    }

    bool Commit() {
        return file_ ? file_->Commit() : std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    }

private:
    std::optional<ReplacingFile> file_;
};

/// The fields of a line, found without changing it.
struct Field {
    std::size_t begin;
    std::size_t end;
};

std::vector<Field> FirstFields(std::string_view line, std::size_t count) {
    constexpr std::string_view kSeparators = " \t,;'\"";
    std::vector<Field> fields;
    std::size_t end = 0;
    while (fields.size() < count) {
        const std::size_t begin = line.find_first_not_of(kSeparators, end);
        if (begin == line.npos) break;
        end = std::min(line.find_first_of(kSeparators, begin), line.size());
        fields.push_back({begin, end});
    }
    return fields;
}

/// Rewrites the two coordinates of a line in place, everything else stays. The coordinates are the
/// second and third field, or the only two, or with noId the first two. Nothing for a line without
/// two numbers and for an image that is not finite; a line without fields stays as it is.
std::optional<std::string> TransformLine(std::string_view line, const Evaluator& evaluate,
                                         const TransformOptions& options) {
    const auto fields = FirstFields(line, options.noId ? 2 : 3);
    if (fields.empty()) return std::string(line);
    if (fields.size() < 2) return std::nullopt;
    const Field first = fields[fields.size() - 2];
    const Field second = fields[fields.size() - 1];
    const auto number = [line](Field f) {
        return ParseNumber(line.substr(f.begin, f.end - f.begin));
    };
    const auto firstNumber = number(first);
    const auto secondNumber = number(second);
    if (!firstNumber || !secondNumber) return std::nullopt;
    const PlanePoint image = evaluate({*firstNumber, *secondNumber});
    if (!std::isfinite(image.first) || !std::isfinite(image.second)) return std::nullopt;

    const auto decimals = static_cast<std::uint8_t>(options.decimals);
    std::string transformed(line.substr(0, first.begin));
    transformed += FormatFixed(image.first, decimals, 0);
    transformed += line.substr(first.end, second.begin - first.end);
    transformed += FormatFixed(image.second, decimals, 0);
    transformed += line.substr(second.end);
    return transformed;
}

void ReportOpenFailure(const std::string& name) {
    ShowMessage(GetMlString(70, "Fájl megnyitási hiba: ") + name, Icon::kExclamation);
}

/// Transforms all lines; false when a bad line ended the work.
bool TransformLines(Input& input, Output& output, const Evaluator& evaluate,
                    const TransformOptions& options) {
    Progress progress(input.Size(), options.output.empty() && OutputIsTerminal());
    LineReader reader(input.Source());
    std::uint64_t lines = 0;
    std::uint64_t bytes = 0;
    std::uint64_t badLines = 0;
    if (reader.SkipUtf8Mark()) output.Write("\xEF\xBB\xBF");
    while (reader.Next()) {
        ++lines;
        bytes += reader.Line().size() + reader.Ending().size();
        const auto transformed = TransformLine(reader.Line(), evaluate, options);
        if (!transformed && !options.keepGoing) {
            ShowMessage(Text(TextId::kBadLine, {input.Name(), std::to_string(lines),
                                                Excerpt(std::string(reader.Line()))}),
                        Icon::kExclamation);
            return false;
        }
        if (!transformed) ++badLines;
        output.Write(transformed ? std::string_view(*transformed) : reader.Line());
        output.Write(reader.Ending());
        progress.Show(lines, bytes);
    }
    if (badLines > 0) {
        ShowMessage(Text(TextId::kLinesKept, {std::to_string(badLines), std::to_string(lines)}),
                    Icon::kExclamation);
    }
    return true;
}

int RunTransform(const TransformOptions& options) {
    clsTr transformation;
    if (const int code = LoadParameters(transformation, options.source); code != kDone) {
        if (code == kReported) PrintNote(Text(TextId::kNothingTransformed));
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
    if (!TransformLines(input, output, Evaluator(transformation.udtTrPrm()), options))
        return kReported;
    if (!output.Commit()) {
        throw RuntimeError(ErrorNumber::kWriteFailed, Text(TextId::kWriteFailed));
    }
    return ReportedMessages().empty() ? kDone : kReported;
}

}  // namespace

Run AddTransform(CLI::App& command) {
    const auto options = std::make_shared<TransformOptions>();
    command.add_option("FILE", options->input, Text(TextId::kFile));
    AddSourceOptions(command, options->source);
    command.add_option("--output", options->output, Text(TextId::kOutput))->type_name("FILE");
    const auto setDecimals = [options](const std::string& text) {
        options->decimals = static_cast<int>(*ParseNumber(text));
    };
    command.add_option_function<std::string>("--decimals", setDecimals, Text(TextId::kDecimals))
        ->type_name("N")
        ->default_str(std::to_string(options->decimals))
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            const bool suitable =
                number && *number >= 0 && *number <= 15 && *number == std::floor(*number);
            return suitable ? "" : Text(TextId::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--no-id", options->noId, Text(TextId::kNoId));
    command.add_flag("--keep-going", options->keepGoing, Text(TextId::kKeepGoing));
    AddLanguageOption(command);
    return [options] { return RunTransform(*options); };
}

}  // namespace kv_tr::cli
