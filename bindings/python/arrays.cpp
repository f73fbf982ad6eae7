// Coordinates and matrices as numpy arrays.
#include "python/arrays.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "kv_tr/published/eval_tr_prm.h"

namespace kv_tr::python {
namespace {

bool AllFinite(std::span<const double> values) {
    double sums[8] = {};  // of zeros; several, so that they are added side by side
    std::size_t i = 0;
    for (; i + std::size(sums) <= values.size(); i += std::size(sums)) {
        for (std::size_t k = 0; k < std::size(sums); ++k) sums[k] += values[i + k] * 0.0;
    }
    for (; i < values.size(); ++i) sums[0] += values[i] * 0.0;
    return std::ranges::all_of(sums, [](double sum) { return sum == 0.0; });
}

/// Complains of the first value that is not finite. `start` is where the values begin.
void CheckFinite(std::span<const double> values, const char* name, std::size_t start) {
    const auto bad = std::ranges::find_if_not(values, [](double v) { return std::isfinite(v); });
    if (bad == values.end()) return;
    const auto index = start + static_cast<std::size_t>(bad - values.begin());
    Finite(*bad, std::string(name) + "[" + std::to_string(index) + "]");
}

/// An array that the caller wants images in; it must overlap none of the others.
Doubles Output(const py::object& given, const std::vector<Doubles>& others) {
    const Doubles& first = others.front();
    const auto overlaps = [&given](const Doubles& other) {
        return py::module_::import("numpy").attr("may_share_memory")(given, other).cast<bool>();
    };
    if (py::isinstance<Doubles>(given)) {
        const auto array = py::reinterpret_borrow<Doubles>(given);
        if (array.ndim() == 1 && array.size() == first.size() && array.writeable() &&
            IsAligned(array) && std::ranges::none_of(others, overlaps)) {
            return array;
        }
    }
    throw py::value_error("out must be two writeable, contiguous arrays of float64 with shape " +
                          ShapeOf(first) + " that overlap neither each other nor the coordinates");
}

/// The numbers of an array of Python objects; complaints name the element.
Doubles FromObjects(const py::array& objects, const std::string& name) {
    Doubles numbers(std::vector<py::ssize_t>(objects.shape(), objects.shape() + objects.ndim()));
    double* number = numbers.mutable_data();
    std::size_t index = 0;
    for (const py::handle item : objects.attr("flat")) {
        const std::string element =
            objects.ndim() == 0 ? name : name + "[" + std::to_string(index) + "]";
        number[index++] =
            Converted<double>(py::reinterpret_borrow<py::object>(item), element, "a number");
    }
    return numbers;
}

}  // namespace

std::span<const double> ReadOnly(const Doubles& array) {
    return {array.data(), static_cast<std::size_t>(array.size())};
}

std::vector<py::weakref> Pinned(std::initializer_list<py::object> arrays) {
    std::vector<py::weakref> pins;
    for (py::object array : arrays) {
        for (; py::isinstance<py::array>(array); array = array.attr("base")) {
            pins.emplace_back(array);
        }
    }
    return pins;
}

bool IsAligned(const py::array& array) {
    return reinterpret_cast<std::uintptr_t>(array.data()) % alignof(double) == 0;
}

std::string ShapeOf(const py::array& array) {
    return py::str(array.attr("shape")).cast<std::string>();
}

Doubles NumbersFrom(const py::object& given, const char* name) {
    if (py::isinstance<Doubles>(given) && IsAligned(py::reinterpret_borrow<py::array>(given))) {
        return py::reinterpret_borrow<Doubles>(given);
    }
    const auto numpy = py::module_::import("numpy");
    const py::array array = numpy.attr("asarray")(given);
    if (array.dtype().kind() == 'O') return FromObjects(array, name);
    if (std::string("iuf").find(array.dtype().kind()) == std::string::npos) {
        throw py::type_error(std::string(name) + " must hold numbers, not " +
                             py::str(array.dtype()).cast<std::string>());
    }
    return numpy.attr("require")(array, "f8", "CA");
}

Doubles PointsFrom(const py::object& given, const char* name, bool orPoint) {
    Doubles array = NumbersFrom(given, name);
    if (array.ndim() == 1 && array.size() == 0) return Doubles(std::vector<py::ssize_t>{0, 2});
    const bool isPoint = array.ndim() == 1 && array.shape(0) == 2;
    const bool arePoints = array.ndim() == 2 && array.shape(1) == 2;
    if (arePoints || (orPoint && isPoint)) return array;
    throw py::value_error(std::string(name) + " must have shape (n, 2)" +
                          (orPoint ? " or (2,)" : "") + ", not " + ShapeOf(array));
}

Doubles ImagesOf(const Doubles& points, const py::object& out) {
    const std::vector<py::ssize_t> shape(points.shape(), points.shape() + points.ndim());
    if (out.is_none()) return Doubles(shape);
    if (py::isinstance<Doubles>(out)) {
        const auto array = py::reinterpret_borrow<Doubles>(out);
        const auto overlaps = [&] {
            return py::module_::import("numpy").attr("may_share_memory")(out, points).cast<bool>();
        };
        if (std::ranges::equal(shape, std::span(array.shape(), array.ndim())) &&
            array.writeable() && IsAligned(array) &&
            (array.data() == points.data() || !overlaps())) {
            return array;
        }
    }
    throw py::value_error("out must be a writeable, contiguous array of float64 with shape " +
                          ShapeOf(points) + " that is the one of the points or apart from it");
}

void CheckFinitePoints(std::span<const double> pairs, const char* name, std::size_t start) {
    if (AllFinite(pairs)) return;
    const auto bad = std::ranges::find_if_not(pairs, [](double v) { return std::isfinite(v); });
    const auto index = static_cast<std::size_t>(bad - pairs.begin());
    Finite(*bad, std::string(name) + "[" + std::to_string(start + index / 2) + ", " +
                     std::to_string(index % 2) + "]");
}

std::pair<Doubles, Doubles> TransformArrays(const TR_PRM& record, Argument first, Argument second,
                                            const py::object& out) {
    const Doubles firstIn = NumbersFrom(first.given, first.name);
    const Doubles secondIn = NumbersFrom(second.given, second.name);
    if (firstIn.ndim() != 1 || secondIn.ndim() != 1 || firstIn.size() != secondIn.size()) {
        throw py::value_error(std::string("two one-dimensional arrays of one length are needed: ") +
                              first.name + " has shape " + ShapeOf(firstIn) + ", " + second.name +
                              " has shape " + ShapeOf(secondIn));
    }
    Doubles firstOut;
    Doubles secondOut;
    if (out.is_none()) {
        firstOut = Doubles(firstIn.size());
        secondOut = Doubles(firstIn.size());
    } else {
        if (!py::isinstance<py::tuple>(out) || py::len(out) != 2) {
            throw py::type_error("out must be a tuple of two arrays");
        }
        firstOut = Output(out[py::int_(0)], {firstIn, secondIn});
        secondOut = Output(out[py::int_(1)], {firstIn, secondIn, firstOut});
    }
    const std::span<double> firstImages(firstOut.mutable_data(), firstIn.size());
    const std::span<double> secondImages(secondOut.mutable_data(), firstIn.size());

    const auto pins = Pinned({firstIn, secondIn, firstOut, secondOut});
    const py::gil_scoped_release unlocked;
    constexpr std::size_t kPart = 16384;  // whose images are checked while they are in the cache
    for (std::size_t start = 0; start < firstImages.size(); start += kPart) {
        const std::size_t count = std::min(kPart, firstImages.size() - start);
        const auto firsts = ReadOnly(firstIn).subspan(start, count);
        const auto seconds = ReadOnly(secondIn).subspan(start, count);
        const auto firstPart = firstImages.subspan(start, count);
        const auto secondPart = secondImages.subspan(start, count);
        EvalTrPrmArrays(record, firsts, seconds, firstPart, secondPart);
        if (AllFinite(firstPart) && AllFinite(secondPart)) continue;  // as all that led there
        CheckFinite(firsts, first.name, start);
        CheckFinite(seconds, second.name, start);
    }
    return {std::move(firstOut), std::move(secondOut)};
}

Matrix MatrixFrom(const Doubles& array) {
    if (array.ndim() != 2) {
        throw py::value_error("a matrix has two dimensions, this array has shape " +
                              ShapeOf(array));
    }
    Matrix matrix(static_cast<std::size_t>(array.shape(0)),
                  static_cast<std::size_t>(array.shape(1)));
    const double* cell = array.data();
    for (std::size_t row = 0; row < matrix.Rows(); ++row) {
        for (std::size_t column = 0; column < matrix.Columns(); ++column) {
            matrix(row, column) = *cell++;
        }
    }
    return matrix;
}

Doubles ArrayFrom(const Matrix& matrix) {
    Doubles array({matrix.Rows(), matrix.Columns()});
    double* cell = array.mutable_data();
    for (std::size_t row = 0; row < matrix.Rows(); ++row) {
        for (std::size_t column = 0; column < matrix.Columns(); ++column) {
            *cell++ = matrix(row, column);
        }
    }
    return array;
}

}  // namespace kv_tr::python
