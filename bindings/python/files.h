// Files of control points and of parameters for Python: read whole or not at all, without messages.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr::python {

// Whatever is wrong with a file raises kv_tr.FileError. Numbers that seem to have decimal commas
// are wrong unless commas are said to be decimal.

struct PointsAndSigmas {
    std::vector<ControlPoint> points;
    std::vector<Point> sigmas;
};

/// Lines have standard deviations when those are asked for.
PointsAndSigmas ReadPoints(const std::filesystem::path& path, bool decimalComma, bool withSigmas);

/// Six numbers get the type given, otherwise affine. A polynomial file must have as many lines as
/// the type given has terms, if one is.
Transformation LoadParameters(const std::filesystem::path& path, bool decimalComma,
                              std::optional<Type> type);

/// ValueError when the ending is unknown or does not suit the type.
void SaveParameters(const Transformation& transformation, const std::filesystem::path& path);

}  // namespace kv_tr::python
