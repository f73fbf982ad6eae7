// Polylines with bulges and widths, and the polylines that stand for curves.
#pragma once

#include "kv_tr/interchange/dxf_rewriter.h"

namespace kv_tr::dxf {

/// A vertex with what the segment after it is like.
struct Vertex {
    Point at{};
    double bulge = 0;
    double startWidth = 0;
    double endWidth = 0;
};

struct Outline {
    std::vector<Vertex> vertices{};
    bool closed = false;

    bool HasBulges() const;
};

/// The image of an outline, without bulges.
Outline Flattened(const Outline& outline, const PlaneMap& map, double tolerance);

/// The image of a curve as an outline; where it is closed, start and end are one place.
Outline OutlineOf(const std::function<Point(double)>& image, double from, double to, bool closed,
                  double tolerance);

/// Appends a polyline with the common, extrusion and extended groups of an entity in whose place it
/// stands, at a height in its plane, and counts the curve.
void AppendPolyline(std::string& out, const Record& of, const Outline& outline, double height,
                    Work& work);

}  // namespace kv_tr::dxf
