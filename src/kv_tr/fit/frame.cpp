// Coordinates in which a fit is well conditioned.
#include "kv_tr/fit/frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kv_tr {

Type ModelOf(Type type) {
    if (type > Type::kBilinear) return Type::kPolynomial5;
    return type < Type::kAffine5 ? Type::kAffine : type;
}

int UnknownsOf(Type model) {
    switch (model) {
        case Type::kHelmert3: return 3;
        case Type::kHelmert: return 4;
        case Type::kAffine5: return 5;
        default: return 2 * TermCount(model);
    }
}

Point CentroidOf(std::span<const Point> points, std::span<const double> weights) {
    Point centroid = points.empty() ? Point{} : points.front();
    for (int pass = 0; pass < 2; ++pass) {
        Point sum;
        double weightSum = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double weight = weights.empty() ? 1.0 : weights[i];
            sum.first += weight * (points[i].first - centroid.first);
            sum.second += weight * (points[i].second - centroid.second);
            weightSum += weight;
        }
        if (!(weightSum > 0.0)) break;
        centroid.first += sum.first / weightSum;
        centroid.second += sum.second / weightSum;
    }
    return centroid;
}

Frame FrameOf(std::span<const Point> sources, std::span<const double> weights, Type model,
              double lastDigit) {
    Frame frame;
    frame.origin = CentroidOf(sources, weights);
    double squaresFirst = 0.0;
    double squaresSecond = 0.0;
    double products = 0.0;
    double greatest = 0.0;
    for (const Point& point : sources) {
        const double u = point.first - frame.origin.first;
        const double v = point.second - frame.origin.second;
        squaresFirst += u * u;
        squaresSecond += v * v;
        products += u * v;
        greatest = std::max({greatest, std::abs(point.first), std::abs(point.second)});
    }
    const double turn = 0.5 * std::atan2(2.0 * products, squaresFirst - squaresSecond);
    const auto halfWidths = [&sources, &frame] {
        Point widths;
        for (const Point& point : sources) {
            const Point along = frame.Into(point);
            widths.first = std::max(widths.first, std::abs(along.first));
            widths.second = std::max(widths.second, std::abs(along.second));
        }
        return widths;
    };
    frame.cosine = std::cos(turn);
    frame.sine = std::sin(turn);
    Point widths = halfWidths();
    frame.halfLength = std::max(widths.first, widths.second);
    frame.halfBreadth = std::min(widths.first, widths.second);
    frame.resolution = std::max(8.0 * std::numeric_limits<double>::epsilon() * greatest,
                                std::min(lastDigit, 1e-4 * 2.0 * frame.halfLength));

    const bool together = SharesUnknowns(model);
    if (together || model == Type::kBilinear) {
        frame.cosine = 1.0;
        frame.sine = 0.0;
        widths = halfWidths();
    }
    const double common = frame.IsPoint() ? 1.0 : std::max(widths.first, widths.second);
    // What is not wider than rounding is not stretched to the width of the frame.
    const auto width = [&](double own) {
        return together || own <= frame.resolution ? common : own;
    };
    frame.perMetre = {1.0 / width(widths.first), 1.0 / width(widths.second)};
    return frame;
}

}  // namespace kv_tr
