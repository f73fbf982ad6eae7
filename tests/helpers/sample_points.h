// Control points and transformations for tests: general numbers, nothing equal or symmetric.
#pragma once

#include <cmath>

#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"
#include "kv_tr/published/records.h"

namespace kv_tr::test {

/// Pairs named 1, 2, ... whose destination is the image of the source.
std::vector<typeXYs4Tr> PairsBy(const std::vector<PlanePoint>& source, auto map) {
    std::vector<typeXYs4Tr> pairs;
    for (const auto& [first, second] : source) {
        const auto [x, y] = map(PlanePoint{first, second});
        pairs.push_back({std::to_string(pairs.size() + 1), first, second, x, y});
    }
    return pairs;
}

/// Points spread irregularly over about a kilometre, whole metres, no three on a line.
inline std::vector<PlanePoint> SpreadPoints(std::size_t count) {
    std::vector<PlanePoint> points;
    for (std::uint32_t i = 0; i < count; ++i)
        points.push_back(
            {1000.0 + (i * 617 + i * i * 13) % 997, 2000.0 + (i * 389 + i * i * 71) % 1009});
    return points;
}

inline PlanePoint Identity(PlanePoint point) { return point; }

inline PlanePoint Shift(PlanePoint point) { return {point.first + 100.0, point.second - 50.0}; }

/// Spread points with their images by the shift.
inline std::vector<typeXYs4Tr> ShiftedPairs(std::size_t count) {
    return PairsBy(SpreadPoints(count), Shift);
}

/// A turn with scales along the source axes and a shift.
inline Transformation Turned(Type type, double angle, double scaleFirst, double scaleSecond,
                             Point shift) {
    const double s = std::sin(angle), c = std::cos(angle);
    return {type,
            {shift.first, scaleFirst * c, -scaleSecond * s},
            {shift.second, scaleFirst * s, scaleSecond * c}};
}

/// A transformation of a type that fits can find; terms of every degree bend by some metres.
inline Transformation General(Type type) {
    constexpr Point kShift{512.3456, -1731.0629};
    switch (type) {
        case Type::kHelmert: return Turned(type, 0.61, 0.83, 0.83, kShift);
        case Type::kHelmert3: return Turned(type, 0.61, 1.0, 1.0, kShift);
        case Type::kAffine5: return Turned(type, 0.61, 1.21, 0.74, kShift);
        case Type::kAffine: return {type, {512.3456, 0.93, -0.28}, {-1731.0629, 0.41, 1.17}};
        default: break;
    }
    Transformation t{.type = type, .a = {1480.2504}, .b = {2530.7507}};
    for (int k = 1; k < 22; ++k) {
        const double degree = std::floor((std::sqrt(8.0 * k - 7.0) - 1.0) / 2.0);
        const double size = std::pow(2000.0, 1.0 - degree);
        t.a[k] = size * (0.3 + 0.05 * (k * 7 % 23));
        t.b[k] = size * (1.4 - 0.05 * (k * 5 % 23));
    }
    return t;
}

/// Control points named 1, 2, ... whose destinations are the images of spread points, apart from
/// errors that are unequal in the two coordinates.
inline std::vector<ControlPoint> PointsBy(const Transformation& t, std::size_t count,
                                          double error = 0.0) {
    std::vector<ControlPoint> points;
    for (const Point source : SpreadPoints(count)) {
        const auto k = static_cast<double>(points.size());
        auto [first, second] = t.Apply(source);
        first += error * std::sin(1.7 * k * k);
        second += 2.3 * error * std::cos(2.3 * k + 0.2 * k * k);
        points.push_back({std::to_string(points.size() + 1), source, {first, second}});
    }
    return points;
}

}  // namespace kv_tr::test
