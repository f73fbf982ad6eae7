// The points of geometries in one array, and arcs as lines.
#pragma once

#include <ogr_geometry.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "kv_tr/model/point_map.h"

namespace kv_tr::gdal {

/// Appends x and y of all points of a geometry, in their order; empty parts have none.
void AppendPoints(OGRGeometry& geometry, std::vector<double>& pairs);

/// Gives the points of a geometry new x and y, in the order of AppendPoints, and returns what is
/// behind the last of them. Heights and measures stay.
const double* ReplacePoints(OGRGeometry& geometry, const double* pairs);

/// Whether a transformation turns every circle into a circle: it has one scale, mirrored or not.
bool KeepsCircles(const PointMap& map);

/// A geometry with chords in place of its arcs, which end on the arcs and are at most the tolerance
/// beside them; the three points that define an arc stay, heights and measures between them are
/// interpolated. Counts the arcs.
std::unique_ptr<OGRGeometry> WithoutArcs(const OGRGeometry& geometry, double tolerance,
                                         std::size_t& arcs);

/// A geometry as WKT whose numbers are the shortest that read back to the same doubles.
std::string ExactWkt(const OGRGeometry& geometry);

}  // namespace kv_tr::gdal
