// From coefficients in a frame to those of a record.
#pragma once

#include <array>

#include "kv_tr/fit/double_double.h"
#include "kv_tr/fit/frame.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// Both series of a record with more digits than doubles have.
struct LongSeries {
    std::array<DoubleDouble, Transformation::kCoefficients> a;
    std::array<DoubleDouble, Transformation::kCoefficients> b;

    /// Adds a polynomial of frame coordinates, as one of coordinates reduced by the origin.
    void Add(const Transformation& inFrame, const Frame& frame, Point origin);
};

}  // namespace kv_tr
