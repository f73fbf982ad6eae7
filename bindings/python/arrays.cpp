// Coordinates and matrices as numpy arrays.
#include "python/arrays.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "model/evaluate.h"

namespace kv_tr::python {
namespace {

std::span<const double> ReadOnly(const Doubles& array) {
    return {array.data(), static_cast<std::size_t>(array.size())};
}

bool AllFinite(std::span<const double> values) {
    bool finite = true;
    for (const double value : values) finite &= std::abs(value) <= DBL_MAX;
    return finite;
}

/// Complains of the first value that is not finite. `start` is where the values begin.
void CheckFinite(std::span<const double> values, const char* name, std::size_t start) {
    if (AllFinite(values)) return;
    const auto bad = std::ranges::find_if_not(values, [](double v) { return std::isfinite(v); });
    const auto index = start + static_cast<std::size_t>(bad - values.begin());
    Finite(*bad, std::string(name) + "[" + std::to_string(index) + "]");
}

}  // namespace

std::string ShapeOf(const py::array& array) {
    return py::str(array.attr("shape")).cast<std::string>();
}

Doubles NumbersFrom(const py::object& given, const char* name) {
    const auto numpy = py::module_::import("numpy");
    const py::array array = numpy.attr("asarray")(given);
    if (std::string("iufO").find(array.dtype().kind()) == std::string::npos) {
        throw py::type_error(std::string(name) + " must hold numbers, not " +
                             py::str(array.dtype()).cast<std::string>());
    }
    return numpy.attr("require")(array, "f8", "CA");
}

std::pair<Doubles, Doubles> TransformArrays(const TR_PRM& record, Argument first, Argument second) {
    const Doubles firstIn = NumbersFrom(first.given, first.name);
    const Doubles secondIn = NumbersFrom(second.given, second.name);
    if (firstIn.ndim() != 1 || secondIn.ndim() != 1 || firstIn.size() != secondIn.size()) {
        throw py::value_error(std::string("two one-dimensional arrays of one length are needed: ") +
                              first.name + " has shape " + ShapeOf(firstIn) + ", " + second.name +
                              " has shape " + ShapeOf(secondIn));
    }
    Doubles firstOut(firstIn.size());
    Doubles secondOut(firstIn.size());
    const std::span<double> firstImages(firstOut.mutable_data(), firstIn.size());
    const std::span<double> secondImages(secondOut.mutable_data(), firstIn.size());

    const py::gil_scoped_release unlocked;
    constexpr std::size_t kPart = 2048;  // checked and transformed while it is in the cache
    for (std::size_t start = 0; start < firstImages.size(); start += kPart) {
        const std::size_t count = std::min(kPart, firstImages.size() - start);
        const auto firsts = ReadOnly(firstIn).subspan(start, count);
        const auto seconds = ReadOnly(secondIn).subspan(start, count);
        CheckFinite(firsts, first.name, start);
        CheckFinite(seconds, second.name, start);
        EvalTrPrmArrays(record, firsts, seconds, firstImages.subspan(start, count),
                        secondImages.subspan(start, count));
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
