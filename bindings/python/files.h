// Files of control points and of parameters for Python: read whole or not at all, without messages.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr::python {

// Whatever is wrong with a file raises kv_tr.FileError. Numbers that seem to have decimal commas
// are wrong unless commas are said to be decimal.

/// The axes of source and destination: a word for each with a comma between, or one for both;
/// ValueError for any other text.
std::pair<AxisMapping, AxisMapping> AxesFrom(const std::string& words);

/// Control points of any format, which is recognised where its word is empty; ValueError for an
/// unknown word. Lines have standard deviations when those are asked for.
PointFile ReadPoints(const std::filesystem::path& path, bool decimalComma, bool withSigmas,
                     const std::string& format, const std::string& axes);

/// Writes control points in the format of the word, or else of the file's ending. ValueError for an
/// unknown word or ending, and where the format cannot hold the points at all.
PointText WritePointFile(const std::filesystem::path& path, const PointsToWrite& points,
                         const std::string& format);

/// Six numbers get the type given, otherwise affine. A polynomial file must have as many lines as
/// the type given has terms, if one is.
Transformation LoadParameters(const std::filesystem::path& path, bool decimalComma,
                              std::optional<Type> type);

/// ValueError when the ending is unknown or does not suit the type.
void SaveParameters(const Transformation& transformation, const std::filesystem::path& path);

}  // namespace kv_tr::python
