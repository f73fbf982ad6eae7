// The 16-bit boolean of published records: true is -1, as hosts of the component expect.
#pragma once

#include <cstdint>

namespace kv_tr {

class Bool16 {
public:
    constexpr Bool16() = default;
    constexpr Bool16(bool value) : value_(value ? std::int16_t{-1} : std::int16_t{0}) {}
    constexpr operator bool() const { return value_ != 0; }

private:
    std::int16_t value_ = 0;
};

static_assert(sizeof(Bool16) == 2);

}  // namespace kv_tr
