// What is wrong with a file of control points, in words.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/text/text_id.h"

namespace kv_tr::app {

/// Reads a listing of control points in the code page of the component's files, or a file of
/// another format if there is one.
PointFile ReadPoints(const std::string& fileName, Comma comma,
                     std::optional<PointFormat> format = PointFormat::kListing);

/// Says what is wrong with a line of a listing.
std::string Complaint(const Problem& problem, const std::string& fileName);

/// Says what is wrong with a field of a file in any format.
std::string FieldComplaint(const Problem& problem, const std::string& fileName);

/// Identifiers of a file, how many and the first few of them by name, in a text that has places for
/// the file, the number and the names.
std::string IdentifiersNote(Text text, const std::string& fileName,
                            const std::vector<std::string>& ids);

}  // namespace kv_tr::app
