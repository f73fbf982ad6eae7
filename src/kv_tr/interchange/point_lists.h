// Two lists of coordinates, one a system, joined to control points by their identifiers.
#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/interchange/point_formats.h"

namespace kv_tr {

/// A point of one system.
struct ListedPoint {
    std::string id;
    Point point;
    Point sigma{};  ///< metres; zero where the list has none
};

/// The points of a list, or what is wrong with it.
struct PointList {
    PointLayout layout;
    std::vector<ListedPoint> points;  ///< those above the first problem
    bool hasSigmas = false;
    std::vector<Problem> problems;  ///< not more than PointReading::kMostProblems

    bool Complete() const { return problems.empty(); }
};

/// Reads a list: lines of identifier, first and second coordinate in metres, and with
/// `options.sigmas` one or two standard deviations. Separators, decimal commas, comments and
/// letters are those of CSV; a first line without coordinates is a header, and names in it that
/// stand for standard deviations are obeyed.
PointList ReadPointList(std::string_view bytes, const PointReadingOptions& options = {});
PointList ReadPointListOfFile(const std::string& fileName, const PointReadingOptions& options = {});

/// Control points of two lists, and what could not be joined.
struct JoinedLists {
    std::vector<ControlPoint> points;  ///< in the order of the source list
    std::vector<Point> sigmas;         ///< those of the destination list, a pair a point
    std::vector<std::string> onlyInSource;
    std::vector<std::string> onlyInDestination;
    /// Identifiers that one list or both have more than once; none of their points is joined.
    std::vector<std::string> repeated;
};

/// Joins points of one identifier. Nothing is joined by position.
JoinedLists JoinByIdentifier(const PointList& source, const PointList& destination);

}  // namespace kv_tr
