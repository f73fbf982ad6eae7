// Numbers, attributes and texts as SVG documents have them.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// A number with two decimals and a point, whatever the decimal separator is.
std::string SvgNumber(double value);

/// An attribute with a blank before it.
std::string SvgAttribute(std::string_view name, double value);

/// The text as XML may have it; what XML lacks becomes a blank, what is no UTF-8 becomes U+FFFD.
std::string SvgEscaped(std::string_view foreign);

}  // namespace kv_tr
