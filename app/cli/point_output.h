// Control points and residual vectors into files.
#pragma once

#include <string>

#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/published/ml_strings.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// Adds an option that takes the word of a format to write.
void AddOutputFormatOption(CLI::App& command, const std::string& option, std::string& word,
                           Text description);

/// The format of the word, or else the one that the ending of the name stands for, if any.
std::optional<PointFormat> OutputFormat(const std::string& word, const std::string& fileName);

/// Writes points to a file, or to the standard output where none is named. Notes tell what the
/// format cannot hold; false after it was reported that nothing could be written.
bool WritePointsTo(const std::string& fileName, const PointsToWrite& what, PointFormat format);

/// Writes residual vectors, so many times longer than the residuals; without a scale the longest
/// one gets about a twentieth of the area, which a note tells. False as above.
bool WriteVectorsTo(const std::string& fileName, const PointsToWrite& what,
                    std::optional<double> scale);

}  // namespace kv_tr::cli
