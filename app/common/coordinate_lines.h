// Lines of points: two coordinates replaced, every other byte kept.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/lost_points.h"
#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::app {

/// How lines are read and written.
struct CoordinateOptions {
    int decimals = 3;
    bool noId = false;          // the coordinates are the first two fields
    bool keepGoing = false;     // bad lines stay as they are
    bool decimalComma = false;  // numbers are read and written with one, commas do not separate
    std::shared_ptr<const PointPrecision> precision{};  // standard deviations end each line
    std::uint64_t headerLines = 0;                      // of a text, which stay as they are
    /// Which fields of a line, from 0, are the first and the second coordinate; found by their
    /// places as ReadCoordinates says where there is nothing.
    std::optional<std::array<std::size_t, 2>> columns{};
    /// The hull of the control points: without a precision, points outside are counted by it.
    std::shared_ptr<const std::vector<Point>> hull{};
};

/// A line's point, and where its coordinates stand.
struct CoordinateFields {
    std::string_view id;  // empty where there is none
    std::string_view first;
    std::string_view second;
    Point point;
};

enum class LineKind { kPoint, kNoFields, kBad };

/// A line that was not transformed.
struct BadLine {
    std::uint64_t line = 0;  // from 1
    std::string text;
    NoSource reason = NoSource::kNone;  // why it has no inverse, if that is it

    bool operator==(const BadLine&) const = default;
};

/// Finds the coordinates of a line: the chosen columns; otherwise its second and third field, its
/// only two, or with noId the first two. A line is bad when it has no two numbers, or when they
/// seem to have decimal commas that the options do not tell of.
LineKind ReadCoordinates(std::string_view line, const CoordinateOptions& options,
                         CoordinateFields& fields);

/// Whether the coordinates of a line, or its only two fields, seem to have decimal commas that the
/// options do not tell of.
bool SeemsToHaveDecimalCommas(std::string_view line, const CoordinateOptions& options);

inline constexpr std::size_t kMostNamed = 20;

/// What became of a text of whole lines.
struct TransformedLines {
    std::string text;
    std::uint64_t lines = 0;
    std::uint64_t bytes = 0;  // of the lines in the text, as they were
    std::uint64_t badLines = 0;
    std::vector<BadLine> named{};               // the first of the bad lines, at most kMostNamed
    bool mayHaveDecimalCommas = false;          // a bad line seems to have them
    LostPoints lost{};                          // those of the bad lines that have no inverse
    PointPrecision::Extrapolation outside{};    // points outside the control points
    std::optional<std::string> stoppedAt;       // the bad line that ended the work, not in the text
    NoSource stoppedBecause = NoSource::kNone;  // why that line has no inverse, if that is it
};

/// Transforms lines, none of which is a header; one without fields stays as it is. Bad is also a
/// line whose point has no image or one that is not finite.
///
/// Reads nothing of the component but its decimal separator: several threads may be at it.
TransformedLines TransformLines(std::string_view text, const PointMap& map,
                                const CoordinateOptions& options);

}  // namespace kv_tr::app
