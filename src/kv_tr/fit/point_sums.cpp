// Means of control points that are kept up to date while points are added.
#include "kv_tr/fit/point_sums.h"

#include <utility>

namespace kv_tr {

void PointSums::Add(std::span<const ControlPoint> points) {
    for (const ControlPoint& point : points) {
        source_.first += point.source.first;
        source_.second += point.source.second;
        destination_.first += point.destination.first;
        destination_.second += point.destination.second;
    }
    count_ += static_cast<double>(points.size());
}

PointMeans PointSums::Means() const {
    return {{source_.first / count_, source_.second / count_},
            {destination_.first / count_, destination_.second / count_}};
}

void PointSums::Swap() { std::swap(source_, destination_); }

}  // namespace kv_tr
