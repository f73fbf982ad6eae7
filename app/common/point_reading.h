// What is wrong with a file of control points, in words.
#pragma once

#include <string>

#include "kv_tr/files/control_point_file.h"

namespace kv_tr::app {

/// Reads a file of control points in the code page of the component's files, with its columns of
/// standard deviations if they are wanted.
PointReading ReadPoints(const std::string& fileName, Comma comma, bool sigmas = false);

/// Says what is wrong with a line of the file.
std::string Complaint(const Problem& problem, const std::string& fileName);

}  // namespace kv_tr::app
