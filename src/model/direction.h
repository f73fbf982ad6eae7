// The direction of a difference of coordinates.
#pragma once

namespace kv_tr {

/// The direction of the vector (dFirst, dSecond) in radians from the first axis towards the
/// second, in [0, 2π); 0 for a vector without length. The arctangent is taken of the smaller
/// component over the larger one and folded by quadrant.
double Direction(double dFirst, double dSecond);

}  // namespace kv_tr
