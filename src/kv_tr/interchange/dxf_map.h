// What a transformation makes of places, directions and curves of a drawing.
#pragma once

#include <functional>
#include <vector>

#include "kv_tr/interchange/dxf_trouble.h"

namespace kv_tr::dxf {

/// The coordinates (x, y) of a drawing are first and second of its points.
Point operator+(Point a, Point b);
Point operator-(Point a, Point b);
Point operator*(double factor, Point a);
double Length(Point a);
/// Turned by a right angle, against the clock.
Point Left(Point a);
/// A direction of length 1, from its angle in degrees.
Point DirectionOf(double degrees);
double DegreesOf(Point direction);

/// The image of a vector.
Point Image(const Derivative& derivative, Point vector);
/// The square root of the change of areas.
double MeanScale(const Derivative& derivative);
/// The image of a direction given in degrees, in [0, 360); exact to the last digits for
/// similarities, and the same number where they do not turn.
double TurnedAngle(const Derivative& derivative, double degrees);

/// A transformation in the plane of a drawing.
class PlaneMap {
public:
    PlaneMap(const PointMap& map, AxisMapping from, AxisMapping to);

    /// The image of a place; a Trouble where there is none.
    Point At(Point place) const;
    Derivative SlopeAt(Point place) const;
    bool IsLinear() const { return linear_; }
    /// Whether circles stay circles.
    bool IsSimilar() const { return similar_; }
    /// The same transformation seen from below, where x points to the other side.
    PlaneMap FromBelow() const;

private:
    struct Axes {
        Point toFirst, toSecond;  // the images of the axes of the system in the drawing

        Point OfSystem(Point place) const;
        Point OfDrawing(Point place) const;
    };

    PointMap map_;
    Axes from_, to_;
    bool linear_ = false;
    bool similar_ = false;
};

/// Part of an ellipse: centre + cos(t) major + sin(t) ratio Left(major), t from start to end.
struct Ellipse {
    Point centre{};
    Point major{};
    double ratio = 1;
    double start = 0;
    double end = 0;

    Point At(double t) const;
};

/// The image of an ellipse under a linear transformation. The directions of start and end change
/// places where it mirrors.
Ellipse ImageOf(const Ellipse& ellipse, const PlaneMap& map);

/// A circular arc of a polyline, whose bulge is the tangent of a quarter of its angle.
struct Bulge {
    Point from{};
    Point to{};
    double bulge = 0;

    Point At(double t) const;  // t from 0 to 1
};

/// A curve of control points with a number a weight.
struct Spline {
    struct Place {
        Point point{};
        double height = 0;
    };
    int degree = 3;
    std::vector<double> knots{};
    std::vector<Place> control{};
    std::vector<double> weights{};  // as many as control points, or none

    bool IsWhole() const;
    Place At(double t) const;
    double Start() const { return knots[static_cast<std::size_t>(degree)]; }
    double End() const { return knots[control.size()]; }
};

struct Step {
    double t = 0;
    Point image{};
};

/// The places from `from` (left out) to `to` on the image of a curve, so near to each other that
/// the lines between them depart from the image by not more than the tolerance.
std::vector<Step> Flattened(const std::function<Point(double)>& image, double from, double to,
                            double tolerance);

}  // namespace kv_tr::dxf
