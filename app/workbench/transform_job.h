// Transforming files in a thread of its own, with progress.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "common/coordinate_lines.h"
#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::workbench {

/// One file that is transformed into another.
struct TransformTask {
    std::string input;
    std::optional<std::string> text;  ///< what is transformed instead of a file
    std::string output;               ///< of a text nothing: its result is asked for
};

/// All that a job needs to know.
struct TransformPlan {
    PointMap map{};
    app::CoordinateOptions options{};
    AxisMapping from = AxisMapping::kEn;  ///< of drawings
    AxisMapping to = AxisMapping::kEn;
    bool mayReplace = false;  ///< whether results take the place of files that exist
    std::vector<TransformTask> tasks{};
};

/// Whether a file is transformed as a drawing, by the ending of its name.
bool IsDrawing(const std::string& fileName);

/// How far a file is.
struct FileProgress {
    enum class State { kWaiting, kRunning, kDone, kFailed, kCancelled };

    State state = State::kWaiting;
    double done = 0;             ///< 0 to 1
    std::uint64_t count = 0;     ///< lines of a text that were transformed, entities of a drawing
    std::uint64_t outside = 0;   ///< points outside the control points
    std::uint64_t badLines = 0;  ///< lines that stay as they were
    std::vector<std::string> problems{};  ///< each with the file and the line
};

/// Transforms the files of a plan one after the other. A result is complete or not there. A file
/// that fails does not keep the others from being done.
class TransformJob {
public:
    explicit TransformJob(TransformPlan plan);
    /// Cancels what is not done and waits for the thread.
    ~TransformJob();
    TransformJob(const TransformJob&) = delete;
    TransformJob& operator=(const TransformJob&) = delete;

    void Cancel() { cancelled_ = true; }
    bool IsOver() const { return over_; }
    void Wait();
    /// How far each file is at the moment.
    std::vector<FileProgress> Files() const;
    /// The transformed text of the plan's last task with a text, once that is done.
    std::string TransformedText() const;

private:
    void Run();
    void RunOne(std::size_t index);
    FileProgress TextDone(std::size_t index);
    FileProgress DrawingDone(std::size_t index);
    bool Note(std::size_t index, double done);

    const TransformPlan plan_;
    mutable std::mutex mutex_;
    std::vector<FileProgress> files_;
    std::string text_;
    std::atomic<bool> cancelled_ = false;
    std::atomic<bool> over_ = false;
    std::thread thread_;  // the last member: it starts when all is there
};

}  // namespace kv_tr::workbench
