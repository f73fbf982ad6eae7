// A transformation with all that is known about it, for the formats of other programs.
#include "kv_tr/interchange/transformation_record.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/fit/frame.h"
#include "kv_tr/fit/statistics.h"
#include "kv_tr/model/hull.h"

namespace kv_tr {

TransformationRecord FittedRecord(std::span<const ControlPoint> points,
                                  const Transformation& transformation) {
    TransformationRecord record{.transformation = transformation};
    const auto residuals = ResidualsOf(points, transformation);
    std::vector<Point> sources;
    double squares = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].used) continue;
        sources.push_back(points[i].source);
        squares +=
            residuals[i].first * residuals[i].first + residuals[i].second * residuals[i].second;
    }
    record.points.assign(points.begin(), points.end());
    if (sources.empty()) return record;

    FitFigures fit{.points = points.size(),
                   .used = sources.size(),
                   .unknowns = UnknownsOf(transformation.type)};
    fit.redundancy = 2 * static_cast<int>(fit.used) - fit.unknowns;
    if (fit.redundancy > 0) fit.sigma0 = std::sqrt(squares / fit.redundancy);
    const double rms = StatisticsOf(points, residuals).rms;
    if (std::isfinite(rms)) fit.rms = rms;
    record.fit = fit;
    record.hull = ConvexHull(sources);
    return record;
}

}  // namespace kv_tr
