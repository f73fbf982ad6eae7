// Adjustments in any order of steps: taking a step back gives the fit before, to the last bit.
#include "fuzz/fuzz.h"
#include "kv_tr/analysis/warnings.h"
#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/files/report_html.h"
#include "kv_tr/files/transformation_log.h"

namespace kv_tr::test {
namespace {

bool Same(const Transformation& one, const Transformation& other) {
    const auto same = [](double a, double b) { return test::Same(a, b); };
    return one.type == other.type && std::ranges::equal(one.a, other.a, same) &&
           std::ranges::equal(one.b, other.b, same);
}

bool SameResiduals(std::span<const Residual> one, std::span<const Residual> other) {
    return std::ranges::equal(one, other, [](const Residual& a, const Residual& b) {
        return test::Same(a.first, b.first) && test::Same(a.second, b.second);
    });
}

/// A transformation with the coefficients that its type does not have taken from an earlier one.
Transformation Over(Transformation transformation, const Transformation& earlier) {
    const Type type = transformation.type;
    const int count = IsPolynomial(type) ? TermCount(type) + 1 : 3;
    std::copy(earlier.a.begin() + count, earlier.a.end(), transformation.a.begin() + count);
    std::copy(earlier.b.begin() + count, earlier.b.end(), transformation.b.begin() + count);
    return transformation;
}

void CheckFit(Adjustment& adjustment) {
    const Transformation before = adjustment.Result();
    const FitOutcome outcome = adjustment.Fit();
    if (!outcome.Computed()) return;
    const FitResult alone = Fit(adjustment.Points(), adjustment.FitType());
    Require(Same(Over(alone.transformation, before), adjustment.Result()) &&
                SameResiduals(alone.residuals, adjustment.Residuals()),
            "an adjustment fits what the points alone give");
    std::vector<Residual> computed = ResidualsOf(adjustment.Points(), adjustment.Result());
    Require(SameResiduals(computed, adjustment.Residuals()), "residuals are computed less given");
}

void CheckStepBack(Adjustment& adjustment, std::size_t index) {
    if (!adjustment.Fit().Computed()) return;
    const Adjustment before = adjustment;
    const bool changed = adjustment.Toggle(index);
    adjustment.Fit();
    if (!changed) {
        Require(Same(before.Result(), adjustment.Result()), "a refused step changes nothing");
        return;
    }
    if (!adjustment.Toggle(index)) {  // it has become one of exactly two
        adjustment = before;
        return;
    }
    adjustment.Fit();
    Require(Same(before.Result(), adjustment.Result()) &&
                SameResiduals(before.Residuals(), adjustment.Residuals()),
            "a point excluded and taken back gives the fit before");
    adjustment.Swap();
    adjustment.Swap();
    Require(std::ranges::equal(adjustment.Points(), before.Points(),
                               [](const ControlPoint& a, const ControlPoint& b) {
                                   return a.id == b.id && a.used == b.used &&
                                          test::Same(a.source, b.source) &&
                                          test::Same(a.destination, b.destination);
                               }),
            "exchanged twice, the systems are as before");
}

/// All that a program tells of an adjustment.
void Tell(const Adjustment& adjustment) {
    const TextLookup texts = TextsIn(kEnglish);
    (void)TextOf(LogOf(adjustment, texts));
    const AssessmentOptions options;
    const Assessment assessment = Assess(adjustment.Points(), adjustment.FitType(), options);
    const TypeAdvice advice = Advise(adjustment.Points(), options);
    const std::string html = HtmlOf(ReportOf(
        {.adjustment = adjustment, .assessment = assessment, .advice = advice, .options = options},
        texts));
    Require(html.ends_with("</html>\n"), "a report has its end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Adjustment adjustment;
    for (int step = 0; step < 12 && !input.Empty(); ++step) {
        const std::size_t count = adjustment.Points().size();
        const auto index = static_cast<std::size_t>(input.Byte());
        switch (input.Below(10)) {
            case 0: adjustment.Assign(input.Points(12)); break;
            case 1: {
                const auto points = input.Points(6);
                for (const ControlPoint& point : points) adjustment.Append({&point, 1});
                break;
            }
            case 2:
                if (count > 0) adjustment.Replace(index % count, {"x", input.AnyPoint(), {}});
                break;
            case 3: adjustment.SetType(static_cast<Type>(input.Below(40) - 5)); break;
            case 4: adjustment.LowerType(); break;
            case 5: adjustment.UseAll(); break;
            case 6: adjustment.RemoveExcluded(); break;
            case 7: CheckStepBack(adjustment, index); break;
            case 8: CheckFit(adjustment); break;
            case 9:
                if (index < 40 && adjustment.Fit().Computed()) Tell(adjustment);
                break;
        }
        const auto points = adjustment.Points();
        const auto used = std::ranges::count(points, true, &ControlPoint::used);
        Require(static_cast<std::size_t>(used) == adjustment.UsedCount() &&
                    adjustment.UsedCount() + adjustment.ExcludedCount() == points.size(),
                "points are counted");
        Require(adjustment.Residuals().size() == points.size(), "each point has a residual");
    }
    return 0;
}

}  // namespace kv_tr::test
