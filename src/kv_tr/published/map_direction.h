// A direction through a transformation.
#pragma once

#include "kv_tr/model/direction.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// The image of a direction (radians, from the first axis towards the second) at a point, in
/// [0, 2π): that of the vector between the images of the point and of a second one `length` metres
/// away in the direction.
///
/// Deliberately, the image coordinates are rounded to single precision before they are
/// subtracted: at several hundred kilometres by up to 3 cm, which turns a direction taken over 100
/// m by some 10⁻⁴. Images that coincide then give 0.
double MapDirection(const Transformation& transformation, double angle, Point point, double length,
                    const AngleConstants& constants);

}  // namespace kv_tr
