// Fits for Python: arrays in, arrays out. The package's _fit.py makes results of them.
#include "kv_tr/fit/fit.h"

#include <pybind11/stl/filesystem.h>

#include <cstring>
#include <limits>

#include "python/arrays.h"
#include "python/binding.h"
#include "python/files.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;
using Flags = py::array_t<bool, py::array::c_style>;

static_assert(sizeof(Residual) == 2 * sizeof(double));

void MakeReadOnly(const py::array& array) { array.attr("setflags")(py::arg("write") = false); }

/// A copy of points that nobody can change.
Doubles KeptPoints(const py::object& given, const char* name) {
    const Doubles points = PointsFrom(given, name);
    CheckFinitePoints(ReadOnly(points), name);
    Doubles kept({points.shape(0), py::ssize_t{2}}, points.data());
    MakeReadOnly(kept);
    return kept;
}

bool CanBeFitted(Type type) { return type >= Type::kAffine5 && type <= Type::kBilinear; }

Type FittedType(const py::object& given) {
    const auto type = Converted<Type>(given, "type", "a word or a Type");
    if (CanBeFitted(type)) return type;
    throw py::value_error("'" + WordOf(type) + "' cannot be fitted");
}

/// The points of kept arrays of one length, without identifiers.
std::vector<ControlPoint> Joined(const Doubles& source, const Doubles& target, const Flags& used) {
    std::vector<ControlPoint> points(static_cast<std::size_t>(used.size()));
    const double* from = source.data();
    const double* to = target.data();
    const bool* isUsed = used.data();
    for (ControlPoint& point : points) {
        point.source = {from[0], from[1]};
        point.destination = {to[0], to[1]};
        point.used = *isUsed++;
        from += 2;
        to += 2;
    }
    return points;
}

Doubles ResidualRows(const FitResult& result, py::ssize_t count) {
    Doubles residuals({count, py::ssize_t{2}});
    if (result.outcome.Computed()) {
        std::memcpy(residuals.mutable_data(), result.residuals.data(),
                    static_cast<std::size_t>(residuals.nbytes()));
    } else {
        std::fill_n(residuals.mutable_data(), residuals.size(),
                    std::numeric_limits<double>::quiet_NaN());
    }
    MakeReadOnly(residuals);
    return residuals;
}

py::tuple Fitted(const Doubles& source, const Doubles& target, const Flags& used, Type type) {
    FitResult result;
    {
        const py::gil_scoped_release unlocked;
        result = Fit(Joined(source, target, used), type);
    }
    const auto& [rms, rmsFirst, rmsSecond, meanFirst, meanSecond] = result.statistics;
    const bool computed = result.outcome.Computed();
    const auto figures = computed ? py::make_tuple(rms, rmsFirst, rmsSecond, meanFirst, meanSecond)
                                  : py::tuple(py::make_tuple(NAN, NAN, NAN, NAN, NAN));
    return py::make_tuple(computed ? py::cast(result.transformation) : py::none(),
                          ResidualRows(result, used.size()), figures,
                          py::make_tuple(TroubleMember(result.outcome.trouble),
                                         result.outcome.converged, result.outcome.singularSystems));
}

py::tuple PointsOfFile(const Path& path, bool decimalComma) {
    const std::vector<ControlPoint> points = ReadPoints(path, decimalComma);
    const auto count = static_cast<py::ssize_t>(points.size());
    py::tuple ids(points.size());
    Doubles source({count, py::ssize_t{2}});
    Doubles target({count, py::ssize_t{2}});
    double* from = source.mutable_data();
    double* to = target.mutable_data();
    for (std::size_t i = 0; i < points.size(); ++i) {
        ids[i] = points[i].id;
        *from++ = points[i].source.first;
        *from++ = points[i].source.second;
        *to++ = points[i].destination.first;
        *to++ = points[i].destination.second;
    }
    return py::make_tuple(ids, source, target);
}

}  // namespace

void AddFit(py::module_& module) {
    module.def("_kept_points", KeptPoints);
    module.def("_fitted_type", FittedType);
    module.def("_minimum_points", &MinimumPoints);
    module.def("_fit", Fitted);
    module.def("_read_points", PointsOfFile);
}

}  // namespace kv_tr::python
