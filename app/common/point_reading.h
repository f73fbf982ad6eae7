// What is wrong with a file of control points, in words.
#pragma once

#include <string>

#include "kv_tr/files/control_point_file.h"

namespace kv_tr::app {

/// Reads a file of control points in the code page of the component's files.
PointReading ReadPoints(const std::string& fileName, Comma comma);

/// Says what is wrong with a line of the file.
std::string Complaint(const Problem& problem, const std::string& fileName);

}  // namespace kv_tr::app
