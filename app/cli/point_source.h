// Control points from a file of any format, or from two lists.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/interchange/point_formats.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// Where control points are.
struct PointSource {
    std::string file{};
    std::string target{};  // with a name, both files are lists of one system each
    std::string format{};  // the word of a format, or nothing
    bool decimalComma = false;
    bool sigmaColumns = false;  // behind the coordinates
    std::string axes{};         // of both systems, where the format is on maps
};

/// Control points, and how the files that held them were understood.
struct LoadedPoints {
    struct Understood {
        std::string file;
        std::string format;  // its word
        PointLayout layout;
    };

    std::vector<ControlPoint> points{};
    std::vector<Point> sigmas{};  // a pair a point, or empty
    std::string crs{};
    bool onMaps = false;  // whether the axes counted
    std::vector<Understood> files{};
};

/// Adds the option --format with its check.
void AddPointFormatOption(CLI::App& command, std::string& word);
/// The words of all formats: "listing, csv, ...".
std::string PointFormatWords();

/// Whether the options for a source agree; otherwise a note says why not.
bool IsSensible(const PointSource& source);

/// Loads control points. Nothing after what is wrong with them was reported: the first problem of a
/// listing, unless all of them are wanted, all those of other formats.
std::optional<LoadedPoints> LoadPoints(const PointSource& source, bool allProblems = false);

/// The identifiers of control points, as far as the files can be understood; reports nothing.
std::vector<std::string> IdentifiersIn(const PointSource& source);

/// Loads control points into an adjustment; false after what is wrong with them was reported.
bool LoadPoints(Adjustment& adjustment, const PointSource& source);

}  // namespace kv_tr::cli
