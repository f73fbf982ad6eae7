// Transformations as Python holds them.
#pragma once

#include <optional>

#include "kv_tr/model/domain.h"
#include "kv_tr/model/transformation.h"
#include "python/binding.h"

namespace kv_tr::python {

/// A transformation and, when it was fitted, the domain of its control points. The domain belongs
/// to the inverse only: equal transformations may have different ones.
struct KnownTransformation : Transformation {
    std::optional<Domain> domain{};
};

/// The transformation back as Python has it: an ExactInverse where it is no Transformation.
py::object InverseOf(const KnownTransformation& self);

/// Python's Distortion at points.
py::object DistortionsAt(const KnownTransformation& self, const py::object& xy);

}  // namespace kv_tr::python
