// Drawings in DXF through kv_tr transform.
#pragma once

#include <string>

#include "cli/parameters.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// Options of transform that drawings need beyond those of texts.
struct DrawingFileOptions {
    std::string axes;  // "ne", "es,en"; otherwise those of the parameters
    double tolerance = 0.001;
    bool overwrite = false;
};

void AddDrawingOptions(CLI::App& command, DrawingFileOptions& options);

/// Whether a drawing is to be transformed into a drawing: both files are named so.
bool IsDrawing(const std::string& input, const std::string& output);

/// Transforms a drawing; the exit code.
int TransformDrawingFile(const std::string& input, const std::string& output,
                         const ParameterSource& source, const DrawingFileOptions& options,
                         bool keepGoing);

}  // namespace kv_tr::cli
