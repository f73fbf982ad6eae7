// The published number formats, which follow the component's decimal separator.
#include "kv_tr/published/number_format.h"

#include "kv_tr/published/component.h"

namespace kv_tr {

char DecimalSeparator() { return TheComponent().decimalSeparator; }

void DecimalSeparator(char separator) { TheComponent().decimalSeparator = separator; }

NumberStyle ComponentNumberStyle() { return {DecimalSeparator()}; }

std::string FormatFixed(double dValue, std::uint8_t nDecimals, std::uint8_t nWidth) {
    return PadLeft(FixedText(dValue, nDecimals, ComponentNumberStyle()), nWidth);
}

std::string FormatSci(double dValue) {
    return PadLeft(SciText(dValue, ComponentNumberStyle()), 30);
}

}  // namespace kv_tr
