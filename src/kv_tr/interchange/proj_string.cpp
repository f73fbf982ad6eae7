// Transformations as strings of PROJ.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

constexpr double kArcSeconds = 180.0 * 3600.0 / std::numbers::pi;  // in a radian

// Writing.

/// A step between steps that swap the axes, where those of maps are not those of the systems.
std::string BetweenSwaps(const TransformationRecord& record, const std::string& step) {
    const bool before = record.sourceAxes != AxisMapping::kEn;
    const bool behind = record.targetAxes != AxisMapping::kEn;
    if (!before && !behind) return step + "\n";
    const auto swap = [](const std::string& order) {
        return " +step +proj=axisswap +order=" + order;
    };
    return "+proj=pipeline" + (before ? swap(SwapFromMap(record.sourceAxes)) : "") + " +step " +
           step + (behind ? swap(SwapToMap(record.targetAxes)) : "") + "\n";
}

/// The powers in the order of the list of a coordinate: inner ones first, those of u for the first
/// coordinate and those of v for the second.
std::vector<Powers> ListPowers(int degree, bool ofSecond) {
    std::vector<Powers> powers;
    for (int outer = 0; outer <= degree; ++outer) {
        for (int inner = 0; inner <= degree - outer; ++inner)
            powers.push_back(ofSecond ? Powers{outer, inner} : Powers{inner, outer});
    }
    return powers;
}

/// The index of the coefficient of powers, from 1; nothing where the type has no such term.
std::optional<std::size_t> IndexOf(const std::vector<Powers>& terms, Powers powers) {
    const auto found = std::ranges::find(terms, powers);
    if (found == terms.end()) return std::nullopt;
    return static_cast<std::size_t>(found - terms.begin()) + 1;
}

std::string HornerText(const Transformation& t) {
    const int degree = t.type == Type::kBilinear ? 2 : PolynomialOrder(t.type);
    const auto terms = TermPowers(t.type);
    const auto list = [&](const Transformation::Series& c, bool ofSecond) {
        std::string text;
        for (const Powers& powers : ListPowers(degree, ofSecond)) {
            const auto index = IndexOf(terms, powers);
            text += (text.empty() ? "" : ",") + ShortestText(index ? c[*index] : 0.0);
        }
        return text;
    };
    // Points farther than the range from the origin have no image; the inverse compares unreduced
    // coordinates with the range.
    return "+proj=horner +deg=" + std::to_string(degree) +
           " +range=1e9 +inv_tolerance=1e-9 +fwd_origin=" + ShortestText(t.a[0]) + "," +
           ShortestText(t.b[0]) + " +fwd_u=" + list(t.a, false) + " +fwd_v=" + list(t.b, true);
}

std::string AffineText(const Transformation& t) {
    return "+proj=affine +xoff=" + ShortestText(t.a[0]) + " +yoff=" + ShortestText(t.b[0]) +
           " +s11=" + ShortestText(t.a[1]) + " +s12=" + ShortestText(t.a[2]) +
           " +s21=" + ShortestText(t.b[1]) + " +s22=" + ShortestText(t.b[2]);
}

// Reading.

/// Thrown out of the reading of a string.
struct Trouble {
    ImportProblem::Kind kind;
    std::string text;
};

struct Option {
    std::string name;
    std::string value;

    std::string Text() const { return "+" + name + (value.empty() ? "" : "=" + value); }
};

[[noreturn]] void Refuse(const Option& option) {
    throw Trouble{ImportProblem::Kind::kUnsupported, option.Text()};
}

std::vector<Option> OptionsOf(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    std::vector<Option> options;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        if (text.empty()) return options;
        auto token = text.substr(0, text.find_first_of(kBlanks));
        text.remove_prefix(token.size());
        if (token.starts_with('+')) token.remove_prefix(1);
        const auto equals = std::min(token.find('='), token.size());
        const auto value = token.substr(std::min(equals + 1, token.size()));
        options.push_back({std::string(token.substr(0, equals)), std::string(value)});
    }
}

/// The options of one step, each of which is taken once.
class Step {
public:
    void Add(Option option) { options_.push_back(std::move(option)); }

    /// The value of an option, if it is there.
    std::optional<std::string> Take(std::string_view name) {
        const auto found = std::ranges::find(options_, name, &Option::name);
        if (found == options_.end()) return std::nullopt;
        std::string value = found->value;
        options_.erase(found);
        return value;
    }

    std::vector<double> TakeNumbers(const std::string& name, std::size_t count) {
        const auto text = Take(name);
        std::vector<double> numbers;
        std::string_view rest = text ? *text : std::string_view();
        while (!rest.empty()) {
            const auto field = rest.substr(0, rest.find(','));
            const auto number = ParseNumber(field);
            if (!number) break;
            numbers.push_back(*number);
            rest.remove_prefix(std::min(field.size() + 1, rest.size()));
        }
        if (!rest.empty() || numbers.size() != count)
            throw Trouble{ImportProblem::Kind::kUnsuitable, "+" + name};
        return numbers;
    }

    double TakeNumber(const std::string& name, std::optional<double> otherwise = {}) {
        const bool given = std::ranges::find(options_, name, &Option::name) != options_.end();
        return given || !otherwise ? TakeNumbers(name, 1).front() : *otherwise;
    }

    /// Refuses what has not been taken.
    void Finish() const {
        if (!options_.empty()) Refuse(options_.front());
    }

private:
    std::vector<Option> options_;
};

Transformation Affine(Step& step, Type linearType) {
    return {.type = linearType,
            .a = {step.TakeNumber("xoff", 0.0), step.TakeNumber("s11", 1.0),
                  step.TakeNumber("s12", 0.0)},
            .b = {step.TakeNumber("yoff", 0.0), step.TakeNumber("s21", 0.0),
                  step.TakeNumber("s22", 1.0)}};
}

/// The two-dimensional form, which the option theta tells from the one of seven parameters.
Transformation Helmert(Step& step) {
    for (const char* meaningless : {"convention", "exact"}) step.Take(meaningless);
    const double angle = step.TakeNumber("theta") / kArcSeconds;
    const double scale = step.TakeNumber("s", 1.0);
    const double cosine = scale * std::cos(angle);
    const double sine = scale * std::sin(angle);
    return {.type = Type::kHelmert,
            .a = {step.TakeNumber("x", 0.0), cosine, sine},
            .b = {step.TakeNumber("y", 0.0), -sine, cosine}};
}

Transformation Horner(Step& step) {
    const double degree = step.TakeNumber("deg");
    if (!(degree >= 1.0 && degree <= 5.0) || degree != std::floor(degree))
        Refuse({"deg", ShortestText(degree)});
    const int order = static_cast<int>(degree);
    // How PROJ goes back, and how far, says nothing of the transformation.
    for (const char* ofInverse : {"range", "inv_tolerance", "inv_origin", "inv_u", "inv_v"})
        step.Take(ofInverse);
    Transformation t{.type = static_cast<Type>(order), .a = {}, .b = {}};
    const auto terms = TermPowers(t.type);
    for (const bool ofSecond : {false, true}) {
        auto& series = ofSecond ? t.b : t.a;
        const auto values = step.TakeNumbers(ofSecond ? "fwd_v" : "fwd_u", terms.size());
        const auto powers = ListPowers(order, ofSecond);
        for (std::size_t i = 0; i < powers.size(); ++i)
            series[*IndexOf(terms, powers[i])] = values[i];
    }
    const auto origin = step.TakeNumbers("fwd_origin", 2);
    t.a[0] = origin[0];
    t.b[0] = origin[1];
    return t;
}

/// The axes whose step this is, which comes before the transformation or behind it.
AxisMapping Axes(Step& step, bool behind) {
    const bool back = step.Take("inv").has_value();
    const std::string order = step.Take("order").value_or("");
    for (const AxisMapping axes :
         {AxisMapping::kEn, AxisMapping::kNe, AxisMapping::kWs, AxisMapping::kSw, AxisMapping::kEs,
          AxisMapping::kWn, AxisMapping::kSe, AxisMapping::kNw}) {
        if (order == (behind == back ? SwapFromMap(axes) : SwapToMap(axes))) return axes;
    }
    throw Trouble{ImportProblem::Kind::kUnsuitable, "+order"};
}

TransformationRecord RecordOf(std::vector<Step> steps, Type linearType) {
    TransformationRecord record;
    bool found = false;
    bool swappedBefore = false;
    bool swappedBehind = false;
    for (Step& step : steps) {
        const std::string name = step.Take("proj").value_or("");
        if (name == "axisswap") {
            bool& swapped = found ? swappedBehind : swappedBefore;
            if (swapped) Refuse({"proj", name});
            swapped = true;
            (found ? record.targetAxes : record.sourceAxes) = Axes(step, found);
        } else if (found || (name != "affine" && name != "helmert" && name != "horner")) {
            Refuse({"proj", name});
        } else {
            found = true;
            record.transformation = name == "affine"    ? Affine(step, linearType)
                                    : name == "helmert" ? Helmert(step)
                                                        : Horner(step);
        }
        step.Finish();
    }
    if (!found) throw Trouble{ImportProblem::Kind::kUnsuitable, "+proj"};
    return record;
}

std::vector<Step> StepsOf(std::string_view text) {
    std::vector<Step> steps(1);
    auto options = OptionsOf(text);
    std::erase_if(options, [](const Option& option) {
        return option.Text() == "+no_defs" || option.Text() == "+type=coordop";
    });
    for (Option& option : options) {
        if (option.name == "step") {
            steps.emplace_back();
        } else {
            steps.back().Add(std::move(option));
        }
    }
    if (steps.size() > 1) {  // what stands before the first one is of the pipeline
        if (steps.front().Take("proj") != "pipeline")
            throw Trouble{ImportProblem::Kind::kUnsuitable, "+proj"};
        steps.front().Finish();
        steps.erase(steps.begin());
    }
    return steps;
}

}  // namespace

std::string ProjText(const TransformationRecord& record) {
    const Transformation& t = record.transformation;
    return BetweenSwaps(record, IsPolynomial(t.type) ? HornerText(t) : AffineText(t));
}

std::string ProjHelmertText(const TransformationRecord& record) {
    const auto& [type, a, b] = record.transformation;
    return BetweenSwaps(record,
                        "+proj=helmert +x=" + ShortestText(a[0]) + " +y=" + ShortestText(b[0]) +
                            " +s=" + ShortestText(Hypotenuse(a[1], a[2])) +
                            " +theta=" + ShortestText(std::atan2(a[2], a[1]) * kArcSeconds));
}

ImportedTransformation ReadProj(std::string_view text, Type linearType) {
    try {
        return {.record = RecordOf(StepsOf(text), linearType)};
    } catch (const Trouble& trouble) {
        return {.record = {}, .problem = ImportProblem{.kind = trouble.kind, .text = trouble.text}};
    }
}

}  // namespace kv_tr
