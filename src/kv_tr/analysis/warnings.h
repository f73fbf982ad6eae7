// What a user must know about a fit.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/analysis/assessment.h"
#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/analysis/type_advice.h"
#include "kv_tr/fit/fit.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// A warning as data; DescribeWarning tells it in words.
struct Warning {
    enum class Id {
        kNotChecked,     ///< something is not finite
        kInexact,        ///< W1: the parameters miss the least-squares solution
        kUndetermined,   ///< W2: the points do not determine the type
        kNoRedundancy,   ///< W3: no point is in surplus
        kWeak,           ///< W3a: gross errors at a point cannot be found
        kFold,           ///< W4: the plane folds over
        kNearFold,       ///< the same, nearly
        kBetween,        ///< W5: badly determined between the points
        kRecord,         ///< W6: a record cannot hold the solution
        kExtrapolation,  ///< W7: points outside the control points
        kOutlier,        ///< W8: a point does not fit
        kGlobalTest,     ///< W9: the residuals are not those of the stated accuracy
        kOrder,          ///< W10: a simpler type predicts better
    };
    enum class Severity { kNote, kWarning, kSevere };
    enum class Cause {
        kNone,
        kOrigin,        ///< the origin lies far from the points in use
        kConditioned,   ///< the normal equations lose digits, no weak geometry is known
        kNotConverged,  ///< the iteration has not converged
        kOtherMinimum,  ///< it ended in another minimum
        kGeometry,      ///< the places of the points, see `geometry`
    };
    enum class Offer { kNone, kAccurate, kType, kExclude, kDeleteExcluded };
    /// A figure that the text names, under the name that it has in JSON.
    struct Number {
        const char* name;
        double value;
    };

    Id id = Id::kInexact;
    Severity severity = Severity::kWarning;
    std::vector<Number> numbers{};
    Cause cause = Cause::kNone;
    WeakGeometry geometry{};
    std::optional<Point> place{};        ///< source coordinates, metres
    std::optional<std::size_t> point{};  ///< an index among all control points
    std::string identifier{};            ///< of that point
    std::optional<Type> type{};          ///< that the fit has
    Offer offer = Offer::kNone;          ///< what would help
    std::optional<Type> offeredType{};

    /// A number by its name; not a number where the warning has none of that name.
    double Value(std::string_view name) const;
};

/// What is known about a fit. The check is that of the transformation; the others add their own
/// warnings where they are given.
struct FitFindings {
    std::span<const ControlPoint> points;
    const Transformation& transformation;
    const TruthCheck& check;
    FitOutcome outcome{};
    Solution solution = Solution::kDocumented;
    const Assessment* assessment = nullptr;
    const TypeAdvice* advice = nullptr;
};

/// The warnings of a fit, the gravest first; what another one explains is left out.
std::vector<Warning> FindWarnings(const FitFindings& findings);

/// The warning of points that a transformation is asked for outside its control points.
std::optional<Warning> ExtrapolationWarning(const PointPrecision::Extrapolation& extrapolation);

/// Whether a transformation should not be used: one of the warnings is severe.
bool IsSevere(std::span<const Warning> warnings);

/// "W1", "W3a", ...; "N1" and "N2" for the notes of W1 and W5.
std::string CodeOf(const Warning& warning);

// Words for programs; "" stands for none.

/// "inexact", "undetermined", ...
const char* NameOf(Warning::Id id);
/// "note", "warning", "severe"
const char* NameOf(Warning::Severity severity);
/// "origin", "conditioned", ...
const char* NameOf(Warning::Cause cause);
/// "accurate", "type", ...
const char* NameOf(Warning::Offer offer);
/// "verified", "note", "warning", "severe"
const char* NameOf(TruthCheck::Level level);
/// "places", "curve", ...
const char* NameOf(WeakGeometry::Kind kind);

/// The warning in words of a language, one sentence or two without a line break.
std::string DescribeWarning(const Warning& warning, const TextLookup& texts,
                            NumberStyle style = {});
/// The words for what is offered; empty without an offer.
std::string DescribeOffer(const Warning& warning, const TextLookup& texts);
/// The words for a weak geometry; empty for none.
std::string DescribeGeometry(const WeakGeometry& geometry, const TextLookup& texts,
                             NumberStyle style = {});
/// "Checked: agrees with an independent solution to 2·10⁻⁹ m".
std::string DescribeCheck(const TruthCheck& check, const TextLookup& texts, NumberStyle style = {});

/// A length or another figure with two significant digits: "12", "0.034", "2·10⁻⁹"; "–" where there
/// is none.
std::string FigureText(double value, NumberStyle style = {});

}  // namespace kv_tr
