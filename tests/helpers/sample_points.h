// Control points and transformations for tests: general numbers, nothing equal or symmetric.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"
#include "kv_tr/published/records.h"

namespace kv_tr::test {

/// Pairs named 1, 2, ... whose destination is the image of the source.
inline std::vector<typeXYs4Tr> PairsBy(const std::vector<PlanePoint>& source,
                                       const std::function<PlanePoint(PlanePoint)>& map) {
    std::vector<typeXYs4Tr> pairs;
    for (const PlanePoint& point : source) {
        const PlanePoint image = map(point);
        pairs.push_back({.sId = std::to_string(pairs.size() + 1),
                         .dXsour = point.first,
                         .dYsour = point.second,
                         .dXdest = image.first,
                         .dYdest = image.second});
    }
    return pairs;
}

/// Points spread irregularly over about a kilometre, whole metres, no three on a line.
inline std::vector<PlanePoint> SpreadPoints(std::size_t count) {
    std::vector<PlanePoint> points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back({static_cast<double>(1000 + (i * 617 + i * i * 13) % 997),
                          static_cast<double>(2000 + (i * 389 + i * i * 71) % 1009)});
    }
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
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    return {.type = type,
            .a = {shift.first, scaleFirst * c, -scaleSecond * s},
            .b = {shift.second, scaleFirst * s, scaleSecond * c}};
}

/// A transformation of a type that fits can find; terms of every degree bend by some metres.
inline Transformation General(Type type) {
    constexpr Point kShift{512.3456, -1731.0629};
    switch (type) {
        case Type::kHelmert: return Turned(type, 0.61, 0.83, 0.83, kShift);
        case Type::kHelmert3: return Turned(type, 0.61, 1.0, 1.0, kShift);
        case Type::kAffine5: return Turned(type, 0.61, 1.21, 0.74, kShift);
        case Type::kAffine:
            return {.type = type, .a = {512.3456, 0.93, -0.28}, .b = {-1731.0629, 0.41, 1.17}};
        default: break;
    }
    Transformation t{.type = type, .a = {1480.2504}, .b = {2530.7507}};
    double size = 4e6;
    for (std::size_t k = 1, degree = 0, next = 1; k < t.a.size(); ++k) {
        if (k == next) {
            size /= 2000.0;
            next += ++degree;
        }
        t.a[k] = size * (0.3 + 0.05 * static_cast<double>(k * 7 % 23));
        t.b[k] = size * (1.4 - 0.05 * static_cast<double>(k * 5 % 23));
    }
    t.a[1] = 7113.25;
    t.b[1] = -3307.75;
    return t;
}

/// Control points named 1, 2, ... whose destinations are the images of spread points.
inline std::vector<ControlPoint> PointsBy(const Transformation& t, std::size_t count) {
    std::vector<ControlPoint> points;
    for (const Point source : SpreadPoints(count))
        points.push_back({std::to_string(points.size() + 1), source, t.Apply(source)});
    return points;
}

/// The same with some centimetres of errors, unequal in the two coordinates.
inline std::vector<ControlPoint> NoisyPointsBy(const Transformation& t, std::size_t count) {
    auto points = PointsBy(t, count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto k = static_cast<double>(i);
        points[i].destination.first += 0.03 * std::sin(1.7 * k * k);
        points[i].destination.second += 0.07 * std::cos(2.3 * k + 0.2 * k * k);
    }
    return points;
}

}  // namespace kv_tr::test
