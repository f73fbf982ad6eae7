// Points of a text of any length, transformed in blocks on all processors.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "common/coordinate_lines.h"
#include "common/lost_points.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::app {

/// How far the work was done.
struct CoordinateResult {
    std::uint64_t lines = 0;  // read, the one that ended the work included
    std::uint64_t badLines = 0;
    std::vector<BadLine> named{};             // the first of them, at most kMostNamed
    LostPoints lost{};                        // those of the bad lines that have no inverse
    PointPrecision::Extrapolation outside{};  // points outside the control points
    std::optional<std::string> endedBy;       // the bad line that did
    NoSource endedBecause = NoSource::kNone;  // why that line has no inverse, if that is it
    bool cancelled = false;
    bool mayHaveDecimalCommas = false;  // a bad line seems to have them

    bool Complete() const { return !endedBy && !cancelled; }
};

/// Where transformed lines go, and who is told. Each is called in the caller's thread.
struct CoordinateOutput {
    std::function<void(std::string_view)> write;
    /// Hands over what was written: nothing more has arrived yet, and somebody may be waiting.
    std::function<void()> flush = [] {};
    /// Is told now and then how many lines and bytes are done; false cancels the work.
    std::function<bool(std::uint64_t lines, std::uint64_t bytes)> goOn;
};

/// Transforms all lines of the source and writes them with their ends, in their order; a bad line
/// ends the work unless the options keep it going. Memory does not grow with the text. Throws
/// RuntimeError as BlockReader does, after the lines before the trouble.
CoordinateResult TransformText(std::streambuf& source, const CoordinateOutput& output,
                               const PointMap& map, const CoordinateOptions& options);

/// Shows the user which line of a file ended the work, or how many bad lines were passed on.
void ReportBadLines(const CoordinateResult& result, const std::string& fileName);

}  // namespace kv_tr::app
