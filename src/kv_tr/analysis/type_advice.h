// Which type the points warrant.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "kv_tr/analysis/assessment.h"

namespace kv_tr {

/// What a type makes of the points in use. Undefined figures are not numbers.
struct TypeFigures {
    Type type = Type::kHelmert;
    bool isDetermined = false;  ///< the points determine it, all over their area
    bool isEligible = false;    ///< and leave enough redundancy to be compared
    int redundancy = 0;
    double sigma0 = kUndefined;       ///< a posteriori
    double leaveOneOut = kUndefined;  ///< the error to expect at a new point, metres
    double excess = kUndefined;       ///< of its squares over the best type's, in standard errors
    double aicc = kUndefined;
    double fisher = kUndefined;       ///< F against the next simpler type
    double probability = kUndefined;  ///< of such an F, if the simpler type were enough
    bool passesGlobalTest = false;    ///< with sigma0 only
};

struct TypeAdvice {
    std::vector<TypeFigures> types;  ///< from the simplest on, those that the points are enough for
    std::optional<Type> best;        ///< least leave-one-out error
    /// The simplest type whose squared leave-one-out errors exceed those of the best one by no more
    /// than their standard error (Breiman et al. 1984; Hastie et al. 2009, section 7.10).
    std::optional<Type> advised;
    /// With sigma0: the simplest type that the stated accuracy does not reject.
    std::optional<Type> simplestPassing;

    /// The figures of a type; a null pointer where it is not among them.
    const TypeFigures* Of(Type type) const;
};

/// Compares the types, order 1 as the affine one. Eligible are determined types with a hull factor
/// up to 10 and a redundancy of at least 2 and a quarter of their unknowns. Neither sigma0 nor F
/// advises: distortions of old networks are correlated, and make every higher order significant.
TypeAdvice Advise(std::span<const ControlPoint> points, const AssessmentOptions& options = {});

}  // namespace kv_tr
