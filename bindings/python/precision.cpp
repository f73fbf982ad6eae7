// How well a fit determines transformed points, for Python.
#include <cmath>
#include <memory>
#include <vector>

#include "kv_tr/analysis/point_precision.h"
#include "python/arrays.h"
#include "python/fitted_points.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

using Covariance = PointPrecision::Covariance;

std::shared_ptr<const PointPrecision> PrecisionOf(const KnownTransformation& self) {
    if (self.origin) return self.origin->Precision();
    throw py::value_error(
        "no fit made this transformation: only the control points of a fit tell how well it "
        "determines other points");
}

/// Points of an array of shape (n, 2) or (2,), all finite.
std::vector<Point> FinitePoints(const Doubles& array) {
    CheckFinitePoints(ReadOnly(array), "xy");
    std::vector<Point> points(static_cast<std::size_t>(array.size() / 2));
    const double* at = array.data();
    for (Point& point : points) {
        point = {at[0], at[1]};
        at += 2;
    }
    return points;
}

/// The covariances at points, written as `figures` numbers each into an array whose shape is that
/// of the points with `more` dimensions behind. They are not numbers where the points of the fit
/// do not determine the type.
template <class Write>
Doubles Covariances(const KnownTransformation& self, const py::object& xy,
                    std::initializer_list<py::ssize_t> more, Write write) {
    const auto precision = PrecisionOf(self);
    const Doubles array = PointsFrom(xy, "xy", true);
    const std::vector<Point> points = FinitePoints(array);
    std::vector<py::ssize_t> shape(array.shape(), array.shape() + array.ndim());
    shape.insert(shape.end(), more);
    Doubles result(shape);
    double* to = result.mutable_data();
    const py::gil_scoped_release unlocked;
    std::vector<Covariance> covariances(points.size(), {kUndefined, kUndefined, kUndefined});
    if (precision) covariances = precision->At(points);
    for (const Covariance& covariance : covariances) to = write(covariance, to);
    return result;
}

Doubles Sigmas(const KnownTransformation& self, const py::object& xy) {
    return Covariances(self, xy, {}, [](const Covariance& covariance, double* to) {
        *to++ = covariance.SigmaFirst();
        *to++ = covariance.SigmaSecond();
        return to;
    });
}

Doubles Matrices(const KnownTransformation& self, const py::object& xy) {
    return Covariances(self, xy, {2}, [](const Covariance& covariance, double* to) {
        for (const double value :
             {covariance.first, covariance.mixed, covariance.mixed, covariance.second}) {
            *to++ = value;
        }
        return to;
    });
}

py::object Extrapolated(const KnownTransformation& self, const py::object& xy) {
    const auto precision = PrecisionOf(self);
    if (!precision) {
        throw py::value_error("the points of the fit do not determine this transformation");
    }
    const std::vector<Point> points = FinitePoints(PointsFrom(xy, "xy", true));
    PointPrecision::Extrapolation outside;
    {
        const py::gil_scoped_release unlocked;
        outside = precision->Outside(points);
    }
    return py::module_::import("kv_tr").attr("Extrapolation")(outside.count, outside.farthest,
                                                              outside.sigma, outside.isFar);
}

}  // namespace

void AddPrecision(py::class_<KnownTransformation>& type) {
    using py::arg;
    type.def("sigma", Sigmas, arg("xy"),
             "Standard deviations of the images of points of shape (n, 2) or (2,), as an array of\n"
             "that shape, metres: what the residuals of the fit tell of its parameters, without\n"
             "errors of the points asked for, and as if the type were right (Koch 1999). nan\n"
             "without redundancy, unless sigma0 was given to the fit, and for a type that the\n"
             "points do not determine. ValueError for a transformation that no fit made.");
    type.def("covariance", Matrices, arg("xy"),
             "The covariance matrices of images, metres², of shape (n, 2, 2) or (2, 2); as sigma.");
    type.def("extrapolation", Extrapolated, arg("xy"),
             "How far points of shape (n, 2) or (2,) lie outside the control points in use, as an\n"
             "Extrapolation. ValueError as in sigma, and for a type that the points do not\n"
             "determine.");
}

}  // namespace kv_tr::python
