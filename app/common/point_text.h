// What a file of points could not hold, and how much its vectors are enlarged.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/interchange/point_formats.h"

namespace kv_tr::app {

/// Why there is no text under that name; empty when there is one.
std::string RefusalOf(const PointText& written, const std::string& name);

/// What the text lacks, a sentence each.
std::vector<std::string> LossesOf(const PointText& written, const std::string& name);

/// The greatest of 1, 2, 5, 10, 20, ... with which the longest residual takes at most a twentieth
/// of the diagonal of the points.
double VisibleScale(const PointsToWrite& what);

}  // namespace kv_tr::app
