// The report of a fit.
#include "kv_tr/published/transformation_log.h"

#include <span>
#include <vector>

#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/formula_text.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

constexpr const char* kLineEnd = "\r\n";

std::string Metres(double value) { return FormatFixed(value, 3, 0) + " m"; }

/// "a0 = " to "a9 = ", then "a10= " and so on.
std::string Label(char series, int index) {
    return series + std::to_string(index) + (index < 10 ? " = " : "= ");
}

std::string PolynomialParameters(const TR_PRM& record) {
    const auto [a, b] = CoefficientsOf(record);
    std::string text;
    for (int k = 0; k <= TermCount(record.eType); ++k) {
        const auto index = static_cast<std::size_t>(k);
        text += "\t" + Label('a', k) + SciText(a[index], ComponentNumberStyle()) + "          " +
                Label('b', k) + SciText(b[index], ComponentNumberStyle()) + kLineEnd;
    }
    const auto formulas = FormulaTexts(record.eType);
    text += std::string(kLineEnd) + "\t" + formulas[0] + kLineEnd;
    for (const std::string& formula : std::span(formulas).subspan(1)) {
        text += "\t" + formula + kLineEnd + kLineEnd;
    }
    return text;
}

std::string AccuracyFigures(const clsTrCalc& engine) {
    return "\t" + GetMlString(104, "Középhibák:") +                         //
           "\tY =" + Metres(engine.dRmsErrX()) +                            //
           "\tX =" + Metres(engine.dRmsErrY()) +                            //
           "\tYX=" + Metres(engine.dRmsErr()) + kLineEnd +                  //
           "\t" + GetMlString(105, "Középértékek:") +                       //
           "\t" + GetMlString(168, "Y =") + Metres(engine.dMiddleErrX()) +  //
           "\t" + GetMlString(170, "X =") + Metres(engine.dMiddleErrY()) + kLineEnd + kLineEnd;
}

std::string PointTable(const clsTrCalc& engine, bool used, const std::string& title) {
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetXYs(pairs, count, used);
    if (count == 0 && !used) return {};
    std::string table = "\t" + title + kLineEnd +
                        GetMlString(107,
                                    "            Pontszám     ____ Y1 __     ____ X1 __     "
                                    "____ Y2 __     ____ X2 __  __ dX __  __ dY __  _ dXY __") +
                        kLineEnd;
    for (const typeXYs4Tr& pair : pairs) {
        table += PadLeft(WithoutControls(pair.sId), 20);
        for (const double coordinate : {pair.dXsour, pair.dYsour, pair.dXdest, pair.dYdest}) {
            table += FormatFixed(coordinate, 3, 15);
        }
        for (const double residual : {pair.dXerr, pair.dYerr, ResidualLength(pair)}) {
            table += FormatFixed(residual, 3, 10);
        }
        table += kLineEnd;
    }
    return table;
}

}  // namespace

std::array<std::string, 5> TransformationLog(const clsTrCalc& engine) {
    const TR_PRM record = engine.udtTrPrm();
    return {
        "\t" + GetMlString(103, "Transzformációs jegyzőkönyv") + kLineEnd,
        "\t" + TypeName(record.eType),
        engine.bTypeIsPolinom() ? PolynomialParameters(record)
                                : SixParameterText(record) + kLineEnd,
        AccuracyFigures(engine) + PointTable(engine, true, GetMlString(106, "Számított pontok:")),
        PointTable(engine, false, GetMlString(108, "Kizárt pontok:"))};
}

}  // namespace kv_tr
