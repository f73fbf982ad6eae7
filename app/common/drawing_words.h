// What became of a drawing, in words.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/interchange/drawing.h"

namespace kv_tr::app {

/// What is wrong with a drawing or stays as it was, each with its line.
std::vector<std::string> DrawingProblems(const DrawingReport& report, const std::string& name);

/// What became of the entities of a drawing that was written whole.
std::vector<std::string> DrawingNotes(const DrawingReport& report, const std::string& name,
                                      double tolerance);

}  // namespace kv_tr::app
