// Texts and numbers as a report has them.
#pragma once

#include <initializer_list>
#include <numbers>
#include <string>
#include <string_view>

#include "kv_tr/text/number_text.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// In a radian.
inline constexpr double kDegrees = 180.0 / std::numbers::pi;

/// What stands for a figure that is not defined.
inline constexpr char kUndefinedText[] = "–";

class ReportWords {
public:
    ReportWords(const TextLookup& texts, NumberStyle style) : texts_(texts), style_(style) {}

    const TextLookup& Texts() const { return texts_; }
    NumberStyle Style() const { return style_; }

    std::string operator()(Text id) const { return texts_(id); }
    std::string operator()(Text id, std::initializer_list<std::string> values) const {
        return FillPlaces(texts_(id), values);
    }

    std::string Fixed(double value, int decimals) const;
    std::string Coordinate(double metres) const { return Fixed(metres, 3); }
    std::string Length(double metres) const { return Fixed(metres, 4); }
    /// With two significant digits.
    std::string Figure(double value) const;
    /// With all digits that it takes to read the same number back.
    std::string Whole(double value) const;
    /// With the decimals that a standard deviation leaves significant, two of its own; otherwise
    /// with the usual ones. No number has more than 12.
    std::string Within(double value, double sigma, int usual) const;

private:
    const TextLookup& texts_;
    NumberStyle style_;
};

}  // namespace kv_tr
