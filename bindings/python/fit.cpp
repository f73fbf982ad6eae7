// Fits for Python: arrays in, arrays out. The package's _fit.py makes results of them.
#include "kv_tr/fit/fit.h"

#include <cmath>
#include <cstring>

#include "python/arrays.h"
#include "python/binding.h"
#include "python/fitted_points.h"
#include "python/transformation.h"
#include "python/worth.h"

namespace kv_tr::python {
namespace {

static_assert(sizeof(Residual) == 2 * sizeof(double));

/// A fit to the points of arrays of one length.
FitResult FitArrays(const FittedPoints& given, Solution solution) {
    // Each thread keeps its memory: to make and free it took longer than a quarter of a fit.
    thread_local std::vector<ControlPoint> points;
    given.CopyTo(points);
    FitResult result = Fit(points, given.FitType(), {.solution = solution});
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
py::tuple Fitted(const std::shared_ptr<FittedPoints>& points, const py::object& solutionGiven) {
    const Solution solution = SolutionFrom(solutionGiven, "solution");
    FitResult result;
    {
        const py::gil_scoped_release unlocked;
        result = FitArrays(*points, solution);
    }
    const auto& outcome = result.outcome;
    if (!outcome.Computed()) result.statistics = {NAN, NAN, NAN, NAN, NAN};
    const auto& [rms, rmsFirst, rmsSecond, meanFirst, meanSecond] = result.statistics;
    const Domain domain = DomainOfUsed(points->Source(), points->Used());
    return py::make_tuple(outcome.Computed()
                              ? py::cast(KnownTransformation{result.transformation, domain, points})
                              : py::none(),
                          ResidualRows(result, points->Used().size()),
                          py::make_tuple(rms, rmsFirst, rmsSecond, meanFirst, meanSecond),
                          static_cast<int>(outcome.trouble), outcome.converged,
                          outcome.singularSystems, CheckOf(result.check));
}

py::object Sigma0Of(const FittedPoints& points) {
    return points.Sigma0() ? py::float_(*points.Sigma0()) : py::object(py::none());
}

}  // namespace

Solution SolutionFrom(const py::object& given, const std::string& name) {
    const auto word = Converted<std::string>(given, name, "a word");
    if (word == "documented") return Solution::kDocumented;
    if (word == "accurate") return Solution::kAccurate;
    throw py::value_error(name + " must be 'documented' or 'accurate', not " +
                          py::repr(given).cast<std::string>());
}

void AddFit(py::module_& module) {
    using Object = py::object;
    py::class_<FittedPoints, std::shared_ptr<FittedPoints>> points(module, "_FittedPoints");
    points.attr("__module__") = "kv_tr._kv_tr";  // where pickle finds it
    points.def(py::init<Object, Object, Object, Object, Object, Object, Object>());
    points.def_property_readonly("type", &FittedPoints::FitType);
    points.def_property_readonly("source", &FittedPoints::Source);
    points.def_property_readonly("target", &FittedPoints::Target);
    points.def_property_readonly("used", &FittedPoints::Used);
    points.def_property_readonly("sigma", &FittedPoints::Sigma);
    points.def_property_readonly("sigma0", Sigma0Of);
    points.def_property_readonly("alpha", &FittedPoints::Alpha);
    points.def(py::pickle(
        [](const FittedPoints& self) {
            return py::make_tuple(self.Source(), self.Target(), self.Used(), self.FitType(),
                                  self.Sigma(), Sigma0Of(self), self.Alpha());
        },
        [](const py::tuple& state) {
            return std::make_shared<FittedPoints>(state[0], state[1], state[2], state[3], state[4],
                                                  state[5], state[6]);
        }));
    AddWorth(module);
    AddReport(module);
    module.def("_fit", Fitted);
    module.def("_minimum_points", [](Type type) { return MinimumPoints(type); });
}

}  // namespace kv_tr::python
