// Coordinates and matrices as numpy arrays.
#pragma once

#include <pybind11/numpy.h>

#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

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

/// Points as an array of rows (first, second), which is the object itself where its layout allows;
/// an empty list is no points. ValueError for any other shape, a single point only where that is
/// permitted.
Doubles PointsFrom(const py::object& given, const char* name, bool orPoint = false);

/// The array for the images of points: a new one, or one that the caller keeps. It may be that of
/// the points but must not overlap that in any other way.
Doubles ImagesOf(const Doubles& points, const py::object& out);

/// Complains of the first coordinate of such an array that is not finite, as "name[3, 0]". `start`
/// is the index of the first row.
void CheckFinitePoints(std::span<const double> pairs, const char* name, std::size_t start = 0);

/// The numbers of an array.
std::span<const double> ReadOnly(const Doubles& array);

/// While these live, numpy refuses to resize the arrays and those whose memory they use, which it
/// would do otherwise for whoever asks it not to count references.
std::vector<py::weakref> Pinned(std::initializer_list<py::object> arrays);

/// Whether its numbers lie where doubles may.
bool IsAligned(const py::array& array);

/// "(3, 4)"
std::string ShapeOf(const py::array& array);

Matrix MatrixFrom(const Doubles& array);
Doubles ArrayFrom(const Matrix& matrix);

}  // namespace kv_tr::python
