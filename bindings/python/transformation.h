// Transformations as Python holds them.
#pragma once

#include <memory>
#include <optional>

#include "kv_tr/model/domain.h"
#include "kv_tr/model/transformation.h"
#include "python/binding.h"

namespace kv_tr::python {

class FittedPoints;

/// A transformation and, when it was fitted, the domain of its control points and the points
/// themselves. The domain belongs to the inverse, the points to standard deviations: equal
/// transformations may have different ones.
struct KnownTransformation : Transformation {
    std::optional<Domain> domain{};
    std::shared_ptr<FittedPoints> origin{};
};

/// The transformation back as Python has it: an ExactInverse where it is no Transformation.
py::object InverseOf(const KnownTransformation& self);

/// Python's Distortion at points.
py::object DistortionsAt(const KnownTransformation& self, const py::object& xy);

/// Adds the formats of other programs: to_text, from_text.
void AddInterchange(py::class_<KnownTransformation>& type);

/// Adds what the control points of a fit tell of other points: sigma, covariance, extrapolation.
void AddPrecision(py::class_<KnownTransformation>& type);

}  // namespace kv_tr::python
