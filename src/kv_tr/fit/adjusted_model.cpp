// The least-squares solution of a type in its frame.
#include "kv_tr/fit/adjusted_model.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "kv_tr/fit/record_of_frame.h"

namespace kv_tr {
namespace {

std::vector<Point> Collect(std::span<const ControlPoint> points, Point ControlPoint::*place) {
    std::vector<Point> collected;
    for (const ControlPoint& point : points) {
        if (point.used) collected.push_back(point.*place);
    }
    return collected;
}

std::vector<Point> Weigh(std::span<const ControlPoint> points, std::span<const Point> sigmas) {
    std::vector<Point> weights;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].used) continue;
        const Point sigma = sigmas.empty() ? Point{1, 1} : sigmas[i];
        weights.push_back({1.0 / (sigma.first * sigma.first), 1.0 / (sigma.second * sigma.second)});
    }
    return weights;
}

bool AreSame(std::span<const Point> weights) {
    return std::ranges::all_of(weights,
                               [](const Point& weight) { return weight.first == weight.second; });
}

Linearisation At(const std::optional<ClosedFit>& closed) {
    if (!closed) return {};
    Transformation matrix;
    matrix.a[1] = closed->a1;
    matrix.a[2] = closed->a2;
    matrix.b[1] = closed->b1;
    matrix.b[2] = closed->b2;
    return LinearisationAt(matrix);
}

std::vector<Point> Less(std::vector<Point> points, Point subtrahend) {
    for (Point& point : points) {
        point.first -= subtrahend.first;
        point.second -= subtrahend.second;
    }
    return points;
}

}  // namespace

AdjustedModel::AdjustedModel(std::span<const ControlPoint> points, Type type,
                             std::span<const Point> sigmas)
    : sources_(Collect(points, &ControlPoint::source)),
      destinations_(Collect(points, &ControlPoint::destination)),
      weights_(Weigh(points, sigmas)),
      sameWeights_(AreSame(weights_)),
      closed_(SharesUnknowns(ModelOf(type))
                  ? FitClosed(ModelOf(type), sources_, destinations_, WeightsOf(&Point::first))
                  : std::nullopt),
      design_(ModelOf(type), FrameOf(sources_, WeightsOf(&Point::first), ModelOf(type)),
              At(closed_)),
      inFrame_(Into(InFrame(), sources_)),
      destination_(CentroidOf(destinations_, WeightsOf(&Point::first))),
      factor_(design_.Factor(inFrame_, Less(destinations_, destination_), RootsOf(&Point::first))) {
    if (!sameWeights_) {
        if (SharesUnknowns(Model())) {
            throw std::invalid_argument("Two standard deviations need separate coordinates");
        }
        secondFactor_ =
            design_.Factor(inFrame_, Less(destinations_, destination_), RootsOf(&Point::second));
    }
    if (!closed_) Solve();
    // Reduced coordinates keep the digits that residuals need.
    residuals_ = ReducedImages(sources_);
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        residuals_[i].first -= destinations_[i].first - destination_.first;
        residuals_[i].second -= destinations_[i].second - destination_.second;
    }
}

int AdjustedModel::Rank() const {
    if (SharesUnknowns(Model())) return static_cast<int>(factor_.Rank());
    return static_cast<int>(Factor(0).Rank() + Factor(1).Rank());
}

bool AdjustedModel::IsDetermined() const {
    const bool needsWidth = Model() != Type::kHelmert && Model() != Type::kHelmert3;
    return Rank() == Unknowns() && (!SharesUnknowns(Model()) || closed_) && !InFrame().IsPoint() &&
           !(needsWidth && InFrame().IsLine());
}

std::vector<double> AdjustedModel::WeightsOf(double Point::*coordinate) const {
    std::vector<double> weights;
    for (const Point& weight : weights_) weights.push_back(weight.*coordinate);
    return weights;
}

std::vector<double> AdjustedModel::RootsOf(double Point::*coordinate) const {
    std::vector<double> roots = WeightsOf(coordinate);
    for (double& root : roots) root = std::sqrt(root);
    return roots;
}

Transformation AdjustedModel::Explain(std::span<const Point> missing) const {
    const TriangularFactor first = design_.Factor(inFrame_, missing, RootsOf(&Point::first));
    if (sameWeights_) return design_.Change(first);
    const TriangularFactor second = design_.Factor(inFrame_, missing, RootsOf(&Point::second));
    return design_.Change(first.Solve(0), second.Solve(1));
}

void AdjustedModel::Solve() {
    solution_ = design_.Change(factor_.Solve(0), Factor(1).Solve(1));
    // A second solution finds what rounding left over.
    std::vector<Point> missing = Less(destinations_, destination_);
    const std::vector<Point> images = ImagesOf(solution_, inFrame_);
    for (std::size_t i = 0; i < missing.size(); ++i) {
        missing[i].first -= images[i].first;
        missing[i].second -= images[i].second;
    }
    const Transformation change = Explain(missing);
    for (std::size_t k = 0; k < solution_.a.size(); ++k) {
        solution_.a[k] += change.a[k];
        solution_.b[k] += change.b[k];
    }
}

std::vector<Design::PointCofactors> AdjustedModel::CofactorsAt(
    std::span<const Point> sources) const {
    const std::vector<Point> inFrame = Into(InFrame(), sources);
    auto cofactors = design_.CofactorsAt(factor_, inFrame);
    if (sameWeights_) return cofactors;
    const auto second = design_.CofactorsAt(*secondFactor_, inFrame);
    for (std::size_t i = 0; i < cofactors.size(); ++i) cofactors[i].second = second[i].second;
    return cofactors;
}

Point AdjustedModel::SquareSums() const {
    Point sums;
    for (std::size_t i = 0; i < residuals_.size(); ++i) {
        sums.first += weights_[i].first * residuals_[i].first * residuals_[i].first;
        sums.second += weights_[i].second * residuals_[i].second * residuals_[i].second;
    }
    return sums;
}

std::vector<Point> AdjustedModel::ReducedImages(std::span<const Point> sources) const {
    if (!closed_) return ImagesOf(solution_, Into(InFrame(), sources));
    std::vector<Point> images;
    images.reserve(sources.size());
    for (const Point& source : sources) images.push_back(closed_->ReducedImageOf(source));
    return images;
}

std::vector<Point> AdjustedModel::Images(std::span<const Point> sources) const {
    std::vector<Point> images = ReducedImages(sources);
    for (Point& image : images) {
        image.first += destination_.first;
        image.second += destination_.second;
    }
    return images;
}

Transformation AdjustedModel::Record(Type type, Point origin) const {
    Transformation record;
    record.type = type;
    if (closed_) {
        const auto shift = [this](double destination, double byFirst, double bySecond) {
            return (DoubleDouble(destination) +
                    -DoubleDouble::Product(byFirst, closed_->source.first) +
                    -DoubleDouble::Product(bySecond, closed_->source.second))
                .Rounded();
        };
        record.a[1] = closed_->a1;
        record.a[2] = closed_->a2;
        record.b[1] = closed_->b1;
        record.b[2] = closed_->b2;
        record.a[0] = shift(closed_->destination.first, closed_->a1, closed_->a2);
        record.b[0] = shift(closed_->destination.second, closed_->b1, closed_->b2);
        return record;
    }
    const bool reduced = IsPolynomial(type);
    LongSeries series;
    series.Add(solution_, InFrame(), reduced ? origin : Point{});
    series.a[1] += destination_.first;
    series.b[1] += destination_.second;
    // Linear records have the constant term first; the others have their origin there.
    const std::size_t place = reduced ? 1 : 0;
    for (std::size_t k = 0; k < static_cast<std::size_t>(TermCount(solution_.type)); ++k) {
        record.a[k + place] = series.a[k + 1].Rounded();
        record.b[k + place] = series.b[k + 1].Rounded();
    }
    if (reduced) {
        record.a[0] = origin.first;
        record.b[0] = origin.second;
    }
    return record;
}

}  // namespace kv_tr
