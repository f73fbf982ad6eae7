// Fits for Python: arrays in, arrays out. The package's _fit.py makes results of them.
#include "kv_tr/fit/fit.h"

#include <pybind11/stl/filesystem.h>

#include <cmath>
#include <cstring>

#include "python/arrays.h"
#include "python/binding.h"
#include "python/files.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;
using Flags = py::array_t<bool, py::array::c_style>;

static_assert(sizeof(Residual) == 2 * sizeof(double));

template <class Array>
Array ReadOnlyArray(Array array) {
    py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return array;
}

/// A copy of points that nobody can change.
Doubles KeptPoints(const py::object& given, const char* name) {
    const Doubles points = PointsFrom(given, name);
    CheckFinitePoints(ReadOnly(points), name);
    return ReadOnlyArray(Doubles({points.shape(0), py::ssize_t{2}}, points.data()));
}

/// Whether each point is used: all of them where nothing is given.
Flags KeptFlags(const py::object& given, py::ssize_t count) {
    Flags flags(count);
    if (given.is_none()) {
        std::fill_n(flags.mutable_data(), count, true);
        return ReadOnlyArray(flags);
    }
    const py::array array = py::module_::import("numpy").attr("asarray")(given);
    if (array.ndim() != 1 || array.shape(0) != count) {
        throw py::value_error("used must have shape (" + std::to_string(count) + ",), not " +
                              ShapeOf(array));
    }
    if (array.dtype().kind() != 'b' && count > 0) {
        throw py::type_error("used must hold bools, not " +
                             py::str(array.dtype()).cast<std::string>());
    }
    const Flags contiguous = Flags::ensure(array);
    std::copy_n(contiguous.data(), count, flags.mutable_data());
    return ReadOnlyArray(flags);
}

bool CanBeFitted(Type type) { return type >= Type::kAffine5 && type <= Type::kBilinear; }

Type FittedType(const py::object& given) {
    const auto type = Converted<Type>(given, "type", "a word or a Type");
    if (CanBeFitted(type)) return type;
    throw py::value_error("'" + WordOf(type) + "' cannot be fitted");
}

/// A fit to the points of arrays of one length.
FitResult FitArrays(const Doubles& source, const Doubles& target, const Flags& used, Type type) {
    // Each thread keeps its memory: to make and free it took longer than a quarter of a fit.
    thread_local std::vector<ControlPoint> points;
    points.resize(static_cast<std::size_t>(used.size()));
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
    FitResult result = Fit(points, type);
    constexpr std::size_t kMostKept = 100'000;
    if (points.size() > kMostKept) std::vector<ControlPoint>().swap(points);
    return result;
}

Domain DomainOfUsed(const Doubles& source, const Flags& used) {
    std::vector<Point> points;
    const double* at = source.data();
    for (py::ssize_t i = 0; i < used.size(); ++i, at += 2) {
        if (used.data()[i]) points.push_back({at[0], at[1]});
    }
    return DomainOf(points);
}

Doubles ResidualRows(const FitResult& result, py::ssize_t count) {
    Doubles residuals({count, py::ssize_t{2}});
    if (result.outcome.Computed()) {
        std::memcpy(residuals.mutable_data(), result.residuals.data(),
                    static_cast<std::size_t>(residuals.nbytes()));
    } else {
        std::fill_n(residuals.mutable_data(), residuals.size(), NAN);
    }
    return ReadOnlyArray(residuals);
}

/// What _fit.py makes a result of.
py::tuple Fitted(const py::object& sourceGiven, const py::object& targetGiven,
                 const py::object& usedGiven, const py::object& typeGiven) {
    const Type type = FittedType(typeGiven);
    const Doubles source = KeptPoints(sourceGiven, "source");
    const Doubles target = KeptPoints(targetGiven, "target");
    if (source.shape(0) != target.shape(0)) {
        throw py::value_error("source has " + std::to_string(source.shape(0)) +
                              " points, target has " + std::to_string(target.shape(0)));
    }
    const Flags used = KeptFlags(usedGiven, source.shape(0));
    FitResult result;
    {
        const py::gil_scoped_release unlocked;
        result = FitArrays(source, target, used, type);
    }
    const auto& outcome = result.outcome;
    if (!outcome.Computed()) result.statistics = {NAN, NAN, NAN, NAN, NAN};
    const auto& [rms, rmsFirst, rmsSecond, meanFirst, meanSecond] = result.statistics;
    return py::make_tuple(
        type, source, target, used,
        outcome.Computed()
            ? py::cast(KnownTransformation{result.transformation, DomainOfUsed(source, used)})
            : py::none(),
        ResidualRows(result, used.size()),
        py::make_tuple(rms, rmsFirst, rmsSecond, meanFirst, meanSecond),
        static_cast<int>(outcome.trouble), outcome.converged, outcome.singularSystems);
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
    module.def("_fit", Fitted);
    module.def("_minimum_points", &MinimumPoints);
    module.def("_read_points", PointsOfFile);
}

}  // namespace kv_tr::python
