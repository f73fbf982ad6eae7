// Files of control points for Python: arrays in, arrays out.
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "python/arrays.h"
#include "python/binding.h"
#include "python/files.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;

Doubles RowsOf(const std::vector<Point>& points) {
    Doubles rows({static_cast<py::ssize_t>(points.size()), py::ssize_t{2}});
    double* at = rows.mutable_data();
    for (const auto& [first, second] : points) {
        *at++ = first;
        *at++ = second;
    }
    return rows;
}

/// Identifiers, source, target, and where there are any, standard deviations and marks of use.
py::tuple PointsOfFile(const Path& path, bool decimalComma, bool withSigmas,
                       const std::string& format, const std::string& axes) {
    const PointFile file = ReadPoints(path, decimalComma, withSigmas, format, axes);
    const std::size_t count = file.points.size();
    py::tuple ids(count);
    std::vector<Point> source, target;
    py::array_t<bool> used(static_cast<py::ssize_t>(count));
    bool allUsed = true;
    for (std::size_t i = 0; i < count; ++i) {
        const ControlPoint& point = file.points[i];
        ids[i] = point.id;
        source.push_back(point.source);
        target.push_back(point.destination);
        used.mutable_data()[i] = point.used;
        allUsed &= point.used;
    }
    const bool hasSigmas = withSigmas || !file.sigmas.empty();
    return py::make_tuple(ids, RowsOf(source), RowsOf(target),
                          hasSigmas ? py::object(RowsOf(file.sigmas)) : py::none(),
                          allUsed ? py::none() : py::object(used));
}

/// What the file lacks, as sentences.
std::vector<std::string> PointsToFile(const Path& path, const std::vector<std::string>& ids,
                                      const Doubles& source, const Doubles& target,
                                      const std::vector<bool>& used,
                                      const std::optional<Doubles>& sigma,
                                      const std::string& format, const std::string& axes) {
    const auto [sourceAxes, targetAxes] = AxesFrom(axes);
    std::vector<ControlPoint> points;
    std::vector<Point> sigmas;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto pair = [i](const Doubles& rows) {
            return Point{rows.data()[2 * i], rows.data()[2 * i + 1]};
        };
        points.push_back({ids[i], pair(source), pair(target), used.empty() || used[i]});
        if (sigma) sigmas.push_back(pair(*sigma));
    }
    const PointText written = WritePointFile(
        path,
        {.points = points, .sigmas = sigmas, .sourceAxes = sourceAxes, .targetAxes = targetAxes},
        format);
    std::vector<std::string> lost;
    if (written.excludedLeftOut > 0) {
        lost.push_back("points that are not in use were left out: " +
                       std::to_string(written.excludedLeftOut));
    }
    if (written.identifiersLeftOut) lost.push_back("the format has no identifiers");
    if (written.sigmasLeftOut) lost.push_back("the format has no standard deviations");
    return lost;
}

}  // namespace

void AddPointFiles(py::module_& module) {
    module.def("_read_points", PointsOfFile);
    module.def("_write_points", PointsToFile);
}

}  // namespace kv_tr::python
