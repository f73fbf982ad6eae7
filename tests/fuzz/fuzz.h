// What the harnesses share: random input taken apart, and laws that must hold.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/model/control_point.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr::test {

/// Ends the program, which libFuzzer takes for a finding, where a law does not hold.
inline void Require(bool holds, const char* law) {
    if (holds) return;
    std::fprintf(stderr, "This law does not hold: %s\n", law);
    std::abort();
}

/// Equal to the last bit, or both not a number.
inline bool Same(double one, double other) {
    return std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other) ||
           (std::isnan(one) && std::isnan(other));
}

inline bool Same(Point one, Point other) {
    return Same(one.first, other.first) && Same(one.second, other.second);
}

/// Random input, taken apart from its end, so that whole files serve as seeds.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes_(reinterpret_cast<const char*>(data), size) {}

    bool Empty() const { return bytes_.empty(); }
    /// What has not been taken.
    std::string_view Rest() const { return bytes_; }
    /// The last bytes, as many as there are.
    std::string_view Take(std::size_t count) {
        const std::size_t start = bytes_.size() - std::min(count, bytes_.size());
        const std::string_view taken = bytes_.substr(start);
        bytes_.remove_suffix(taken.size());
        return taken;
    }
    std::uint8_t Byte() {
        const std::string_view taken = Take(1);
        return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken[0]);
    }
    /// A number below a bound of at most 256.
    int Below(int bound) { return Byte() % bound; }
    bool Flag() { return Byte() % 2 == 1; }
    /// Any double: infinite, undefined and denormal ones too.
    double AnyDouble() {
        double value = 0;
        const std::string_view taken = Take(sizeof value);
        std::memcpy(&value, taken.data(), taken.size());
        return value;
    }
    /// Mostly a coordinate as surveyors have them, now and then any double.
    double Coordinate() {
        const int kind = Byte();
        if (kind < 20) return AnyDouble();
        const double number = static_cast<std::int16_t>(Byte() << 8 | Byte());
        if (kind < 100) return number;
        return kind < 200 ? 600000 + number * 0.25 : number * 1e-3;
    }
    Point AnyPoint() {
        const double first = Coordinate();
        return {first, Coordinate()};
    }
    /// Up to so many control points with short identifiers.
    std::vector<ControlPoint> Points(int most);

private:
    std::string_view bytes_;
};

inline std::vector<ControlPoint> Input::Points(int most) {
    std::vector<ControlPoint> points(static_cast<std::size_t>(Below(most + 1)));
    for (ControlPoint& point : points) {
        point.id = std::string(Take(Byte() % 8));
        point.source = AnyPoint();
        const Point moved = AnyPoint();
        point.destination = {point.source.first + moved.first, point.source.second + moved.second};
        point.used = Byte() % 8 != 0;
    }
    return points;
}

/// How many lines a text has, whatever ends them.
inline std::uint64_t LineCount(std::string_view text) {
    std::uint64_t count = 0;
    for (; !text.empty(); ++count) TakeLine(text);
    return count;
}

}  // namespace kv_tr::test
