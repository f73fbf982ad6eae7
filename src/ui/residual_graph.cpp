// The plan of the control points as marks to be painted, without a toolkit.
#include "ui/residual_graph.h"

#include <algorithm>
#include <cmath>

#include "engine/statistics.h"
#include "support/number_text.h"

namespace kv_tr {
namespace {

constexpr double kMargin = 1.2;

bool IsFinite(PlanePoint point) {
    return std::isfinite(point.first) && std::isfinite(point.second);
}

}  // namespace

PlanePoint GraphScale::ToSurface(PlanePoint destination) const {
    return {(destination.first - originFirst) / metresPerUnit,
            (originSecond - destination.second) / metresPerUnit};
}

PlanePoint GraphScale::ToDestination(PlanePoint surface) const {
    return {surface.first * metresPerUnit + originFirst,
            originSecond - surface.second * metresPerUnit};
}

GraphScale ScaleFor(const clsTrCalc& engine, double width, double height) {
    PlanePoint least;
    PlanePoint greatest;
    engine.GetRect4Dest(least.first, least.second, greatest.first, greatest.second);
    const PlanePoint range{greatest.first - least.first, greatest.second - least.second};
    const PlanePoint middle{(greatest.first + least.first) / 2,
                            (greatest.second + least.second) / 2};
    const double scale = std::max(range.first / width, range.second / height) * kMargin;
    if (!(scale > 0) || !std::isfinite(scale)) {
        return {1, middle.first - width / 2, middle.second + height / 2};
    }
    return {scale, middle.first - range.first / 2 * kMargin,
            middle.second + range.second / 2 * kMargin};
}

std::vector<GraphMark> GraphMarks(std::span<const typeXYs4Tr> pairs, double limit,
                                  const GraphScale& scale, const GraphLabels& labels) {
    const auto coordinate = [](double value) { return FormatFixed(value, 3, 0); };
    std::vector<GraphMark> marks;
    marks.reserve(pairs.size());
    for (const typeXYs4Tr& pair : pairs) {
        const double error = ResidualLength(pair);
        const bool within = error < limit;
        GraphMark mark{.place = scale.ToSurface({pair.dXdest, pair.dYdest}),
                       .colour = pair.bNotUsed ? kBlack
                                 : within      ? kBlue
                                               : kRed,
                       .bold = !pair.bNotUsed && !within};
        if (!IsFinite(mark.place)) continue;
        if (labels.identifier) mark.labels[GraphMark::kUpperLeft] = " " + pair.sId;
        if (labels.total) mark.labels[GraphMark::kLowerLeft] = " " + coordinate(error);
        if (labels.first) mark.labels[GraphMark::kUpperRight] = coordinate(pair.dXerr) + " ";
        if (labels.second) mark.labels[GraphMark::kLowerRight] = coordinate(pair.dYerr);
        marks.push_back(std::move(mark));
    }
    return marks;
}

std::optional<std::int32_t> NearestPair(std::span<const typeXYs4Tr> pairs, PlanePoint destination) {
    double least = 9999999999.99;
    std::optional<std::int32_t> nearest;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const double distance =
            std::hypot(pairs[i].dXdest - destination.first, pairs[i].dYdest - destination.second);
        if (distance < least) {
            least = distance;
            nearest = static_cast<std::int32_t>(i);
        }
    }
    return nearest;
}

}  // namespace kv_tr
