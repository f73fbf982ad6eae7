// kv_tr transform: the points of a file or of the standard input, line by line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <filesystem>
#include <fstream>
#include <future>
#include <iostream>
#include <optional>
#include <string_view>
#include <thread>

#include "cli/host.h"
#include "cli/parameters.h"
#include "cli/terminal.h"
#include "cli/transform_lines.h"
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
    LineFormat format;
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

    /// Hands over what has been written, to whoever reads the standard output.
    void Flush() {
        if (!file_) std::fflush(stdout);
    }

    bool Commit() {
        return file_ ? file_->Commit() : std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    }

private:
    std::optional<ReplacingFile> file_;
};

void ReportOpenFailure(const std::string& name) {
    ShowMessage(GetMlString(70, "Fájl megnyitási hiba: ") + name, Icon::kExclamation);
}

/// Transforms the blocks of an input, several at a time, and writes them in their order.
class Job {
public:
    Job(Input& input, Output& output, const TR_PRM& record, const TransformOptions& options)
        : reader_(input.Source()),
          progress_(input.Size(), options.output.empty() && OutputIsTerminal()),
          input_(input),
          output_(output),
          record_(record),
          format_(options.format) {}

    /// False when a bad line ended the work.
    bool Run() {
        if (reader_.SkipUtf8Mark()) output_.Write("\xEF\xBB\xBF");
        while (!stopped_ && ReadBlock()) {
            WriteUntil(processors_);
            while (!underWay_.empty() && reader_.IsWaiting()) {
                constexpr std::chrono::microseconds kMoment{100};
                if (underWay_.front().wait_for(kMoment) == std::future_status::timeout) continue;
                WriteUntil(underWay_.size() - 1);
                output_.Flush();
            }
        }
        WriteUntil(0);
        if (badLines_ > 0 && !stopped_) {
            ShowMessage(
                Text(TextId::kLinesKept, {std::to_string(badLines_), std::to_string(lines_)}),
                Icon::kExclamation);
        }
        return !stopped_;
    }

private:
    /// Reads a block and has it transformed: in another thread, or when it is needed where a
    /// thread would not pay. False at the end of the input.
    bool ReadBlock() {
        std::string block;
        try {
            if (!reader_.Next(block)) return false;
        } catch (const RuntimeError&) {
            WriteUntil(0);
            if (stopped_) return false;
            throw;
        }
        constexpr std::size_t kSmall = 1 << 14;
        const auto when = processors_ == 1 || block.size() < kSmall
                              ? std::launch::deferred
                              : std::launch::async | std::launch::deferred;
        underWay_.push_back(std::async(when, [this, lines = std::move(block)] {
            return TransformLines(lines, record_, format_);
        }));
        return true;
    }

    /// Writes the oldest blocks until no more than so many are left, or one has a bad line.
    void WriteUntil(std::size_t left) {
        while (underWay_.size() > left) {
            const TransformedLines done = underWay_.front().get();
            underWay_.pop_front();
            output_.Write(done.text);
            lines_ += done.lines;
            bytes_ += done.bytes;
            badLines_ += done.badLines;
            progress_.Show(lines_, bytes_);
            if (!done.stoppedAt) continue;
            ShowMessage(Text(TextId::kBadLine,
                             {input_.Name(), std::to_string(lines_), Excerpt(*done.stoppedAt)}),
                        Icon::kExclamation);
            stopped_ = true;
            underWay_.clear();
        }
    }

    const std::size_t processors_ = std::max(1U, std::thread::hardware_concurrency());
    BlockReader reader_;
    Progress progress_;
    Input& input_;
    Output& output_;
    const TR_PRM record_;
    const LineFormat format_;
    std::deque<std::future<TransformedLines>> underWay_;
    std::uint64_t lines_ = 0;
    std::uint64_t bytes_ = 0;
    std::uint64_t badLines_ = 0;
    bool stopped_ = false;
};

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
    if (!Job(input, output, transformation.udtTrPrm(), options).Run()) return kReported;
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
        options->format.decimals = static_cast<int>(*ParseNumber(text));
    };
    command.add_option_function<std::string>("--decimals", setDecimals, Text(TextId::kDecimals))
        ->type_name("N")
        ->default_str(std::to_string(options->format.decimals))
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            const bool suitable =
                number && *number >= 0 && *number <= 15 && *number == std::floor(*number);
            return suitable ? "" : Text(TextId::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--no-id", options->format.noId, Text(TextId::kNoId));
    command.add_flag("--keep-going", options->format.keepGoing, Text(TextId::kKeepGoing));
    AddLanguageOption(command);
    return [options] { return RunTransform(*options); };
}

}  // namespace kv_tr::cli
