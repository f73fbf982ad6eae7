// A transformation with all that is known about it, for the formats of other programs.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// How well a transformation fits its control points.
struct FitFigures {
    std::size_t points = 0;  ///< all
    std::size_t used = 0;
    int unknowns = 0;  ///< of both coordinates together
    int redundancy = 0;
    /// The standard deviation of a coordinate, metres: the root of the sum of squares of all
    /// residuals over the redundancy. Nothing without redundancy.
    std::optional<double> sigma0{};
    std::optional<double> rms{};  ///< that of Statistics, metres; nothing where it is not finite

    bool operator==(const FitFigures&) const = default;
};

/// A transformation and its circumstances. All but the transformation may be left out.
struct TransformationRecord {
    Transformation transformation;
    AxisMapping sourceAxes = AxisMapping::kEn;
    AxisMapping targetAxes = AxisMapping::kEn;
    std::string sourceCrs{};  ///< name, code or WKT of the source system, UTF-8
    std::string targetCrs{};
    std::string madeFrom{};  ///< name of the control-point file
    std::optional<FitFigures> fit{};
    std::vector<Point> hull{};           ///< corners around the source points in use
    std::vector<ControlPoint> points{};  ///< those that the transformation was fitted to

    bool operator==(const TransformationRecord&) const = default;
};

/// The record of a transformation that was fitted to points: with their figures and their hull.
TransformationRecord FittedRecord(std::span<const ControlPoint> points,
                                  const Transformation& transformation);

}  // namespace kv_tr
