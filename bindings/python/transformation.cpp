// Transformations as values in Python.
#include "kv_tr/model/transformation.h"

#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "kv_tr/model/national.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/transformation_type.h"
#include "python/arrays.h"
#include "python/binding.h"
#include "python/files.h"
#include "python/fitted_points.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;
using Series = Transformation::Series;

/// Coefficients from a sequence of numbers; what is not given is 0.
Series SeriesFrom(const py::object& given, const std::string& name) {
    const Doubles numbers = NumbersFrom(given, name.c_str());
    Series series{};
    if (numbers.ndim() != 1 || static_cast<std::size_t>(numbers.size()) > series.size()) {
        throw py::value_error(name + " must be at most " + std::to_string(series.size()) +
                              " numbers, its shape is " + ShapeOf(numbers));
    }
    std::ranges::copy(ReadOnly(numbers), series.begin());
    return series;
}

KnownTransformation Made(Type type, const py::object& a, const py::object& b) {
    KnownTransformation made{{type, SeriesFrom(a, "a"), SeriesFrom(b, "b")}};
    for (const auto* series : {&made.a, &made.b}) {
        if (std::ranges::all_of(*series, [](double value) { return std::isfinite(value); }))
            continue;
        throw py::value_error("coefficients must be finite numbers");
    }
    return made;
}

py::tuple TupleOf(const Series& series) {
    py::tuple tuple(series.size());
    for (std::size_t k = 0; k < series.size(); ++k) tuple[k] = series[k];
    return tuple;
}

/// "[1.0, 2.0]", without the zeros at the end.
std::string TextOf(const Series& series) {
    py::list numbers;
    const auto last =
        std::find_if(series.rbegin(), series.rend(), [](double v) { return v != 0.0; });
    for (auto value = series.begin(); value != last.base(); ++value) numbers.append(*value);
    return py::repr(numbers).cast<std::string>();
}

/// A domain as six numbers for pickling, or none.
py::tuple NumbersOf(const std::optional<Domain>& domain) {
    if (!domain) return py::tuple();
    const auto& [least, greatest, centre] = *domain;
    return py::make_tuple(least.first, least.second, greatest.first, greatest.second, centre.first,
                          centre.second);
}

std::optional<Domain> DomainFrom(const py::tuple& numbers) {
    if (numbers.empty()) return std::nullopt;
    const auto number = [&numbers](std::size_t i) { return numbers[i].cast<double>(); };
    return Domain{{number(0), number(1)}, {number(2), number(3)}, {number(4), number(5)}};
}

std::size_t HashOf(const KnownTransformation& self) {
    std::size_t hash = static_cast<std::size_t>(NumberOf(self.type));
    for (const auto* series : {&self.a, &self.b}) {
        for (const double value : *series) hash = hash * 31 + std::hash<double>()(value);
    }
    return hash;
}

Doubles Transformed(const KnownTransformation& self, const py::object& xy, const py::object& out) {
    const Doubles points = PointsFrom(xy, "xy", true);
    Doubles images = ImagesOf(points, out);
    const auto from = ReadOnly(points);
    const std::span to(images.mutable_data(), from.size());
    if (points.ndim() == 1) {
        Finite(from[0], "xy[0]");
        Finite(from[1], "xy[1]");
        self.ApplyToPairs(from, to);
        return images;
    }
    constexpr std::size_t kManyNumbers = 4096;  // below, giving the lock away costs more
    const auto pins = Pinned({points, images});
    std::optional<py::gil_scoped_release> unlocked;
    if (from.size() >= kManyNumbers) unlocked.emplace();
    constexpr std::size_t kPart = 16384;  // numbers that are checked just before they are used
    for (std::size_t start = 0; start < from.size(); start += kPart) {
        const auto part = from.subspan(start, std::min(kPart, from.size() - start));
        CheckFinitePoints(part, "xy", start / 2);
        self.ApplyToPairs(part, to.subspan(start, part.size()));
    }
    return images;
}

double Direction(const KnownTransformation& self, double angle, const py::object& at) {
    const Doubles place = PointsFrom(at, "at", true);
    if (place.ndim() != 1) throw py::value_error("at must be one point, of shape (2,)");
    const Point point{Finite(place.at(0), "at[0]"), Finite(place.at(1), "at[1]")};
    const auto image = self.Direction(Finite(angle, "angle"), point);
    if (!image) throw py::value_error("the transformation takes that direction to a point");
    return *image;
}

KnownTransformation National(const std::string& name) {
    const NationalInfo* found = FindNational(name);
    if (found == nullptr) {
        throw py::value_error("'" + name + "' is no national transformation; NationalInfos() " +
                              "lists them, as STG_EOV_10e");
    }
    return {*NationalTransformation(found->type)};
}

void AddFiles(py::class_<KnownTransformation>& type) {
    using py::arg;
    type.def(
        "save",
        [](const KnownTransformation& self, const Path& path) { SaveParameters(self, path); },
        arg("path"),
        "Saves the coefficients; the ending, in any case, names the format: .trp and .prm for six\n"
        "numbers, shifts with 3 decimals and the others with 8, .all for polynomials with 16\n"
        "digits. Pickle keeps every bit. Numbers have a decimal point. ValueError for another\n"
        "ending and for one that does not suit the type, FileError when the file cannot be\n"
        "written, which leaves an older one as it was.");
    type.def_static(
        "load",
        [](const Path& path, bool decimalComma, const py::object& kind) {
            std::optional<Type> wanted;
            if (!kind.is_none()) wanted = Converted<Type>(kind, "type", "a word or a Type");
            return KnownTransformation{LoadParameters(path, decimalComma, wanted)};
        },
        arg("path"), arg("decimal_comma") = false, arg("type") = py::none(),
        "The transformation of a parameter file: .trp, .prm or .all, in any case. Six numbers are\n"
        "of the type given, else 'affine'; a polynomial file must have as many lines as the type\n"
        "given. FileError, with file, line and cause, for a file that cannot be read or is none,\n"
        "and for numbers with decimal commas unless decimal_comma is True. ValueError for another\n"
        "ending.");
    type.def_static("national", National, arg("name"),
                    "A built-in transformation between two systems, as 'STG_EOV_10e'.\n"
                    "NationalInfos() lists them with their accuracy. ValueError for other names.");
    type.def_static(
        "fathom_to_metre", [] { return KnownTransformation{FathomToMetre()}; },
        "From fathoms to metres: 1 fathom is 1.89648384 m.");
    type.def_static(
        "metre_to_fathom", [] { return KnownTransformation{MetreToFathom()}; },
        "From metres to fathoms. The factor has nine decimals, so there and back is not exactly\n"
        "the identity.");
}

}  // namespace

void AddTransformation(py::module_& module) {
    using py::arg;
    py::class_<KnownTransformation> type(
        module, "Transformation",
        "A plane transformation, which never changes: equal ones are equal keys, and any number\n"
        "of threads may use one. Coordinates are metres.\n\n"
        "Below 'poly1' the first coordinate becomes a[0] + a[1] first + a[2] second, the second\n"
        "likewise with b. Polynomials, bilinear and national types subtract a[0] and b[0] from "
        "the\n"
        "source first; a[1], a[2], ... multiply 1, u, v, u*u, u*v, v*v, ...");
    type.def(py::init(&Made), arg("type"), arg("a"), arg("b"),
             "A type, as a word or enumeration, and at most 22 coefficients a coordinate; what is\n"
             "left out is 0.");
    type.def_readonly("type", &KnownTransformation::type, "A Type.");
    type.def_property_readonly(
        "a", [](const KnownTransformation& self) { return TupleOf(self.a); },
        "The 22 coefficients of the first coordinate.");
    type.def_property_readonly(
        "b", [](const KnownTransformation& self) { return TupleOf(self.b); },
        "The 22 coefficients of the second coordinate.");
    type.def(
        "transform", Transformed, arg("xy"), arg("out") = py::none(),
        "The images of points, an array of shape (n, 2) or (2,), as a new float64 array of\n"
        "that shape; metres. Anything that numpy makes such an array of is taken, of any\n"
        "memory order and number type; contiguous float64 is read in place. out takes the\n"
        "images in an array you keep, which may be xy itself. ValueError, with the index, for\n"
        "coordinates that are not finite: leave gaps out before. out may then be filled in\n"
        "part. Other threads run while many points are transformed.");
    type.def(
        "direction", Direction, arg("angle"), arg("at"),
        "The image of a direction at a point of shape (2,): both in radians from the first\n"
        "axis towards the second, the image in [0, 2 pi). ValueError where the transformation\n"
        "takes the direction to a point.");
    type.def(
        "inverse", InverseOf,
        "The transformation back: for 'helmert', 'affine' and the like a Transformation of\n"
        "the same type, for all others an ExactInverse, whose domain is that of the points in\n"
        "use if a fit made this transformation. NoInverseError, with the reason, for one that\n"
        "takes the plane, or the middle of its area, to a line or a point.");
    type.def("distortion", DistortionsAt, arg("xy"),
             "Scales, rotation and changes of angles at points of shape (n, 2) or (2,), as a\n"
             "Distortion.");
    type.def(
        "__eq__",
        [](const KnownTransformation& self, const KnownTransformation& other) {
            return std::equal_to<Transformation>()(self, other);
        },
        py::is_operator());
    type.def("__hash__", HashOf);
    type.def("__repr__", [](const KnownTransformation& self) {
        return "Transformation('" + WordOf(self.type) + "', " + TextOf(self.a) + ", " +
               TextOf(self.b) + ")";
    });
    type.def("__copy__", [](const py::object& self) { return self; });
    type.def("__deepcopy__", [](const py::object& self, const py::dict&) { return self; });
    type.def(py::pickle(
        [](const KnownTransformation& self) {
            return py::make_tuple(WordOf(self.type), TupleOf(self.a), TupleOf(self.b),
                                  NumbersOf(self.domain), self.origin);
        },
        [](const py::tuple& state) {
            const Transformation made{Converted<Type>(state[0], "type", "a word"),
                                      SeriesFrom(state[1], "a"), SeriesFrom(state[2], "b")};
            // Older pickles end with the domain.
            const py::object origin = state.size() > 4 ? py::object(state[4]) : py::none();
            return KnownTransformation{made, DomainFrom(state[3]),
                                       origin.cast<std::shared_ptr<FittedPoints>>()};
        }));
    AddPrecision(type);
    AddFiles(type);
    AddInterchange(type);
}

}  // namespace kv_tr::python
