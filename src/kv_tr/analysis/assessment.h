// What a fit is worth: standard deviations, reliability and tests of its least-squares solution.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/fit/adjusted_model.h"
#include "kv_tr/fit/matrix.h"
#include "kv_tr/fit/statistics.h"

namespace kv_tr {

/// What an undefined figure is: there is no redundancy, no control, no standard deviation.
inline constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

struct AssessmentOptions {
    /// Standard deviations of the destination coordinates, metres, a pair a point, excluded ones
    /// included; none: all have the same, unknown one. They describe the difference of both
    /// systems. Those of a pair may differ only where the coordinates share no unknowns.
    std::vector<Point> sigmas;
    /// The standard deviation of unit weight when it is known beforehand: 1 where the sigmas are
    /// true, metres without sigmas.
    std::optional<double> sigma0;
    /// The standard deviations of parameters come from this sigma0 instead of from the residuals.
    bool isAPriori = false;
    double alpha = 0.05;  ///< the probability that any of all points is blamed wrongly
    /// Without all points only those are kept that warnings name: the one that the others control
    /// least, then the suspect one where that is another. Spares some 200 bytes a point.
    bool keepsAllPoints = true;
};

/// A number and its standard deviation.
struct Estimate {
    double value = 0;
    double sigma = kUndefined;
};

/// What the adjustment says of a point in use. Undefined figures are not numbers.
struct PointAssessment {
    std::size_t index = 0;  ///< among all points
    Residual residual;      ///< of the accurate solution, computed less measured
    Residual redundancy;   ///< 0 to 1 of each coordinate: which part of an error the residual shows
    Residual normalised;   ///< residual over its standard deviation from sigma0; with sigma0 only
    Residual studentised;  ///< with the standard deviation of all residuals (tau; Pope 1976)
    Residual external;     ///< with that of the others (t; Cook and Weisberg 1982)
    Residual externalP;    ///< the probability of such a t, two-sided
    Residual separate;    ///< t with a variance of its own for each coordinate, separate types only
    Residual grossError;  ///< estimated: the residual against the fit without the point
    double test = kUndefined;         ///< of both coordinates: F(2, r - 2), or chi-square(2) / 2
    double probability = kUndefined;  ///< of such a test value, if the point is right
    double adjustedProbability = kUndefined;  ///< among as many points as there are
    Residual detectable;  ///< the least error found with 80 % (Baarda 1968), metres; infinite
                          ///< where only this point determines something
    double influence = kUndefined;  ///< Cook's distance; above 1 the point decides
    bool isLever = false;           ///< its leverage is above twice the mean

    /// Of the coordinate whose errors show less.
    double LeastRedundancy() const { return std::min(redundancy.first, redundancy.second); }
};

struct Assessment {
    Type type = Type::kHelmert;
    std::size_t used = 0;
    int unknowns = 0;
    int redundancy = 0;
    bool isDetermined = false;  ///< otherwise no further figure is defined
    bool fitsExactly = false;   ///< the residuals are rounding: no tests

    double squareSum = kUndefined;    ///< weighted
    double sigma0 = kUndefined;       ///< a posteriori, root of squareSum / redundancy
    double unitSigma = kUndefined;    ///< what the standard deviations of parameters come from
    Residual sigma0Separate;          ///< of each coordinate, separate types only
    double rmsPerPoint = kUndefined;  ///< unweighted, divisor the points in use, metres
    double press = kUndefined;        ///< weighted squares of the leave-one-out errors
    double leaveOneOut = kUndefined;  ///< their unweighted root mean square, a point
    std::size_t uncontrolled = 0;     ///< points without a leave-one-out error
    double aicc = kUndefined;

    struct GlobalTest {
        double value = 0;  ///< squareSum / sigma0², chi-square of the redundancy
        double lower = 0;  ///< bounds of 95 %
        double upper = 0;
        double probability = 0;  ///< of a greater value
        bool Passes() const { return value >= lower && value <= upper; }
    };
    std::optional<GlobalTest> globalTest;  ///< with sigma0 only
    double axesProbability = kUndefined;   ///< of such different variances of the coordinates

    struct Parameter {
        std::string name;  ///< "A0", "B1", ... as listings name them
        Estimate estimate;
        double atEdge = kUndefined;  ///< the coefficient's effect at the edge of the points, metres
        double sigmaAtEdge = kUndefined;
    };
    std::vector<Parameter> parameters;  ///< coefficients of the record
    Matrix correlations;                ///< of the parameters, in their order

    enum class Derived { kScale, kScaleFirst, kScaleSecond, kRotation, kShear };
    struct DerivedQuantity {
        Derived kind;
        Estimate estimate;  ///< angles in radians
    };
    std::vector<DerivedQuantity> derived;  ///< of linear types
    Point centroid;                        ///< of the sources in use
    Point centroidImage;
    Residual centroidSigma;  ///< of the mean shift

    std::vector<PointAssessment> points;  ///< in use, in their order, unless few are kept
    /// Critical values at the level of the whole table.
    double criticalNormal = kUndefined;
    double criticalStudentised = kUndefined;
    double criticalExternal = kUndefined;
    double criticalTest = kUndefined;

    /// The point, as a place in `points`, that fits worst, when its adjusted probability is below
    /// the level; one at a time: exclude, fit again, test again.
    std::optional<std::size_t> suspect;
    /// Excluded points that the fit without them would not reject, as indices among all points.
    std::vector<std::size_t> returnable;
};

/// "scale", "rotation", ... for programs.
const char* NameOf(Assessment::Derived quantity);

/// Assesses the accurate least-squares solution of a type. docs/mathematics.md has the formulas and
/// their sources. Throws std::invalid_argument for sigmas that are not positive and finite, or not
/// one a point, for a level outside (0, 1), and if nothing is known that is to be used a priori.
Assessment Assess(std::span<const ControlPoint> points, Type type,
                  const AssessmentOptions& options = {});
/// The same of a model that was made from the same points and sigmas.
Assessment Assess(const AdjustedModel& model, std::span<const ControlPoint> points, Type type,
                  const AssessmentOptions& options = {});

/// Leave-one-out errors of the points in use: the residual of each against the fit without it and
/// without all others of the same source place, which would flatter it. A place that alone
/// determines something has none: not a number.
std::vector<Point> LeaveOneOutErrors(const AdjustedModel& model);

}  // namespace kv_tr
