// Points of a text of any length, transformed in blocks on all processors.
#include "common/coordinate_file.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <future>
#include <thread>
#include <utility>

#include "common/excerpt.h"
#include "support/decimal_commas.h"
#include "support/errors.h"
#include "support/line_reader.h"
#include "support/message.h"
#include "support/ml_strings.h"

namespace kv_tr::host {
namespace {

/// Transforms the blocks of a text, several at a time, and writes them in their order.
class Pipeline {
public:
    Pipeline(std::streambuf& source, const CoordinateOutput& output, const TR_PRM& record,
             const CoordinateOptions& options)
        : reader_(source), output_(output), record_(record), options_(options) {}

    CoordinateResult Run() {
        if (reader_.SkipUtf8Mark()) output_.write("\xEF\xBB\xBF");
        while (result_.Complete() && ReadBlock()) {
            WriteUntil(processors_);
            while (!underWay_.empty() && reader_.IsWaiting()) {
                constexpr std::chrono::microseconds kMoment{100};
                if (underWay_.front().wait_for(kMoment) == std::future_status::timeout) continue;
                WriteUntil(underWay_.size() - 1);
                output_.flush();
            }
        }
        WriteUntil(0);
        return result_;
    }

private:
    /// Reads a block and has it transformed: in another thread, or when it is needed where a
    /// thread would not pay. False at the end of the text.
    bool ReadBlock() {
        std::string block;
        try {
            if (!reader_.Next(block)) return false;
        } catch (const RuntimeError&) {
            WriteUntil(0);
            if (!result_.Complete()) return false;
            throw;
        }
        if (!read_) result_.mayHaveDecimalCommas = HaveDecimalCommas(block);
        read_ = true;
        constexpr std::size_t kSmall = 1 << 14;
        const auto when = processors_ == 1 || block.size() < kSmall
                              ? std::launch::deferred
                              : std::launch::async | std::launch::deferred;
        underWay_.push_back(std::async(when, [this, lines = std::move(block)] {
            return TransformLines(lines, record_, options_);
        }));
        return true;
    }

    /// Whether the first lines of a text look like it.
    bool HaveDecimalCommas(std::string_view text) const {
        constexpr int kEnough = 30;
        for (int line = 0; line < kEnough && !text.empty(); ++line) {
            const std::string_view fields = TakeLine(text).text;
            if (HasDecimalCommas(options_.noId ? fields : WithoutIdentifier(fields), 2))
                return true;
        }
        return false;
    }

    /// Writes the oldest blocks until no more than so many are left, or the work ends.
    void WriteUntil(std::size_t left) {
        while (underWay_.size() > left) {
            TransformedLines done = underWay_.front().get();
            underWay_.pop_front();
            output_.write(done.text);
            result_.lines += done.lines;
            result_.badLines += done.badLines;
            bytes_ += done.bytes;
            result_.endedBy = std::move(done.stoppedAt);
            result_.cancelled = !output_.goOn(result_.lines, bytes_);
            if (!result_.Complete()) underWay_.clear();
        }
    }

    const std::size_t processors_ = std::max(1U, std::thread::hardware_concurrency());
    BlockReader reader_;
    const CoordinateOutput& output_;
    const TR_PRM record_;
    const CoordinateOptions options_;
    std::deque<std::future<TransformedLines>> underWay_;
    CoordinateResult result_;
    std::uint64_t bytes_ = 0;
    bool read_ = false;  // a block
};

}  // namespace

CoordinateResult TransformText(std::streambuf& source, const CoordinateOutput& output,
                               const TR_PRM& record, const CoordinateOptions& options) {
    return Pipeline(source, output, record, options).Run();
}

void ReportBadLines(const CoordinateResult& result, const std::string& fileName) {
    const std::string lines = std::to_string(result.lines);
    if (result.endedBy) {
        ShowMessage(FillPlaces(GetMlString(1030, "{0}, {1}. sor: nem számítható át: {2}"),
                               {fileName, lines, Excerpt(*result.endedBy)}),
                    Icon::kExclamation);
    } else if (result.badLines > 0) {
        ShowMessage(FillPlaces(GetMlString(1032,
                                           "{1} sorból {0} hibás, ezek változatlanul "
                                           "maradtak."),
                               {std::to_string(result.badLines), lines}),
                    Icon::kExclamation);
    }
}

}  // namespace kv_tr::host
