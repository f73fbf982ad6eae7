// Means of control points that are kept up to date while points are added.
#pragma once

#include <span>

#include "kv_tr/model/control_point.h"

namespace kv_tr {

/// The centroids of all points, excluded ones included.
struct PointMeans {
    Point source;
    Point destination;
};

/// Sums over control points in their order. Going on where the points before ended yields the same
/// bits as starting anew, so that points added one by one cost no more than points added at once.
class PointSums {
public:
    void Add(std::span<const ControlPoint> points);
    PointMeans Means() const;
    void Swap();  ///< what it would be had source and destination been exchanged

private:
    Point source_;
    Point destination_;
    double count_ = 0;
};

}  // namespace kv_tr
