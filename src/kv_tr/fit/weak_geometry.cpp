// Why points determine a transformation badly, or not at all.
#include "kv_tr/fit/weak_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "kv_tr/fit/design.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

/// How many distinct places there are, counted up to a limit.
std::size_t CountPlaces(std::span<const Point> points, double resolution, std::size_t limit) {
    std::vector<Point> places;
    for (const Point& point : points) {
        const bool known = std::ranges::any_of(places, [&](Point place) {
            return Hypotenuse(place.first - point.first, place.second - point.second) < resolution;
        });
        if (known) continue;
        places.push_back(point);
        if (places.size() == limit) break;
    }
    return places.size();
}

/// The median distance, metres, from the curve of an order that fits the points best.
double DistanceFromCurve(std::span<const Point> sources, const Frame& axes, int order) {
    if (order == 1) {
        std::vector<double> distances;
        for (const Point& source : sources) {
            distances.push_back(std::abs(axes.Into(source).second) / axes.perMetre.second);
        }
        std::ranges::nth_element(distances, distances.begin() + std::ssize(distances) / 2);
        return distances[distances.size() / 2];
    }
    const Type model{order};
    const std::vector<Point> inFrame = Into(axes, sources);
    const std::vector<Point> nothing(inFrame.size());
    Transformation curve;
    curve.type = model;
    curve.a = {};
    curve.b = {};
    const auto weakest = Design(model, axes).Factor(inFrame, nothing).WeakestCombination();
    std::ranges::copy(weakest, curve.a.begin() + 1);
    std::vector<double> distances;
    for (const Point& point : inFrame) {
        const Derivative slope = DerivativeAt(curve, point);
        const double steepness = Hypotenuse(slope.firstByFirst * axes.perMetre.first,
                                            slope.firstBySecond * axes.perMetre.second);
        const double value = std::abs(curve.Apply(point).first);
        distances.push_back(value == 0.0 ? 0.0 : value / steepness);
    }
    std::ranges::nth_element(distances, distances.begin() + std::ssize(distances) / 2);
    return distances[distances.size() / 2];
}

/// How many groups of touching cells the points lie in.
std::size_t CountGroups(std::span<const Point> points, double cell) {
    using Cell = std::pair<std::int64_t, std::int64_t>;
    std::map<Cell, bool> cells;  // whether a group has it
    for (const Point& point : points) {
        cells[{static_cast<std::int64_t>(std::floor(point.first / cell)),
               static_cast<std::int64_t>(std::floor(point.second / cell))}] = false;
    }
    std::size_t groups = 0;
    for (auto& [start, taken] : cells) {
        if (taken) continue;
        ++groups;
        taken = true;
        std::vector<Cell> open{start};
        while (!open.empty()) {
            const Cell at = open.back();
            open.pop_back();
            for (std::int64_t i = -1; i <= 1; ++i) {
                for (std::int64_t j = -1; j <= 1; ++j) {
                    const auto next = cells.find({at.first + i, at.second + j});
                    if (next == cells.end() || next->second) continue;
                    next->second = true;
                    open.push_back(next->first);
                }
            }
        }
    }
    return groups;
}

int CurveOrders(Type model) {
    if (model == Type::kBilinear) return 2;
    return model >= Type::kPolynomial1 ? PolynomialOrder(model) : 1;
}

}  // namespace

WeakGeometry FindWeakGeometry(std::span<const Point> sources, const Frame& frame, Type model) {
    const auto needed = static_cast<std::size_t>(MinimumPoints(model));
    const double extent = 2.0 * frame.halfLength;
    const std::size_t places = CountPlaces(sources, frame.resolution, needed);
    if (places < needed) {
        return {.kind = WeakGeometry::Kind::kTooFewPlaces, .count = places, .needed = needed};
    }

    const Frame axes = FrameOf(sources, {}, Type::kPolynomial1);
    for (int order = 1; order <= CurveOrders(model); ++order) {
        const double distance = DistanceFromCurve(sources, axes, order);
        if (distance < 0.01 * extent) {
            return {.kind = WeakGeometry::Kind::kCurve, .order = order, .distance = distance};
        }
    }
    const std::size_t groups = CountGroups(sources, 0.01 * extent);
    if (groups > 1 && groups < needed)
        return {.kind = WeakGeometry::Kind::kGroups, .count = groups};
    const bool few = 2 * sources.size() < 3 * needed;
    return {.kind = few ? WeakGeometry::Kind::kFewPoints : WeakGeometry::Kind::kSpread};
}

}  // namespace kv_tr
