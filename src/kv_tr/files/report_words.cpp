// Texts and numbers as a report has them.
#include "kv_tr/files/report_words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "kv_tr/analysis/warnings.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {

std::string ReportWords::Fixed(double value, int decimals) const {
    return std::isfinite(value) ? FixedText(value, decimals, style_) : kUndefinedText;
}

std::string ReportWords::Figure(double value) const { return FigureText(value, style_); }

std::string ReportWords::Whole(double value) const {
    if (!std::isfinite(value)) return kUndefinedText;
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    std::string text(digits.data(), end);
    std::ranges::replace(text, '.', style_.decimalSign);
    return text;
}

std::string ReportWords::Within(double value, double sigma, int usual) const {
    constexpr double kMostDecimals = 12;
    if (!std::isfinite(sigma) || sigma <= 0.0) return Fixed(value, usual);
    const double decimals = 1.0 - DecimalExponent(sigma);
    return Fixed(value, static_cast<int>(std::clamp(decimals, 0.0, kMostDecimals)));
}

}  // namespace kv_tr
