// Transformations as formulas: of spreadsheets, programs, queries, and to read.
//
// Programs and queries add terms from left to right and make each term the coefficient times the
// product of its powers, u·u·v·v from left to right, as Transformation::Apply does: without
// contraction of products and sums they give the same bits.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <functional>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/model/groups.h"

namespace kv_tr {
namespace {

struct CollectPowers {
    std::vector<Powers>& powers;

    template <Type kind>
    void At() const {
        powers.emplace_back();
        const auto steps = groups::TermSteps<kind>();
        for (auto step = steps.begin() + 1; step != steps.end(); ++step) {
            Powers term = powers[step->earlier];
            ++(step->timesU ? term.ofU : term.ofV);
            powers.push_back(term);
        }
    }
};

using Series = Transformation::Series;
using NumberText = std::function<std::string(double)>;

/// A number that no language takes for an integer.
std::string DecimalText(double value) {
    const std::string text = ShortestText(value);
    return text.find_first_of(".e") == text.npos ? text + ".0" : text;
}

/// A number that SQL takes for a double, not for an exact decimal.
std::string ApproximateText(double value) {
    const std::string text = ShortestText(value);
    return text.find('e') == text.npos ? text + "e0" : text;
}

std::string Bracketed(const std::string& number) {
    return number.starts_with('-') ? "(" + number + ")" : number;
}

/// "u*u*v".
std::string ProductText(Powers powers) {
    std::string text;
    for (int i = 0; i < powers.ofU + powers.ofV; ++i) {
        text += text.empty() ? "" : "*";
        text += i < powers.ofU ? 'u' : 'v';
    }
    return text;
}

/// The names that formulas have for what they begin with.
struct Names {
    std::string first;
    std::string second;
};

/// One coordinate as a sum, a term a line behind this indentation.
std::string SumText(Type type, const Series& c, const Names& names, const NumberText& number,
                    const std::string& indentation) {
    const auto term = [&](std::size_t k, const std::string& factor) {
        return "\n" + indentation + "+ " + Bracketed(number(c[k])) + "*" + factor;
    };
    if (!IsPolynomial(type)) return number(c[0]) + term(1, names.first) + term(2, names.second);
    const auto powers = TermPowers(type);
    std::string text = number(c[1]);
    for (std::size_t i = 1; i < powers.size(); ++i) {
        const std::string product = ProductText(powers[i]);
        text += term(i + 1, product.size() > 1 ? "(" + product + ")" : product);
    }
    return text;
}

/// "first - 5" for the reduction of a coordinate.
std::string Reduction(const std::string& name, double origin, const NumberText& number) {
    return name + " - " + Bracketed(number(origin));
}

/// A constant of a spreadsheet. Some keep 15 digits of a constant: one with more is written as the
/// sum of its first 15 digits and the rest, which is the number itself.
std::string CellConstant(double value, NumberStyle style) {
    constexpr int kDigits = 15;
    const std::string text = ShortestText(value, style);
    const auto digits =
        std::ranges::count_if(text.substr(0, text.find('e'))
                                  .substr(std::min(text.find_first_of("123456789"), text.size())),
                              [](char c) { return c >= '0' && c <= '9'; });
    if (digits <= kDigits) return Bracketed(text);
    const auto rounded = [](double number) {
        char buffer[32];
        const auto end = std::to_chars(buffer, std::end(buffer), number,
                                       std::chars_format::scientific, kDigits - 1)
                             .ptr;
        double result = 0.0;
        std::from_chars(buffer, end, result);
        return result;
    };
    const double most = rounded(value);
    const std::string rest = ShortestText(rounded(value - most), style);
    return "(" + ShortestText(most, style) + (rest.starts_with('-') ? "" : "+") + rest + ")";
}

/// c0 + x (c1 + x (c2 + ...)).
std::string Nested(const std::vector<std::string>& coefficients, const std::string& cell) {
    std::string text = coefficients.back();
    for (auto c = coefficients.rbegin() + 1; c != coefficients.rend(); ++c) {
        std::string outer = *c;
        outer.append("+").append(cell).append("*(").append(text).append(")");
        text = std::move(outer);
    }
    return text;
}

/// One coordinate of a polynomial, nested in the powers of u within those of v.
std::string NestedText(Type type, const Series& c, NumberStyle style) {
    const auto powers = TermPowers(type);
    std::vector<std::string> byPowerOfV;
    for (int ofV = 0;; ++ofV) {
        std::vector<std::string> byPowerOfU;
        for (std::size_t i = 0; i < powers.size(); ++i) {
            if (powers[i].ofV == ofV) byPowerOfU.push_back(CellConstant(c[i + 1], style));
        }
        if (byPowerOfU.empty()) return Nested(byPowerOfV, "$D2");
        byPowerOfV.push_back(Nested(byPowerOfU, "$C2"));
    }
}

}  // namespace

std::vector<Powers> TermPowers(Type type) {
    std::vector<Powers> powers;
    groups::ForKind(std::max(type, Type::kPolynomial1), CollectPowers{powers});
    return powers;
}

std::string SpreadsheetText(const Transformation& transformation, NumberStyle style) {
    const auto& [type, a, b] = transformation;
    const auto constant = [style](double value) { return CellConstant(value, style); };
    if (!IsPolynomial(type)) {
        const auto cell = [&](const Series& c) {
            return "=" + constant(c[0]) + "+" + constant(c[1]) + "*$A2+" + constant(c[2]) + "*$B2";
        };
        return cell(a) + "\t" + cell(b) + "\n";
    }
    return "=$A2-" + constant(a[0]) + "\t=$B2-" + constant(b[0]) +
           "\t=" + NestedText(type, a, style) + "\t=" + NestedText(type, b, style) + "\n";
}

std::string CText(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    const Names names{"first", "second"};
    std::string text =
        "/* The image of a point, coordinates in metres. Compile without contraction of products "
        "and\n"
        "   sums (gcc and clang: -ffp-contract=off) to get the same bits everywhere. */\n"
        "void transform(double first, double second, double *image_first, double *image_second)\n"
        "{\n";
    if (IsPolynomial(type)) {
        text += "    const double u = " + Reduction("first", a[0], DecimalText) + ";\n" +
                "    const double v = " + Reduction("second", b[0], DecimalText) + ";\n";
    }
    const std::string indentation(8, ' ');
    return text + "    *image_first = " + SumText(type, a, names, DecimalText, indentation) +
           ";\n    *image_second = " + SumText(type, b, names, DecimalText, indentation) + ";\n}\n";
}

std::string PythonText(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    const Names names{"first", "second"};
    std::string text =
        "def transform(first, second):\n"
        "    \"\"\"The image of a point, or of numpy arrays of coordinates, in metres.\"\"\"\n";
    if (IsPolynomial(type)) {
        text += "    u = " + Reduction("first", a[0], DecimalText) +
                "\n    v = " + Reduction("second", b[0], DecimalText) + "\n";
    }
    const std::string indentation(8, ' ');
    return text + "    image_first = (\n        " +
           SumText(type, a, names, DecimalText, indentation) +
           "\n    )\n    image_second = (\n        " +
           SumText(type, b, names, DecimalText, indentation) +
           "\n    )\n    return image_first, image_second\n";
}

std::string SqlText(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    const Names names{"source_first", "source_second"};
    const std::string indentation(8, ' ');
    const std::string select =
        "SELECT id,\n    " + SumText(type, a, names, ApproximateText, indentation) +
        " AS target_first,\n    " + SumText(type, b, names, ApproximateText, indentation) +
        " AS target_second\n";
    if (!IsPolynomial(type)) return select + "FROM points;\n";
    return select + "FROM (SELECT id,\n        " + Reduction(names.first, a[0], ApproximateText) +
           " AS u,\n        " + Reduction(names.second, b[0], ApproximateText) +
           " AS v\n    FROM points) AS reduced;\n";
}

std::string FormulasText(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    const Names names{"first", "second"};
    const NumberText number = [](double value) { return ShortestText(value); };
    std::string text;
    if (IsPolynomial(type)) {
        text = "u = " + Reduction("first", a[0], number) +
               "\nv = " + Reduction("second", b[0], number) + "\n";
    }
    const std::string indentation(4, ' ');
    return text + "first' = " + SumText(type, a, names, number, indentation) +
           "\nsecond' = " + SumText(type, b, names, number, indentation) + "\n";
}

}  // namespace kv_tr
