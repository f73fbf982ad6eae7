// What a transformation makes of places, directions and curves of a drawing.
#include "kv_tr/interchange/dxf_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "kv_tr/model/elementary.h"

namespace kv_tr::dxf {
namespace {

using std::numbers::pi;
constexpr double kSimilar = 1e-12;  // a smaller difference of scales is none
constexpr int kMostHalvings = 14;

double Dot(Point a, Point b) { return a.first * b.first + a.second * b.second; }

bool IsSimilarity(const Derivative& d) {
    const Point x{d.firstByFirst, d.secondByFirst};
    const Point y{d.firstBySecond, d.secondBySecond};
    const double size = Dot(x, x);
    return std::abs(size - Dot(y, y)) <= kSimilar * size && std::abs(Dot(x, y)) <= kSimilar * size;
}

double Normalized(double degrees) {
    const double turned = std::fmod(degrees, 360);
    return turned < 0 ? turned + 360 : turned;
}

double DistanceFromChord(Point place, Point a, Point b) {
    const Point chord = b - a;
    const double size = Dot(chord, chord);
    const double along = size == 0 ? 0 : std::clamp(Dot(place - a, chord) / size, 0.0, 1.0);
    return Length(place - a - along * chord);
}

/// Adds the places after `a` up to `b`.
void Halve(const std::function<Point(double)>& image, const Step& a, const Step& b,
           double tolerance, int halvings, std::vector<Step>& steps) {
    const double middle = a.t + (b.t - a.t) / 2;
    const Step centre{middle, image(middle)};
    const auto departs = [&](Point place) {
        return DistanceFromChord(place, a.image, b.image) > tolerance;
    };
    const bool tooFar = departs(centre.image) || departs(image(a.t + (b.t - a.t) / 4)) ||
                        departs(image(a.t + (b.t - a.t) * 3 / 4));
    if (tooFar && halvings < kMostHalvings) {
        Halve(image, a, centre, tolerance, halvings + 1, steps);
        Halve(image, centre, b, tolerance, halvings + 1, steps);
    } else {
        steps.push_back(b);
    }
}

bool IsLinearType(Type type) {
    return !IsPolynomial(type) || (type != Type::kBilinear && PolynomialOrder(type) == 1);
}

[[noreturn]] void NoImage(NoSource reason) {
    throw Trouble{{.kind = DrawingProblem::Kind::kNoImage, .reason = reason}};
}

const Transformation& Forward(const PointMap& map) {
    const auto* inverse = std::get_if<ExactInverse>(&map);
    return inverse != nullptr ? inverse->Forward() : std::get<Transformation>(map);
}

}  // namespace

Point operator+(Point a, Point b) { return {a.first + b.first, a.second + b.second}; }
Point operator-(Point a, Point b) { return {a.first - b.first, a.second - b.second}; }
Point operator*(double factor, Point a) { return {factor * a.first, factor * a.second}; }
double Length(Point a) { return Hypotenuse(a.first, a.second); }
Point Left(Point a) { return {-a.second, a.first}; }

Point DirectionOf(double degrees) {
    const double turned = Normalized(degrees);
    for (const auto& [exact, direction] : {std::pair{0.0, Point{1, 0}},
                                           {90.0, Point{0, 1}},
                                           {180.0, Point{-1, 0}},
                                           {270.0, Point{0, -1}}}) {
        if (turned == exact) return direction;
    }
    return {std::cos(turned * pi / 180), std::sin(turned * pi / 180)};
}

double DegreesOf(Point direction) {
    return Normalized(std::atan2(direction.second, direction.first) * 180 / pi);
}

Point Image(const Derivative& d, Point v) {
    return {d.firstByFirst * v.first + d.firstBySecond * v.second,
            d.secondByFirst * v.first + d.secondBySecond * v.second};
}

double MeanScale(const Derivative& derivative) {
    return std::sqrt(std::abs(derivative.Determinant()));
}

double TurnedAngle(const Derivative& derivative, double degrees) {
    if (!IsSimilarity(derivative)) return DegreesOf(Image(derivative, DirectionOf(degrees)));
    const double turn = DegreesOf(Image(derivative, {1, 0}));
    if (derivative.Determinant() < 0) return Normalized(turn - degrees);
    return turn == 0 ? degrees : Normalized(turn + degrees);
}

Point PlaneMap::Axes::OfSystem(Point place) const {
    return {Dot(place, {toFirst.first, toSecond.first}),
            Dot(place, {toFirst.second, toSecond.second})};
}

Point PlaneMap::Axes::OfDrawing(Point place) const {
    return {Dot(place, toFirst), Dot(place, toSecond)};
}

PlaneMap::PlaneMap(const PointMap& map, AxisMapping from, AxisMapping to)
    : map_(map),
      from_{OnMap(from, {1, 0}), OnMap(from, {0, 1})},
      to_{OnMap(to, {1, 0}), OnMap(to, {0, 1})},
      linear_(IsLinearType(Forward(map).type)) {
    similar_ = linear_ && IsSimilarity(SlopeAt({}));
}

Point PlaneMap::At(Point place) const {
    const SourcePoint image = kv_tr::ImageOf(map_, from_.OfDrawing(place));
    if (!image.Found()) NoImage(image.trouble);
    if (!std::isfinite(image.point.first) || !std::isfinite(image.point.second)) {
        NoImage(NoSource::kNotReached);
    }
    return to_.OfSystem(image.point);
}

Derivative PlaneMap::SlopeAt(Point place) const {
    const Point inSystem = from_.OfDrawing(place);
    Derivative d;
    if (const auto* inverse = std::get_if<ExactInverse>(&map_)) {
        // Linear ones need no source, which may have no room in the numbers.
        const SourcePoint source = linear_ && !IsPolynomial(Forward(map_).type)
                                       ? SourcePoint{{}}
                                       : inverse->Apply(inSystem);
        if (!source.Found()) NoImage(source.trouble);
        const Derivative f = DerivativeAt(Forward(map_), source.point);
        const double size = f.Determinant();
        d = {f.secondBySecond / size, -f.firstBySecond / size, -f.secondByFirst / size,
             f.firstByFirst / size};
    } else {
        d = DerivativeAt(Forward(map_), inSystem);
    }
    const auto image = [&](Point v) { return to_.OfSystem(Image(d, from_.OfDrawing(v))); };
    const Point x = image({1, 0});
    const Point y = image({0, 1});
    return {x.first, y.first, x.second, y.second};
}

PlaneMap PlaneMap::FromBelow() const {
    PlaneMap below = *this;
    for (Axes* axes : {&below.from_, &below.to_}) {
        axes->toFirst.first = -axes->toFirst.first;
        axes->toSecond.first = -axes->toSecond.first;
    }
    return below;
}

Point Ellipse::At(double t) const {
    return centre + std::cos(t) * major + ratio * std::sin(t) * Left(major);
}

Ellipse ImageOf(const Ellipse& ellipse, const PlaneMap& map) {
    const Derivative d = map.SlopeAt(ellipse.centre);
    const bool mirrors = d.Determinant() < 0;
    const double span = ellipse.end - ellipse.start;
    Ellipse image = ellipse;
    image.centre = map.At(ellipse.centre);
    image.major = Image(d, ellipse.major);
    if (mirrors) image.start = -ellipse.end;
    if (!map.IsSimilar()) {
        // The images of the axes are conjugate radii; the axes of the image lie turned by t0.
        const Point p = image.major;
        const Point q = ellipse.ratio * Image(d, Left(ellipse.major));
        double t0 = std::atan2(2 * Dot(p, q), Dot(p, p) - Dot(q, q)) / 2;
        image.major = std::cos(t0) * p + std::sin(t0) * q;
        const Point minor = std::cos(t0) * q - std::sin(t0) * p;
        image.ratio = std::min(1.0, Length(minor) / Length(image.major));
        image.start = mirrors ? t0 - ellipse.end : ellipse.start - t0;
    }
    if (!map.IsSimilar() || mirrors) {
        image.start = std::fmod(image.start, 2 * pi);
        if (image.start < 0) image.start += 2 * pi;
        if (std::abs(span) >= 2 * pi - 1e-12) image.start = 0;
        image.end = image.start + span;
    }
    return image;
}

Point Bulge::At(double t) const {
    if (t == 0) return from;
    if (t == 1) return to;
    const Point chord = to - from;
    const Point centre = from + 0.5 * chord + (1 - bulge * bulge) / (4 * bulge) * Left(chord);
    const double angle = 4 * ArcTangent(bulge) * t;
    const Point radius = from - centre;
    return centre + std::cos(angle) * radius + std::sin(angle) * Left(radius);
}

bool Spline::IsWhole() const {
    const auto order = static_cast<std::size_t>(degree) + 1;
    return degree >= 1 && degree <= 25 && control.size() >= order &&
           knots.size() == control.size() + order && std::ranges::is_sorted(knots) &&
           (weights.empty() || weights.size() == control.size()) && Start() < End();
}

Spline::Place Spline::At(double t) const {
    const auto p = static_cast<std::size_t>(degree);
    const auto after = std::upper_bound(
        knots.begin() + degree, knots.begin() + static_cast<std::ptrdiff_t>(control.size()), t);
    const auto k = static_cast<std::size_t>(after - knots.begin()) - 1;
    struct Weighted {
        double x, y, z, w;
    };
    std::array<Weighted, 26> points{};
    for (std::size_t j = 0; j <= p; ++j) {
        const auto& [point, height] = control[j + k - p];
        const double w = weights.empty() ? 1 : weights[j + k - p];
        points.at(j) = {w * point.first, w * point.second, w * height, w};
    }
    for (std::size_t r = 1; r <= p; ++r) {
        for (std::size_t j = p; j >= r; --j) {
            const double low = knots[j + k - p];
            const double width = knots[j + 1 + k - r] - low;
            const double part = width == 0 ? 0 : (t - low) / width;
            const auto& a = points.at(j - 1);
            auto& b = points.at(j);
            b = {(1 - part) * a.x + part * b.x, (1 - part) * a.y + part * b.y,
                 (1 - part) * a.z + part * b.z, (1 - part) * a.w + part * b.w};
        }
    }
    const auto& [x, y, z, w] = points.at(p);
    return {{x / w, y / w}, z / w};
}

std::vector<Step> Flattened(const std::function<Point(double)>& image, double from, double to,
                            double tolerance) {
    std::vector<Step> steps;
    constexpr int kParts = 8;  // so that no curve hides between three places on it
    Step last{from, image(from)};
    for (int i = 1; i <= kParts; ++i) {
        const double t = i == kParts ? to : from + (to - from) * i / kParts;
        const Step next{t, image(t)};
        Halve(image, last, next, tolerance, 0, steps);
        last = next;
    }
    return steps;
}

}  // namespace kv_tr::dxf
