// Colours as values, without a toolkit.
#pragma once

#include <cstdint>

namespace kv_tr {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};

inline constexpr Colour kBlack{0, 0, 0};
inline constexpr Colour kRed{255, 0, 0};
inline constexpr Colour kBlue{0, 0, 255};
inline constexpr Colour kYellow{255, 255, 0};

}  // namespace kv_tr
