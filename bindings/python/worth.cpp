// What a fit is worth, for Python: its check, its warnings, its statistics and the types compared.
#include "python/worth.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/analysis/assessment.h"
#include "kv_tr/analysis/type_advice.h"
#include "kv_tr/analysis/warnings.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "python/arrays.h"
#include "python/fitted_points.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

/// An object of a class of the package, made of fields by their names.
py::object Made(const char* name, const py::dict& fields) {
    return py::module_::import("kv_tr").attr(name)(**fields);
}

/// None for an empty word.
py::object WordOrNone(const char* word) {
    return *word == '\0' ? py::object(py::none()) : py::str(word);
}

template <class Value>
py::object OrNone(const std::optional<Value>& value) {
    return value ? py::cast(*value) : py::object(py::none());
}

/// Two numbers as an array, whichever structure has them.
template <class Pair>
Doubles PairArray(const Pair& pair) {
    Doubles array(2);
    array.mutable_at(0) = pair.first;
    array.mutable_at(1) = pair.second;
    return ReadOnlyArray(array);
}

template <class Item, class Number>
Doubles Column(const std::vector<Item>& items, Number number) {
    Doubles column(static_cast<py::ssize_t>(items.size()));
    double* at = column.mutable_data();
    for (const Item& item : items) *at++ = number(item);
    return ReadOnlyArray(column);
}

py::object GeometryOf(const WeakGeometry& geometry) {
    if (geometry.kind == WeakGeometry::Kind::kNone) return py::none();
    py::dict fields;
    fields["kind"] = NameOf(geometry.kind);
    fields["order"] = geometry.order;
    fields["count"] = geometry.count;
    fields["needed"] = geometry.needed;
    fields["distance"] = geometry.distance;
    return Made("WeakGeometry", fields);
}

py::tuple PlaceOf(const Point& place) { return py::make_tuple(place.first, place.second); }

/// A figure of each point of a fit, not a number for points that are excluded.
class PointColumns {
public:
    PointColumns(const Assessment& assessment, std::size_t count)
        : assessment_(assessment), count_(static_cast<py::ssize_t>(count)) {}

    Doubles Of(Residual PointAssessment::*pair) const {
        Doubles column = Undefined({count_, py::ssize_t{2}});
        for (const PointAssessment& point : assessment_.points) {
            double* row = column.mutable_data() + 2 * point.index;
            row[0] = (point.*pair).first;
            row[1] = (point.*pair).second;
        }
        return ReadOnlyArray(column);
    }

    Doubles Of(double PointAssessment::*number) const {
        Doubles column = Undefined({count_});
        for (const PointAssessment& point : assessment_.points) {
            column.mutable_data()[point.index] = point.*number;
        }
        return ReadOnlyArray(column);
    }

    Flags Levers() const {
        Flags column(count_);
        std::fill_n(column.mutable_data(), count_, false);
        for (const PointAssessment& point : assessment_.points) {
            column.mutable_data()[point.index] = point.isLever;
        }
        return ReadOnlyArray(column);
    }

private:
    static Doubles Undefined(std::vector<py::ssize_t> shape) {
        Doubles array(std::move(shape));
        std::fill_n(array.mutable_data(), array.size(), kUndefined);
        return array;
    }

    const Assessment& assessment_;
    py::ssize_t count_;
};

py::object PointFiguresOf(const Assessment& assessment, std::size_t count) {
    const PointColumns columns(assessment, count);
    py::dict fields;
    fields["residual"] = columns.Of(&PointAssessment::residual);
    fields["redundancy"] = columns.Of(&PointAssessment::redundancy);
    fields["normalised"] = columns.Of(&PointAssessment::normalised);
    fields["tau"] = columns.Of(&PointAssessment::studentised);
    fields["t"] = columns.Of(&PointAssessment::external);
    fields["t_p"] = columns.Of(&PointAssessment::externalP);
    fields["t_separate"] = columns.Of(&PointAssessment::separate);
    fields["F"] = columns.Of(&PointAssessment::test);
    fields["p"] = columns.Of(&PointAssessment::probability);
    fields["adjusted_p"] = columns.Of(&PointAssessment::adjustedProbability);
    fields["gross_error"] = columns.Of(&PointAssessment::grossError);
    fields["mdb"] = columns.Of(&PointAssessment::detectable);
    fields["cook"] = columns.Of(&PointAssessment::influence);
    fields["lever"] = columns.Levers();
    return Made("PointFigures", fields);
}

py::object ParametersOf(const Assessment& assessment) {
    using Parameter = Assessment::Parameter;
    const auto& parameters = assessment.parameters;
    py::tuple names(parameters.size());
    for (std::size_t i = 0; i < parameters.size(); ++i) names[i] = "d" + parameters[i].name;
    py::dict fields;
    fields["names"] = names;
    fields["values"] = Column(parameters, [](const Parameter& p) { return p.estimate.value; });
    fields["sigmas"] = Column(parameters, [](const Parameter& p) { return p.estimate.sigma; });
    fields["at_edge"] = Column(parameters, [](const Parameter& p) { return p.atEdge; });
    fields["sigmas_at_edge"] = Column(parameters, [](const Parameter& p) { return p.sigmaAtEdge; });
    return Made("Parameters", fields);
}

py::dict DerivedOf(const Assessment& assessment) {
    const py::object estimateType = py::module_::import("kv_tr").attr("Estimate");
    py::dict derived;
    for (const auto& [kind, estimate] : assessment.derived) {
        derived[NameOf(kind)] = estimateType(estimate.value, estimate.sigma);
    }
    return derived;
}

py::object GlobalTestOf(const Assessment& assessment) {
    if (!assessment.globalTest) return py::none();
    const auto& [value, lower, upper, probability] = *assessment.globalTest;
    py::dict fields;
    fields["value"] = value;
    fields["lower"] = lower;
    fields["upper"] = upper;
    fields["p"] = probability;
    fields["passes"] = assessment.globalTest->Passes();
    return Made("GlobalTest", fields);
}

py::object CentroidFieldsOf(const Assessment& assessment) {
    py::dict fields;
    fields["source"] = PairArray(assessment.centroid);
    fields["target"] = PairArray(assessment.centroidImage);
    fields["sigma"] = PairArray(assessment.centroidSigma);
    return Made("Centroid", fields);
}

py::object CriticalValuesOf(const Assessment& assessment) {
    py::dict fields;
    fields["w"] = assessment.criticalNormal;
    fields["tau"] = assessment.criticalStudentised;
    fields["t"] = assessment.criticalExternal;
    fields["F"] = assessment.criticalTest;
    return Made("CriticalValues", fields);
}

/// An Adjustment; its points are rows, which ids name.
py::object Assessed(const FittedPoints& points, const py::sequence& ids) {
    const std::vector<ControlPoint> all = points.Points();
    const AssessmentOptions options = points.Options();
    Assessment assessment;
    {
        const py::gil_scoped_release unlocked;
        assessment = Assess(all, points.FitType(), options);
    }
    py::dict fields;
    fields["determined"] = assessment.isDetermined;
    fields["fits_exactly"] = assessment.fitsExactly;
    fields["used"] = assessment.used;
    fields["unknowns"] = assessment.unknowns;
    fields["redundancy"] = assessment.redundancy;
    fields["sum_pvv"] = assessment.squareSum;
    fields["sigma0"] = assessment.sigma0;
    fields["sigma0_separate"] = PairArray(assessment.sigma0Separate);
    fields["rms_point"] = assessment.rmsPerPoint;
    fields["press"] = assessment.press;
    fields["loo"] = assessment.leaveOneOut;
    fields["uncontrolled"] = assessment.uncontrolled;
    fields["aicc"] = assessment.aicc;
    fields["axes_p"] = assessment.axesProbability;
    fields["global_test"] = GlobalTestOf(assessment);
    fields["parameters"] = ParametersOf(assessment);
    fields["correlations"] = ReadOnlyArray(ArrayFrom(assessment.correlations));
    fields["derived"] = DerivedOf(assessment);
    fields["centroid"] = CentroidFieldsOf(assessment);
    fields["points"] = PointFiguresOf(assessment, all.size());
    fields["critical"] = CriticalValuesOf(assessment);
    fields["suspect"] = assessment.suspect
                            ? py::object(ids[assessment.points[*assessment.suspect].index])
                            : py::object(py::none());
    py::list returnable;
    for (const std::size_t index : assessment.returnable) returnable.append(ids[index]);
    fields["returnable"] = py::tuple(returnable);
    return Made("Adjustment", fields);
}

py::object TypeFiguresOf(const TypeFigures& figures) {
    py::dict fields;
    fields["type"] = figures.type;
    fields["determined"] = figures.isDetermined;
    fields["eligible"] = figures.isEligible;
    fields["redundancy"] = figures.redundancy;
    fields["sigma0"] = figures.sigma0;
    fields["loo"] = figures.leaveOneOut;
    fields["excess"] = figures.excess;
    fields["aicc"] = figures.aicc;
    fields["F"] = figures.fisher;
    fields["F_p"] = figures.probability;
    fields["passes_global_test"] = figures.passesGlobalTest;
    return Made("TypeFigures", fields);
}

py::object Advised(const FittedPoints& points) {
    const std::vector<ControlPoint> all = points.Points();
    const AssessmentOptions options = points.Options();
    TypeAdvice advice;
    {
        const py::gil_scoped_release unlocked;
        advice = Advise(all, options);
    }
    py::tuple types(advice.types.size());
    for (std::size_t i = 0; i < advice.types.size(); ++i) types[i] = TypeFiguresOf(advice.types[i]);
    py::dict fields;
    fields["types"] = types;
    fields["best"] = OrNone(advice.best);
    fields["advised"] = OrNone(advice.advised);
    fields["simplest_passing"] = OrNone(advice.simplestPassing);
    return Made("TypeAdvice", fields);
}

py::object FindingOf(Warning warning, const py::sequence& ids) {
    py::dict numbers;
    for (const auto& [name, value] : warning.numbers) numbers[name] = value;
    py::object point = py::none();
    if (warning.point) {
        point = ids[*warning.point];
        warning.identifier = py::str(point).cast<std::string>();
    }
    py::dict fields;
    fields["id"] = CodeOf(warning);
    fields["name"] = NameOf(warning.id);
    fields["severity"] = NameOf(warning.severity);
    fields["text"] = DescribeWarning(warning, ShownTexts(), ComponentNumberStyle());
    fields["numbers"] = numbers;
    fields["cause"] = WordOrNone(NameOf(warning.cause));
    fields["geometry"] = GeometryOf(warning.geometry);
    fields["place"] = warning.place ? py::object(PlaceOf(*warning.place)) : py::object(py::none());
    fields["point"] = point;
    fields["offer"] = WordOrNone(NameOf(warning.offer));
    fields["offered_type"] = OrNone(warning.offeredType);
    return Made("Finding", fields);
}

/// The Findings of a fit: all, or only what its check finds, among which are all severe ones.
py::tuple Warned(const FittedPoints& points, const KnownTransformation& transformation,
                 bool converged, bool isAccurate, const py::sequence& ids, bool onlyChecked) {
    const std::vector<ControlPoint> all = points.Points();
    const AssessmentOptions options = points.Options();
    std::vector<Warning> warnings;
    {
        const py::gil_scoped_release unlocked;
        const TruthCheck check = CheckFit(all, transformation, ResidualsOf(all, transformation));
        std::optional<Assessment> assessment;
        std::optional<TypeAdvice> advice;
        if (!onlyChecked) {
            assessment = Assess(all, points.FitType(), options);
            advice = Advise(all, options);
        }
        warnings =
            FindWarnings({.points = all,
                          .transformation = transformation,
                          .check = check,
                          .outcome = {.converged = converged},
                          .solution = isAccurate ? Solution::kAccurate : Solution::kDocumented,
                          .assessment = assessment ? &*assessment : nullptr,
                          .advice = advice ? &*advice : nullptr});
    }
    py::tuple findings(warnings.size());
    for (std::size_t i = 0; i < warnings.size(); ++i) {
        findings[i] = FindingOf(std::move(warnings[i]), ids);
    }
    return findings;
}

}  // namespace

py::object CheckOf(const TruthCheck& check) {
    py::dict fields;
    fields["level"] = NameOf(check.level);
    fields["e_points"] = check.errorAtPoints;
    fields["e_hull"] = check.errorInHull;
    fields["evaluation_noise"] = check.evaluationNoise;
    fields["condition"] = check.condition;
    fields["rank"] = check.rank;
    fields["unknowns"] = check.unknowns;
    fields["redundancy"] = check.redundancy;
    fields["sigma0"] = check.sigma0;
    fields["hull_factor"] = check.hullFactor;
    fields["weakest"] = PlaceOf(check.weakest);
    fields["undetermined"] = check.undetermined;
    fields["other_minimum"] = check.otherMinimum;
    fields["origin_distance"] = check.originDistance;
    fields["cause"] = GeometryOf(check.cause);
    return Made("TruthCheck", fields);
}

TextLookup ShownTexts() { return CurrentMlLanguage() == 0 ? TextsIn(kEnglish) : ComponentTexts(); }

void AddWorth(py::module_& module) {
    module.def("_assess", Assessed);
    module.def("_advise", Advised);
    module.def("_warnings", Warned);
}

}  // namespace kv_tr::python
