// The published number formats, which follow the component's decimal separator.
#pragma once

#include <cstdint>
#include <string>

#include "kv_tr/text/number_text.h"

namespace kv_tr {

/// The decimal separator of everything that the component writes: '.' or ','. The user's regional
/// setting when the component starts; a host may set it.
char DecimalSeparator();
void DecimalSeparator(char separator);

/// How the component writes numbers at the moment.
NumberStyle ComponentNumberStyle();

/// FixedText padded with blanks on the left to nWidth characters; a longer text is not cut.
std::string FormatFixed(double dValue, std::uint8_t nDecimals, std::uint8_t nWidth);

/// SciText padded with blanks on the left to 30 characters.
std::string FormatSci(double dValue);

}  // namespace kv_tr
