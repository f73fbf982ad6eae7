// Coordinates and matrices as numpy arrays.
#pragma once

#include <pybind11/numpy.h>

#include <utility>

#include "kv_tr/published/matrix_routines.h"
#include "python/binding.h"

namespace kv_tr::python {

using Doubles = py::array_t<double, py::array::c_style>;

/// The object as an array of doubles, which is the object itself where its layout allows. Anything
/// but numbers is TypeError.
Doubles NumbersFrom(const py::object& given, const char* name);

/// An object and the name of the argument it was given as.
struct Argument {
    const py::object& given;
    const char* name;
};

/// The images of many points, in the two arrays of `out` or, when that is None, in new ones.
/// ValueError for arrays that are not two one-dimensional ones of one length, for an `out` that
/// does not suit them, and for coordinates that are not finite.
std::pair<Doubles, Doubles> TransformArrays(const TR_PRM& record, Argument first, Argument second,
                                            const py::object& out);

/// "(3, 4)"
std::string ShapeOf(const py::array& array);

Matrix MatrixFrom(const Doubles& array);
Doubles ArrayFrom(const Matrix& matrix);

}  // namespace kv_tr::python
