// Whole data sets through kv_tr transform.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/parameters.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// Options of transform that data sets need beyond those of texts.
struct LayerOptions {
    std::string format;  // a driver of GDAL
    std::string axes;    // "ne", "es,en"; otherwise those of the parameters
    std::string targetCrs;
    double curveTolerance = 0.001;
    bool overwrite = false;
    bool keepGoing = false;

    /// The first option given that a text has no use for; empty for none.
    std::string First() const;
};

void AddLayerOptions(CLI::App& command, LayerOptions& options);

/// What a file holds. Only a drawing that is to be one again is a drawing.
enum class TaskKind : std::uint8_t { kText, kDataSet, kDrawing };

/// A file and where its points, transformed, go.
struct TransformTask {
    std::string input;   // "-" for the standard input
    std::string output;  // empty for the standard output
    TaskKind kind = TaskKind::kText;
    bool intoFolder = false;
    bool fromFolder = false;
};

/// What is to be done with files and folders. False after it was told why it cannot be done.
bool PlanTasks(std::vector<TransformTask>& tasks, const std::vector<std::string>& inputs,
               const std::string& output, const LayerOptions& options);

/// Transforms the data sets among the tasks; the exit code.
int TransformDataSets(const std::vector<TransformTask>& tasks, const ParameterSource& source,
                      const LayerOptions& options);

}  // namespace kv_tr::cli
