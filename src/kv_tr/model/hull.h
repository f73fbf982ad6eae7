// The area that points span.
#pragma once

#include <span>
#include <vector>

#include "kv_tr/model/point.h"

namespace kv_tr {

/// The corners of the convex hull, counter-clockwise when the first axis points right and the
/// second up; fewer than three for points on one line. Points on an edge are no corners.
/// (Andrew's monotone chain, O(n log n), after points inside a rectangle of corners are left out.)
std::vector<Point> ConvexHull(std::span<const Point> points);

/// Places all over a hull, at most 200: its centroid, and places at a quarter, half, three quarters
/// and the whole way from there to each corner and to the middle of each edge; of hulls with many
/// corners every second, third, ... such way.
std::vector<Point> HullSamples(std::span<const Point> hull);

/// Where a point lies outside a hull: its distance from the hull; 0 inside and on the edge.
double DistanceOutside(std::span<const Point> hull, Point point);

/// The area of a hull; 0 for fewer than three corners.
double Area(std::span<const Point> hull);

/// The greatest distance between two corners.
double Diameter(std::span<const Point> hull);

}  // namespace kv_tr
