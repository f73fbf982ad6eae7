// Drawings in DXF: their entities transformed, everything else byte for byte as it was.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr {

/// One thing that is wrong with a drawing, or that cannot be transformed.
struct DrawingProblem {
    enum class Kind {
        // These end the work whatever the options say.
        kNoDrawing,      ///< the file does not begin as a drawing does
        kNotAGroupCode,  ///< a line should have been the code of a group
        kNotANumber,     ///< a value should have been a number
        kEndsEarly,      ///< the file ends inside a group, or without EOF
        // These are of one entity.
        kMissingCoordinate,  ///< a point lacks its y, or a curve what it needs
        kTiltedPlane,        ///< the entity lies in a plane that is not horizontal
        kNoImage,            ///< a point has no image, or none that is finite
    };

    Kind kind = Kind::kNoDrawing;
    std::uint64_t line = 0;  ///< from 1; in a binary file the number of the group
    std::string entity{};    ///< its type
    std::string handle{};    ///< of the entity, where it has one
    std::string text{};      ///< the value
    NoSource reason = NoSource::kNone;

    bool operator==(const DrawingProblem&) const = default;
};

struct DrawingOptions {
    /// What the coordinates mean before the transformation and after: x and y of a drawing point to
    /// the east and to the north.
    AxisMapping from = AxisMapping::kEn;
    AxisMapping to = AxisMapping::kEn;
    /// How far a polyline may be from the curve that it stands for, in units of the result.
    double tolerance = 0.001;
    /// Entities that cannot be transformed stay as they are; otherwise they end the work.
    bool keepGoing = false;
};

/// What became of a drawing. The counts are by the type of entity.
struct DrawingReport {
    using Counts = std::map<std::string, std::uint64_t>;

    static constexpr std::size_t kMostProblems = 20;

    std::uint64_t moved = 0;  ///< entities
    Counts polylines{};       ///< curves that became polylines
    Counts ellipses{};        ///< circles and arcs that became ellipses
    /// Entities that were turned and scaled as nearly as their type allows, because the
    /// transformation is no similarity; and by how much the scale at one of them depends on the
    /// direction at most, in relation to the greatest scale.
    Counts nearly{};
    double greatestDeparture = 0;
    std::uint64_t views = 0;    ///< twisted or inclined views that stay as they were
    Counts unknown{};           ///< entities and objects with coordinates that cannot be moved
    std::uint64_t unmoved = 0;  ///< known entities that stay as they were, because of problems
    std::vector<DrawingProblem> problems{};  ///< not more than kMostProblems
    std::uint64_t firstUnknownLine = 0;
    bool cancelled = false;
    bool complete = false;  ///< all was written
};

/// Where a transformed drawing goes, and who is told how many lines and bytes are done; false
/// cancels the work. What was written is of use only if the report says that it is complete.
struct DrawingOutput {
    std::function<void(std::string_view)> write;
    std::function<bool(std::uint64_t lines, std::uint64_t bytes)> goOn;
};

/// Transforms the entities of the model in a drawing, text or binary. Numbers that change are the
/// shortest texts that read back to the same double; heights above the plane are kept.
///
/// Under similarities every entity keeps its type. Under other linear transformations circles and
/// arcs become ellipses (polylines where the file is too old for ellipses), bulges become lines;
/// under the others all curves become polylines. Memory does not grow with the bytes.
DrawingReport TransformDrawing(std::string_view bytes, const PointMap& map,
                               const DrawingOptions& options, const DrawingOutput& output);

}  // namespace kv_tr
