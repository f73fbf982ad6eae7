// Points of a text of any length, transformed in blocks on all processors.
#include "common/coordinate_file.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

#include "common/excerpt.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr::app {
namespace {

/// Lines on their way: transformed by another thread, or by the caller's when they are taken. The
/// lines stay here until then, so that none are lost with a thread that does not start.
class Block {
public:
    Block(std::string lines, const PointMap& map, const CoordinateOptions& options)
        : lines_(std::move(lines)), map_(map), options_(options) {}

    void StartThread() {
        try {
            done_ = std::async(std::launch::async, [this] { return Transformed(); });
        } catch (const std::system_error&) {  // no thread is to be had
        }
    }

    bool IsReady() const {
        constexpr std::chrono::microseconds kMoment{100};
        return !done_.valid() || done_.wait_for(kMoment) == std::future_status::ready;
    }

    TransformedLines Take() { return done_.valid() ? done_.get() : Transformed(); }

private:
    TransformedLines Transformed() const { return TransformLines(lines_, map_, options_); }

    const std::string lines_;
    const PointMap& map_;
    const CoordinateOptions& options_;
    std::future<TransformedLines> done_;  // the last member: its end waits for the thread
};

/// Transforms the blocks of a text, several at a time, and writes them in their order.
class Pipeline {
public:
    Pipeline(std::streambuf& source, const CoordinateOutput& output, const PointMap& map,
             CoordinateOptions options)
        : reader_(source), output_(output), map_(map), options_(std::move(options)) {}

    CoordinateResult Run() {
        if (reader_.SkipUtf8Mark()) output_.write("\xEF\xBB\xBF");
        while (result_.Complete() && ReadBlock()) {
            WriteUntil(processors_);
            while (!underWay_.empty() && reader_.IsWaiting()) {
                if (!underWay_.front().IsReady()) continue;
                WriteUntil(underWay_.size() - 1);
                output_.flush();
            }
        }
        WriteUntil(0);
        if (result_.Complete() && bytesDone_ != bytesRead_) throw Incomplete();
        return result_;
    }

private:
    /// Reads a block and has it transformed; another thread does that where one pays. False at the
    /// end of the text.
    bool ReadBlock() {
        std::string block;
        try {
            if (!reader_.Next(block)) return false;
        } catch (const TextError& error) {
            WriteUntil(0);
            if (!result_.Complete()) return false;
            throw ReadFailure(error);
        }
        bytesRead_ += block.size();
        PassHeaders(block);
        constexpr std::size_t kSmall = 1 << 14;
        const bool pays = processors_ > 1 && block.size() >= kSmall;
        underWay_.emplace_back(std::move(block), map_, options_);
        if (pays) underWay_.back().StartThread();
        return true;
    }

    /// Writes the header lines that a block begins with, and takes them off.
    void PassHeaders(std::string& block) {
        std::string_view rest = block;
        for (; result_.lines < options_.headerLines && !rest.empty(); ++result_.lines)
            TakeLine(rest);
        const std::size_t size = block.size() - rest.size();
        output_.write(std::string_view(block).substr(0, size));
        bytesDone_ += size;
        block.erase(0, size);
    }

    /// The error of a text whose lines have not all come out.
    RuntimeError Incomplete() const {
        return {ErrorNumber::kWriteFailed,
                Translated(Text::kPartTransformed,
                           {std::to_string(bytesDone_), std::to_string(bytesRead_)})};
    }

    /// Writes the oldest blocks until no more than so many are left, or the work ends.
    void WriteUntil(std::size_t left) {
        while (underWay_.size() > left) {
            TransformedLines done = underWay_.front().Take();
            underWay_.pop_front();
            output_.write(done.text);
            for (BadLine& bad : done.named) {
                if (result_.named.size() == kMostNamed) break;
                bad.line += result_.lines;
                result_.named.push_back(std::move(bad));
            }
            result_.lines += done.lines;
            result_.badLines += done.badLines;
            result_.mayHaveDecimalCommas |= done.mayHaveDecimalCommas;
            bytesDone_ += done.bytes;
            result_.outside.Add(done.outside);
            for (std::size_t i = 0; i < done.lost.size(); ++i) result_.lost[i] += done.lost[i];
            result_.endedBy = std::move(done.stoppedAt);
            result_.endedBecause = done.stoppedBecause;
            result_.cancelled = !output_.goOn(result_.lines, bytesDone_);
            if (!result_.Complete()) underWay_.clear();
        }
    }

    const std::size_t processors_ = std::max(1U, std::thread::hardware_concurrency());
    BlockReader reader_;
    const CoordinateOutput& output_;
    const PointMap map_;
    const CoordinateOptions options_;
    std::deque<Block> underWay_;
    CoordinateResult result_;
    std::uint64_t bytesRead_ = 0;
    std::uint64_t bytesDone_ = 0;
};

}  // namespace

CoordinateResult TransformText(std::streambuf& source, const CoordinateOutput& output,
                               const PointMap& map, const CoordinateOptions& options) {
    return Pipeline(source, output, map, options).Run();
}

void ReportBadLines(const CoordinateResult& result, const std::string& fileName) {
    const std::string lines = std::to_string(result.lines);
    if (result.endedBy && result.endedBecause != NoSource::kNone) {
        ShowMessage(
            Translated(Text::kLineHasNoInverse, {fileName, lines, ReasonText(result.endedBecause),
                                                 Excerpt(*result.endedBy)}),
            Icon::kExclamation);
    } else if (result.endedBy) {
        ShowMessage(
            Translated(Text::kBadCoordinateLine, {fileName, lines, Excerpt(*result.endedBy)}),
            Icon::kExclamation);
    } else if (result.badLines > 0) {
        std::string text =
            Translated(Text::kBadLinesKept, {std::to_string(result.badLines), lines});
        for (std::size_t i = 1; i < result.lost.size(); ++i) {
            if (result.lost[i] == 0) continue;
            text += "\r\n" +
                    Translated(Text::kLinesWithoutInverse, {std::to_string(result.lost[i]),
                                                            ReasonText(static_cast<NoSource>(i))});
        }
        ShowMessage(text, Icon::kExclamation);
    }
}

}  // namespace kv_tr::app
