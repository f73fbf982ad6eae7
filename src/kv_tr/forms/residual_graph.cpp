// The plan of the control points as marks to be painted, without a toolkit.
#include "kv_tr/forms/residual_graph.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/model/elementary.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

constexpr double kEnlargement = 1.2;

bool IsFinite(Point point) { return std::isfinite(point.first) && std::isfinite(point.second); }

}  // namespace

Point GraphScale::ToSurface(Point destination) const {
    return {(destination.first - originFirst) / metresPerUnit,
            (originSecond - destination.second) / metresPerUnit};
}

Point GraphScale::ToDestination(Point surface) const {
    return {surface.first * metresPerUnit + originFirst,
            originSecond - surface.second * metresPerUnit};
}

GraphScale ScaleFor(const Adjustment& adjustment, double width, double height) {
    const auto [least, greatest] = adjustment.DestinationExtent().value_or(Extent{});
    const Point range{greatest.first - least.first, greatest.second - least.second};
    const Point middle{(greatest.first + least.first) / 2, (greatest.second + least.second) / 2};
    const double scale = std::max(range.first / width, range.second / height) * kEnlargement;
    if (!(scale > 0) || !std::isfinite(scale)) {
        return {1, middle.first - width / 2, middle.second + height / 2};
    }
    return {scale, middle.first - range.first / 2 * kEnlargement,
            middle.second + range.second / 2 * kEnlargement};
}

std::vector<GraphMark> GraphMarks(const Adjustment& adjustment, double limit,
                                  const GraphScale& scale, const GraphLabels& labels) {
    const auto coordinate = [](double value) { return FormatFixed(value, 3, 0); };
    std::vector<GraphMark> marks;
    const auto points = adjustment.Points();
    marks.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto& [id, source, destination, used] = points[i];
        const Residual& residual = adjustment.Residuals()[i];
        const double error = residual.Length();
        const bool within = error < limit;
        GraphMark mark{.place = scale.ToSurface(destination),
                       .colour = !used    ? kBlack
                                 : within ? kBlue
                                          : kRed,
                       .bold = used && !within};
        if (!IsFinite(mark.place)) continue;
        if (labels.identifier) mark.labels[GraphMark::kUpperLeft] = " " + id;
        if (labels.total) mark.labels[GraphMark::kLowerLeft] = " " + coordinate(error);
        if (labels.first) mark.labels[GraphMark::kUpperRight] = coordinate(residual.first) + " ";
        if (labels.second) mark.labels[GraphMark::kLowerRight] = coordinate(residual.second);
        marks.push_back(std::move(mark));
    }
    return marks;
}

std::optional<std::int32_t> NearestPair(std::span<const ControlPoint> points, Point destination) {
    double least = 9999999999.99;
    std::optional<std::int32_t> nearest;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point place = points[i].destination;
        const double distance =
            Hypotenuse(place.first - destination.first, place.second - destination.second);
        if (distance < least) {
            least = distance;
            nearest = static_cast<std::int32_t>(i);
        }
    }
    return nearest;
}

}  // namespace kv_tr
