// Foreign text in messages.
#pragma once

#include <string>

#include "kv_tr/text/control_characters.h"

namespace kv_tr::app {

/// A text as it can be shown on one line: control characters as "_", and cut.
inline std::string Excerpt(const std::string& text) {
    constexpr std::size_t kLongest = 80;
    std::string shown = text.substr(0, kLongest);
    const auto continuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    if (text.size() > kLongest) {
        std::size_t end = kLongest;
        while (end > 0 && continuation(text[end])) --end;
        shown = text.substr(0, end) + "...";
    }
    return WithoutControls(shown);
}

}  // namespace kv_tr::app
