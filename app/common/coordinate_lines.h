// Lines of points: two coordinates replaced, every other byte kept.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "kv_tr/model/transformation.h"

namespace kv_tr::app {

/// How lines are read and written.
struct CoordinateOptions {
    int decimals = 3;
    bool noId = false;          // the coordinates are the first two fields
    bool keepGoing = false;     // bad lines stay as they are
    bool decimalComma = false;  // numbers are read and written with one, commas do not separate
};

/// What became of a text of whole lines.
struct TransformedLines {
    std::string text;
    std::uint64_t lines = 0;
    std::uint64_t bytes = 0;  // of the lines in the text, as they were
    std::uint64_t badLines = 0;
    bool mayHaveDecimalCommas = false;     // a bad line seems to have them
    std::optional<std::string> stoppedAt;  // the bad line that ended the work, not in the text
};

/// Transforms lines. The coordinates are the second and third field of a line, or
/// the only two, or with noId the first two; a line without fields stays as it is. A line is bad
/// when it has no two numbers, when their image is not finite, or when its numbers seem to have
/// decimal commas that the options do not tell of.
///
/// Reads nothing of the component but its decimal separator: several threads may be at it.
TransformedLines TransformLines(std::string_view text, const Transformation& transformation,
                                const CoordinateOptions& options);

}  // namespace kv_tr::app
