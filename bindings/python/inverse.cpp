// Exact inverses and distortions in Python.
#include "kv_tr/model/inverse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>

#include "kv_tr/model/distortion.h"
#include "python/arrays.h"
#include "python/binding.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

/// By the numbers of NoSource.
constexpr std::array kWords{"", "not reached", "beyond a fold", "outside the domain",
                            "not converged"};

[[noreturn]] void RaiseNoInverse(const std::string& reason) {
    const py::object raised =
        py::module_::import("kv_tr").attr("NoInverseError")("no inverse: " + reason);
    PyErr_SetObject(py::type::handle_of(raised).ptr(), raised.ptr());
    throw py::error_already_set();
}

void WarnOfLost(std::size_t lost, std::size_t count) {
    const std::string text = std::to_string(lost) + " of " + std::to_string(count) +
                             " points have no inverse and became nan; reasons() tells why";
    const py::object category = py::module_::import("kv_tr").attr("NoInverseWarning");
    if (PyErr_WarnEx(category.ptr(), text.c_str(), 1) != 0) throw py::error_already_set();
}

/// Checks points part by part and inverts them into images, which may be the points; yields how
/// many have no source. Troubles are as for ExactInverse::ApplyToPairs.
std::size_t Invert(const ExactInverse& self, const Doubles& points, Doubles& images,
                   std::span<NoSource> troubles = {}) {
    const auto from = ReadOnly(points);
    const std::span to(images.mutable_data(), from.size());
    const auto pins = Pinned({points, images});
    const py::gil_scoped_release unlocked;
    constexpr std::size_t kPart = 16384;  // numbers that are checked just before they are used
    std::size_t lost = 0;
    for (std::size_t start = 0; start < from.size(); start += kPart) {
        const auto part = from.subspan(start, std::min(kPart, from.size() - start));
        CheckFinitePoints(part, "xy", start / 2);
        lost += self.ApplyToPairs(
            part, to.subspan(start, part.size()),
            troubles.empty() ? troubles : troubles.subspan(start / 2, part.size() / 2));
    }
    return lost;
}

Doubles Inverted(const ExactInverse& self, const py::object& xy, const py::object& out) {
    const Doubles points = PointsFrom(xy, "xy", true);
    Doubles images = ImagesOf(points, out);
    if (points.ndim() == 1) {
        const SourcePoint source =
            self.Apply({Finite(points.at(0), "xy[0]"), Finite(points.at(1), "xy[1]")});
        if (!source.Found()) RaiseNoInverse(kWords[static_cast<std::size_t>(source.trouble)]);
        images.mutable_at(0) = source.point.first;
        images.mutable_at(1) = source.point.second;
        return images;
    }
    const std::size_t lost = Invert(self, points, images);
    if (lost > 0) WarnOfLost(lost, static_cast<std::size_t>(points.shape(0)));
    return images;
}

py::object Reasons(const ExactInverse& self, const py::object& xy) {
    const Doubles points = PointsFrom(xy, "xy");
    Doubles images(std::vector<py::ssize_t>{points.shape(0), 2});
    std::vector<NoSource> troubles(static_cast<std::size_t>(points.shape(0)));
    Invert(self, points, images, troubles);
    const py::module_ numpy = py::module_::import("numpy");
    py::list words;
    for (const char* word : kWords) words.append(word);
    const py::array_t<std::uint8_t> numbers(static_cast<py::ssize_t>(troubles.size()),
                                            reinterpret_cast<const std::uint8_t*>(troubles.data()));
    return numpy.attr("array")(words).attr("take")(numbers);
}

KnownTransformation ForwardOf(const ExactInverse& self) {
    return {self.Forward(), self.SourceDomain()};
}

py::object DomainCorners(const ExactInverse& self) {
    const auto& domain = self.SourceDomain();
    if (!domain) return py::none();
    const auto& [least, greatest, centre] = *domain;
    return py::make_tuple(py::make_tuple(least.first, least.second),
                          py::make_tuple(greatest.first, greatest.second));
}

}  // namespace

py::object InverseOf(const KnownTransformation& self) {
    if (!IsPolynomial(self.type)) {
        if (const auto inverse = self.Inverse()) return py::cast(KnownTransformation{*inverse});
        RaiseNoInverse("this " + WordOf(self.type) +
                       " transformation takes the plane to a line or a point");
    }
    if (const auto inverse = ExactInverse::Of(self, self.domain)) return py::cast(*inverse);
    RaiseNoInverse("this " + WordOf(self.type) +
                   " transformation takes the middle of its area to a line or a point");
}

py::object DistortionsAt(const KnownTransformation& self, const py::object& xy) {
    const Doubles points = PointsFrom(xy, "xy", true);
    CheckFinitePoints(ReadOnly(points), "xy");
    const std::vector<py::ssize_t> shape(points.shape(), points.shape() + points.ndim() - 1);
    std::array<double*, 7> figures{};
    py::tuple arrays(figures.size());
    for (std::size_t k = 0; k < figures.size(); ++k) {
        Doubles figure(shape);
        figures[k] = figure.mutable_data();
        arrays[k] = figure;
    }
    const double* at = points.data();
    for (py::ssize_t i = 0; i < points.size() / 2; ++i, at += 2) {
        const Distortion distortion = DistortionAt(self, {at[0], at[1]});
        const double values[] = {distortion.greatestScale,
                                 distortion.leastScale,
                                 distortion.areaScale,
                                 distortion.rotation,
                                 distortion.greatestAngleChange,
                                 distortion.directionInSource.value_or(NAN),
                                 distortion.directionInDestination.value_or(NAN)};
        for (std::size_t k = 0; k < figures.size(); ++k) figures[k][i] = values[k];
    }
    return py::module_::import("kv_tr").attr("Distortion")(*arrays);
}

void AddInverse(py::module_& module) {
    using py::arg;
    py::class_<ExactInverse> type(
        module, "ExactInverse",
        "The inverse of a polynomial, bilinear or national transformation, point by point: what\n"
        "the transformation takes to a given point. Transformation.inverse() makes one. It is the\n"
        "inverse of the polynomial itself, not a second fit. It never changes, and any number of\n"
        "threads may use one.\n\n"
        "A point has no inverse where the transformation takes nothing to it ('not reached'), "
        "only\n"
        "a point beyond a fold ('beyond a fold') or only one outside the domain ('outside the\n"
        "domain'), or, rarely, where the search does not come to an end ('not converged').");
    type.def_property_readonly("forward", ForwardOf, "The Transformation that this inverts.");
    type.def_property_readonly(
        "domain", DomainCorners,
        "Where inverses may lie: the least and the greatest coordinates of a box, that of the\n"
        "points in use of the fit, moved outwards by half its size on each side. None for\n"
        "transformations that no fit made: those have no limits.");
    type.def("transform", Inverted, arg("xy"), arg("out") = py::none(),
             "The inverses of points; arguments and result as for Transformation.transform. In an\n"
             "array of shape (n, 2) a point without an inverse becomes nan, and NoInverseWarning\n"
             "says how many do. For a single point it is NoInverseError, with the reason. Other\n"
             "threads run meanwhile.");
    type.def("reasons", Reasons, arg("xy"),
             "Why points of an array of shape (n, 2) have no inverse, as an array of n texts: one\n"
             "of those above, or '' for a point that has one.");
    type.def(
        "__eq__",
        [](const ExactInverse& self, const ExactInverse& other) {
            return self.Forward() == other.Forward() && self.SourceDomain() == other.SourceDomain();
        },
        py::is_operator());
    type.def("__hash__",
             [](const ExactInverse& self) { return py::hash(py::cast(ForwardOf(self))); });
    type.def("__repr__", [](const ExactInverse& self) {
        return "<kv_tr.ExactInverse of " + py::repr(py::cast(ForwardOf(self))).cast<std::string>() +
               ">";
    });
    type.def("__copy__", [](const py::object& self) { return self; });
    type.def("__deepcopy__", [](const py::object& self, const py::dict&) { return self; });
    type.def(py::pickle([](const ExactInverse& self) { return py::make_tuple(ForwardOf(self)); },
                        [](const py::tuple& state) {
                            const auto forward = state[0].cast<KnownTransformation>();
                            return ExactInverse::Of(forward, forward.domain).value();
                        }));
}

}  // namespace kv_tr::python
