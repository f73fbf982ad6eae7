// The control points of a fit as arrays, with what is known of their accuracy.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/analysis/assessment.h"
#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/model/control_point.h"
#include "python/arrays.h"

namespace kv_tr::python {

using Flags = py::array_t<bool, py::array::c_style>;

/// What a fit was made from. Its arrays are copies that nobody can change; whatever is told of a
/// fit later comes from them.
class FittedPoints {
public:
    /// Of what a caller gave. ValueError and TypeError name the argument that cannot be taken.
    FittedPoints(const py::object& source, const py::object& target, const py::object& used,
                 const py::object& type, const py::object& sigma, const py::object& sigma0,
                 const py::object& alpha);

    Type FitType() const { return type_; }
    const Doubles& Source() const { return source_; }
    const Doubles& Target() const { return target_; }
    const Flags& Used() const { return used_; }
    /// Read-only, of shape (n, 2); None without weights.
    const py::object& Sigma() const { return sigma_; }
    std::optional<double> Sigma0() const { return sigma0_; }
    double Alpha() const { return alpha_; }

    /// The points, without identifiers. CopyTo needs no lock of the interpreter.
    std::vector<ControlPoint> Points() const;
    void CopyTo(std::vector<ControlPoint>& points) const;
    AssessmentOptions Options() const;

    /// How well the fit determines points; a null pointer where the points do not determine the
    /// type. Other threads run while this is computed, which happens once.
    std::shared_ptr<const PointPrecision> Precision() const;

private:
    void TakeAccuracy(const py::object& sigma, const py::object& sigma0, const py::object& alpha);

    Type type_;
    Doubles source_;
    Doubles target_;
    Flags used_;
    py::object sigma_ = py::none();
    std::optional<double> sigma0_;
    double alpha_ = 0.05;
    std::vector<py::weakref> pins_;
    mutable std::optional<std::shared_ptr<const PointPrecision>> precision_;
};

/// An array that nobody can change.
template <class Array>
Array ReadOnlyArray(Array array) {
    py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return array;
}

}  // namespace kv_tr::python
