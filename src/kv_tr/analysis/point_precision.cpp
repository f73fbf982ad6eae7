// How well a fitted transformation determines the image of a point.
#include "kv_tr/analysis/point_precision.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "kv_tr/analysis/distributions.h"
#include "kv_tr/model/elementary.h"
#include "kv_tr/model/hull.h"

namespace kv_tr {
namespace {

double MedianWeight(std::span<const Point> weights) {
    std::vector<double> sorted;
    for (const Point& weight : weights) sorted.push_back(0.5 * (weight.first + weight.second));
    if (sorted.empty()) return 1.0;
    const auto middle = sorted.begin() + std::ssize(sorted) / 2;
    std::ranges::nth_element(sorted, middle);
    return *middle;
}

}  // namespace

PointPrecision::PointPrecision(AdjustedModel model)
    : model_(std::move(model)),
      medianWeight_(MedianWeight(model_.Weights())),
      hull_(ConvexHull(model_.Sources())) {
    if (model_.Redundancy() > 0) {
        sigma0_ = std::sqrt(model_.SquareSum() / model_.Redundancy());
    }
    for (const double factor : Factors(HullSamples(hull_))) {
        hullFactor_ = std::max(hullFactor_, factor);
    }
}

double PointPrecision::Covariance::SigmaFirst() const { return std::sqrt(first); }
double PointPrecision::Covariance::SigmaSecond() const { return std::sqrt(second); }

double PointPrecision::Covariance::Greatest() const {
    return std::sqrt(0.5 * (first + second + Hypotenuse(first - second, 2.0 * mixed)));
}

double PointPrecision::Covariance::Least() const {
    const double greatest = Greatest();
    if (greatest == 0.0) return 0.0;
    return std::sqrt(std::max(0.0, first * second - mixed * mixed)) / greatest;
}

double PointPrecision::Covariance::Direction() const {
    const double angle = 0.5 * std::atan2(2.0 * mixed, first - second);
    return angle < 0.0 ? angle + std::numbers::pi : angle;
}

std::vector<PointPrecision::Covariance> PointPrecision::At(std::span<const Point> sources) const {
    const double variance = sigma0_ * sigma0_;
    std::vector<Covariance> covariances;
    covariances.reserve(sources.size());
    for (const auto& q : model_.CofactorsAt(sources)) {
        covariances.push_back({variance * q.first, variance * q.mixed, variance * q.second});
    }
    return covariances;
}

std::vector<double> PointPrecision::Factors(std::span<const Point> sources) const {
    std::vector<double> factors;
    factors.reserve(sources.size());
    for (const auto& q : model_.CofactorsAt(sources)) {
        factors.push_back(std::sqrt(q.Greatest() * medianWeight_));
    }
    return factors;
}

PointPrecision::Extrapolation PointPrecision::Outside(std::span<const Point> sources) const {
    std::vector<Point> outside;
    Extrapolation result;
    for (const Point& source : sources) {
        const double distance = DistanceOutside(hull_, source);
        if (!(distance > 0.0)) continue;
        result.farthest = std::max(result.farthest, distance);
        outside.push_back(source);
    }
    result.count = outside.size();
    if (outside.empty()) return result;
    result.isFar = result.farthest > 0.1 * Diameter(hull_);
    for (const double factor : Factors(outside)) {
        result.isFar = result.isFar || factor > 3.0;
        const double sigma = sigma0_ * factor / std::sqrt(medianWeight_);
        result.sigma = std::fmax(result.sigma, sigma);
    }
    return result;
}

void PointPrecision::Extrapolation::Add(const Extrapolation& other) {
    count += other.count;
    farthest = std::max(farthest, other.farthest);
    sigma = std::fmax(sigma, other.sigma);  // either may be no number
    isFar = isFar || other.isFar;
}

double ConfidenceFactor(double probability, int redundancy) {
    return std::sqrt(2.0 * FisherQuantile(1.0 - probability, 2, redundancy));
}

}  // namespace kv_tr
