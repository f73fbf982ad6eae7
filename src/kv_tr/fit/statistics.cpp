// Residuals and accuracy figures of a fit.
#include "kv_tr/fit/statistics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kv_tr {

double Residual::Length() const { return std::sqrt(first * first + second * second); }

std::vector<Residual> ResidualsOf(std::span<const ControlPoint> points,
                                  const Transformation& transformation) {
    std::vector<Residual> residuals;
    residuals.reserve(points.size());
    std::array<double, 512> coordinates;  // a block of points at a time
    while (!points.empty()) {
        const auto block = points.first(std::min(points.size(), coordinates.size() / 2));
        points = points.subspan(block.size());
        double* next = coordinates.data();
        for (const ControlPoint& point : block) {
            *next++ = point.source.first;
            *next++ = point.source.second;
        }
        const auto used = std::span(coordinates).first(2 * block.size());
        transformation.ApplyToPairs(used, used);
        next = coordinates.data();
        for (const ControlPoint& point : block) {
            const double first = *next++ - point.destination.first;
            const double second = *next++ - point.destination.second;
            residuals.push_back({first, second});
        }
    }
    return residuals;
}

Statistics StatisticsOf(std::span<const ControlPoint> points, std::span<const Residual> residuals) {
    double count = 0.0;
    Residual sum;
    Residual squares;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].used) continue;
        const auto [first, second] = residuals[i];
        count += 1.0;
        squares.first += first * first;
        squares.second += second * second;
        sum.first += first;
        sum.second += second;
    }
    return {.rms = std::sqrt((squares.first + squares.second) / (count - 1.0)),
            .rmsFirst = std::sqrt(squares.first / (count - 1.0)),
            .rmsSecond = std::sqrt(squares.second / (count - 1.0)),
            .meanFirst = sum.first / count,
            .meanSecond = sum.second / count};
}

}  // namespace kv_tr
