// The area that points span.
#include "kv_tr/model/hull.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

/// Twice the area of the triangle of three points, positive when the way a - b - c turns left.
double Turn(Point a, Point b, Point c) {
    return (b.first - a.first) * (c.second - a.second) -
           (b.second - a.second) * (c.first - a.first);
}

bool IsBefore(Point a, Point b) {
    return a.first < b.first || (a.first == b.first && a.second < b.second);
}

/// The points that are not inside the upright rectangle within the four that lie farthest along the
/// diagonals; no others can be corners.
std::vector<Point> OuterPoints(std::span<const Point> points) {
    const auto sum = [](Point p) { return p.first + p.second; };
    const auto difference = [](Point p) { return p.first - p.second; };
    const auto [lowerLeft, upperRight] = std::ranges::minmax(points, {}, sum);
    const auto [upperLeft, lowerRight] = std::ranges::minmax(points, {}, difference);
    const double left = std::max(lowerLeft.first, upperLeft.first);
    const double right = std::min(lowerRight.first, upperRight.first);
    const double lower = std::max(lowerLeft.second, lowerRight.second);
    const double upper = std::min(upperLeft.second, upperRight.second);
    std::vector<Point> outer;
    for (const Point& point : points) {
        const bool inside = left < point.first && point.first < right && lower < point.second &&
                            point.second < upper;
        if (!inside) outer.push_back(point);
    }
    return outer;
}

Point Between(Point from, Point to, double part) {
    return {from.first + part * (to.first - from.first),
            from.second + part * (to.second - from.second)};
}

/// The centroid of the area, or the mean of the corners where there is none.
Point AreaCentroid(std::span<const Point> hull) {
    const Point origin = hull.front();
    Point sum;
    double area = 0.0;
    Point mean;
    for (std::size_t i = 0; i < hull.size(); ++i) {
        const Point a{hull[i].first - origin.first, hull[i].second - origin.second};
        const Point next = hull[(i + 1) % hull.size()];
        const Point b{next.first - origin.first, next.second - origin.second};
        const double twice = a.first * b.second - a.second * b.first;
        area += twice;
        sum.first += twice * (a.first + b.first);
        sum.second += twice * (a.second + b.second);
        mean.first += a.first / static_cast<double>(hull.size());
        mean.second += a.second / static_cast<double>(hull.size());
    }
    if (area > 0.0) mean = {sum.first / (3.0 * area), sum.second / (3.0 * area)};
    return {origin.first + mean.first, origin.second + mean.second};
}

double DistanceToEdge(Point from, Point to, Point point) {
    const Point edge{to.first - from.first, to.second - from.second};
    const double squared = edge.first * edge.first + edge.second * edge.second;
    const double along =
        (point.first - from.first) * edge.first + (point.second - from.second) * edge.second;
    const double part = squared > 0.0 ? std::clamp(along / squared, 0.0, 1.0) : 0.0;
    const Point foot = Between(from, to, part);
    return Hypotenuse(point.first - foot.first, point.second - foot.second);
}

}  // namespace

std::vector<Point> ConvexHull(std::span<const Point> points) {
    if (points.empty()) return {};
    std::vector<Point> sorted = OuterPoints(points);
    std::ranges::sort(sorted, IsBefore);
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (sorted.size() < 3) return sorted;

    std::vector<Point> hull;
    const auto add = [&hull](Point point, std::size_t kept) {
        while (hull.size() > kept && Turn(hull[hull.size() - 2], hull.back(), point) <= 0.0) {
            hull.pop_back();
        }
        hull.push_back(point);
    };
    for (const Point& point : sorted) add(point, 1);
    const std::size_t lower = hull.size();
    for (std::size_t i = sorted.size() - 1; i-- > 0;) add(sorted[i], lower);
    hull.pop_back();
    return hull;
}

std::vector<Point> HullSamples(std::span<const Point> hull) {
    constexpr std::size_t kMostWays = 49;
    constexpr std::array<double, 4> kParts{0.25, 0.5, 0.75, 1.0};
    std::vector<Point> samples;
    if (hull.empty()) return samples;
    const Point centre = AreaCentroid(hull);
    samples.push_back(centre);
    if (hull.size() < 2) return samples;
    const std::size_t ways = 2 * hull.size();
    const std::size_t step = (ways + kMostWays - 1) / kMostWays;
    for (std::size_t way = 0; way < ways; way += step) {
        const Point corner = hull[way / 2];
        const Point next = hull[(way / 2 + 1) % hull.size()];
        const Point end = way % 2 == 0 ? corner : Between(corner, next, 0.5);
        for (const double part : kParts) samples.push_back(Between(centre, end, part));
    }
    return samples;
}

double DistanceOutside(std::span<const Point> hull, Point point) {
    if (hull.empty()) return 0.0;
    bool inside = hull.size() > 2;
    double nearest = Hypotenuse(point.first - hull[0].first, point.second - hull[0].second);
    for (std::size_t i = 0; i < hull.size(); ++i) {
        const Point next = hull[(i + 1) % hull.size()];
        inside = inside && Turn(hull[i], next, point) >= 0.0;
        nearest = std::min(nearest, DistanceToEdge(hull[i], next, point));
    }
    return inside ? 0.0 : nearest;
}

double Area(std::span<const Point> hull) {
    double twice = 0.0;
    for (std::size_t i = 2; i < hull.size(); ++i) twice += Turn(hull[0], hull[i - 1], hull[i]);
    return twice / 2.0;
}

double Diameter(std::span<const Point> hull) {
    double greatest = 0.0;
    for (std::size_t i = 0; i < hull.size(); ++i) {
        for (std::size_t j = i + 1; j < hull.size(); ++j) {
            greatest = std::max(greatest, Hypotenuse(hull[i].first - hull[j].first,
                                                     hull[i].second - hull[j].second));
        }
    }
    return greatest;
}

}  // namespace kv_tr
