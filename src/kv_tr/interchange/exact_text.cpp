// Numbers as text that reads back to the same double.
#include "kv_tr/interchange/exact_text.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace kv_tr {

std::string ExactText(double value) {
    const double size = std::abs(value);
    const bool plain = size == 0.0 || (size >= 1e-5 && size < 1e15);
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    char buffer[32];
    const auto end = std::to_chars(buffer, std::end(buffer), size == 0.0 ? 0.0 : value, format).ptr;
    return {buffer, end};
}

}  // namespace kv_tr
