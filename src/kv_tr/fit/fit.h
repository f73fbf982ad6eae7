// Fitting a transformation to control points by least squares.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "kv_tr/fit/statistics.h"
#include "kv_tr/fit/truth_check.h"
#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// Which solution of a fit.
enum class Solution {
    kDocumented,  ///< that of normal equations, the same bits as ever
    kAccurate,    ///< that of an orthogonal factorisation, rounded once, to the coefficients
};

struct FitOptions {
    /// The iterated types, Helmert with 3 and affine with 5 unknowns, make at most one pass more
    /// than this, and at least one; otherwise 20 and 50.
    std::optional<int> passLimit{};
    Solution solution = Solution::kDocumented;
};

/// What is wrong with a fit.
enum class FitTrouble {
    kNone,
    kNoPoints,      ///< there are none at all: nothing was computed
    kNoStart,       ///< the first point lies on the centroid, where an affine fit with 5 unknowns
                    ///< cannot begin: nothing was computed
    kTooFewPoints,  ///< fewer in use than MinimumPoints of the type
    kSingular,      ///< the points in use do not determine the unknowns
    kNotConverged,  ///< the passes did not suffice
};

/// What became of a fit. With the last three kinds of trouble there is a transformation, but it is
/// not to be trusted.
struct FitOutcome {
    FitTrouble trouble = FitTrouble::kNone;  ///< the first of the kinds that apply
    bool converged = true;    ///< false as well when the last pass permitted converged
    int singularSystems = 0;  ///< normal matrices whose determinant was exactly zero

    bool Succeeded() const { return trouble == FitTrouble::kNone; }
    /// Whether there is a transformation, good or bad.
    bool Computed() const {
        return trouble != FitTrouble::kNoPoints && trouble != FitTrouble::kNoStart;
    }
};

struct FitResult {
    Transformation transformation;
    std::vector<Residual> residuals;  ///< one a point, excluded ones included
    Statistics statistics;            ///< over the points in use
    FitOutcome outcome;
    TruthCheck check;  ///< whether it is the least-squares solution
};

/// Fits a transformation of a type to the points in use by unweighted least squares.
///
/// The centroid of all points, excluded ones included, is the origin of polynomials; it and the
/// first point, excluded or not, start the iterated types. Types without a model of their own are
/// fitted as order 5 from 1 up, and are singular below. docs/mathematics.md derives the models.
/// Coordinates in metres. Memory grows with the residuals only.
///
/// The function shows nothing and knows no global; any number of threads may fit at once.
FitResult Fit(std::span<const ControlPoint> points, Type type, const FitOptions& options = {});

}  // namespace kv_tr
