// The exact inverse of a transformation, point by point.
#include "kv_tr/model/inverse.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "kv_tr/model/newton.h"

namespace kv_tr {
namespace {

using groups::kLanes;
using newton::Constants;
using newton::Local;

/// Lets the series of one coordinate follow the indices of its terms, and so the derivatives.
void SetSeries(Constants<double>& c, std::size_t i, const Transformation::Series& series,
               Type type) {
    std::copy(series.begin() + 2, series.end(), c.series[i]);
    c.byFirst[i][0] = series[2];
    c.bySecond[i][0] = series[3];
    if (type == Type::kBilinear) {
        c.byFirst[i][2] = c.bySecond[i][1] = series[4];
        return;
    }
    std::size_t index = 4;    // of the first coefficient of a degree
    std::size_t earlier = 1;  // where the terms of the degree before begin
    for (std::size_t degree = 2; degree <= 5; ++degree) {
        for (std::size_t k = 0; k < degree; ++k) {
            c.byFirst[i][earlier + k] = static_cast<double>(degree - k) * series[index + k];
            c.bySecond[i][earlier + k] = static_cast<double>(k + 1) * series[index + k + 1];
        }
        index += degree + 1;
        earlier += degree;
    }
}

double Squared(double value) { return value * value; }

Constants<double> ConstantsOf(const Transformation& t, const std::optional<Domain>& domain) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    Constants<double> c{};
    c.origin[0] = t.a[0];
    c.origin[1] = t.b[0];
    c.shift[0] = t.a[1];
    c.shift[1] = t.b[1];
    SetSeries(c, 0, t.a, t.type);
    SetSeries(c, 1, t.b, t.type);
    const double linear = t.a[2] * t.b[3] - t.a[3] * t.b[2];
    c.start[0] = t.b[3] / linear;
    c.start[1] = -t.a[3] / linear;
    c.start[2] = -t.b[2] / linear;
    c.start[3] = t.a[2] / linear;
    const Point reference = domain ? domain->centre : Point{t.a[0], t.b[0]};
    c.perReference = 1.0 / DerivativeAt(t, reference).Determinant();
    const double origin = std::max(std::abs(t.a[0]), std::abs(t.b[0]));
    c.leastStep = Squared(std::max(newton::kLeastStep, 4.0 * newton::kEpsilon * origin));
    const Point least = domain ? domain->least : Point{-kInfinite, -kInfinite};
    const Point greatest = domain ? domain->greatest : Point{kInfinite, kInfinite};
    c.least[0] = least.first;
    c.least[1] = least.second;
    c.greatest[0] = greatest.first;
    c.greatest[1] = greatest.second;
    return c;
}

struct LookAt {
    const Constants<double>& c;
    const double* target;
    Point place;
    Local<double>& local;

    template <Type kind>
    KV_TR_INLINE void At() const {
        newton::Look<kind, true, double>(c, target, place.first, place.second, local);
    }
};

/// The search for one source where the undamped steps have not found one. Places are in reduced
/// coordinates.
class CarefulSearch {
public:
    CarefulSearch(const Transformation& t, const std::optional<Domain>& domain,
                  const Constants<double>& constants, Point destination)
        : t_(t), domain_(domain), c_(constants), destination_(destination) {}

    /// The first try is Newton's method from the inverse of the linear terms. Where its result will
    /// not do, the second one comes from the reference and crosses no fold.
    SourcePoint Run() const {
        if (!std::isfinite(destination_.first) || !std::isfinite(destination_.second)) {
            return {.trouble = NoSource::kNotReached};
        }
        const Point centre = domain_ ? Point{domain_->centre.first - c_.origin[0],
                                             domain_->centre.second - c_.origin[1]}
                                     : Point{};
        const Point linear{c_.start[0] * target_[0] + c_.start[1] * target_[1],
                           c_.start[2] * target_[0] + c_.start[3] * target_[1]};
        const bool hasLinear = std::isfinite(linear.first) && std::isfinite(linear.second);
        const SourcePoint first = Judged(Descent(hasLinear ? linear : centre, false));
        if (first.Found()) return first;
        const SourcePoint second = Judged(Descent(centre, true));
        return second.Found() ? second : first;
    }

private:
    struct Place {
        Point at;
        Local<double> local;
        bool stuck = false;  // no part of a step lowers the residual
    };

    Place Look(Point at) const {
        Place place{.at = at, .local = {}};
        groups::ForKind(t_.type, LookAt{c_, target_, at, place.local});
        return place;
    }

    static double Left(const Place& place) {
        return Squared(place.local.residual[0]) + Squared(place.local.residual[1]);
    }

    static double Determinant(const Place& place) {
        const auto& [residual, byFirst, bySecond] = place.local;
        return byFirst[0] * bySecond[1] - bySecond[0] * byFirst[1];
    }

    bool IsOnSide(const Place& place) const {
        return Determinant(place) * c_.perReference >= newton::kLeastDeterminant;
    }

    /// Newton's method with steps that are halved until they lower the residual and, where that is
    /// asked for, stay on the side of the reference.
    Place Descent(Point start, bool staysOnSide) const {
        constexpr int kMostSteps = 20;
        constexpr int kMostHalvings = 10;
        Place place = Look(start);
        for (int step = 0; step < kMostSteps; ++step) {
            const auto& [residual, byFirst, bySecond] = place.local;
            const double determinant = Determinant(place);
            Point by{(bySecond[1] * residual[0] - bySecond[0] * residual[1]) / determinant,
                     (byFirst[0] * residual[1] - byFirst[1] * residual[0]) / determinant};
            const double least =
                c_.leastStep + Squared(4.0 * newton::kEpsilon) *
                                   (Squared(place.at.first) + Squared(place.at.second));
            const bool isSmall = Squared(by.first) + Squared(by.second) <= least;
            bool lower = false;
            for (int halving = 0; halving <= kMostHalvings && !lower; ++halving) {
                const Place trial = Look({place.at.first + by.first, place.at.second + by.second});
                lower = Left(trial) < Left(place) && (!staysOnSide || IsOnSide(trial));
                if (lower) place = trial;
                by = {by.first / 2.0, by.second / 2.0};
            }
            place.stuck = !lower && !isSmall;
            if (isSmall || !lower) break;
        }
        return place;
    }

    /// How near the image has to come: nearer than rounding allows is too much to ask.
    double Accuracy(Point at) const {
        const Terms terms = ReducedTerms(t_.type, at.first, at.second);
        double first = 0.0;
        double second = 0.0;
        for (std::size_t k = 0; k < terms.count; ++k) {
            first += std::abs(t_.a[k + 1] * terms.value[k]);
            second += std::abs(t_.b[k + 1] * terms.value[k]);
        }
        const auto length = [](double one, double other) {
            return std::sqrt(Squared(one) + Squared(other));
        };
        return std::max({newton::kLeastResidual,
                         8.0 * newton::kEpsilon * length(destination_.first, destination_.second),
                         newton::kEpsilon * length(first, second)});
    }

    SourcePoint Judged(const Place& place) const {
        const double accuracy = Accuracy(place.at);
        const bool reached = std::isfinite(accuracy) && std::sqrt(Left(place)) <= accuracy;
        if (!reached) {
            return {.trouble = place.stuck ? NoSource::kNotReached : NoSource::kNotConverged};
        }
        if (!IsOnSide(place)) return {.trouble = NoSource::kBeyondFold};
        const Point source{c_.origin[0] + place.at.first, c_.origin[1] + place.at.second};
        if (!std::isfinite(source.first) || !std::isfinite(source.second)) {
            return {.trouble = NoSource::kNotReached};  // its origin and the place overflow
        }
        if (domain_ && !domain_->Contains(source)) return {.trouble = NoSource::kOutsideDomain};
        return {.point = source};
    }

    const Transformation& t_;
    const std::optional<Domain>& domain_;
    const Constants<double>& c_;
    const Point destination_;
    const double target_[2] = {destination_.first - c_.shift[0], destination_.second - c_.shift[1]};
};

/// What a group of points needs besides itself. Neither depends on the instruction set.
struct Batch {
    const Transformation& forward;
    const std::optional<Domain>& domain;
    const Constants<double> one;
    NoSource* troubles;  // a null pointer where nobody asks
    std::size_t lost = 0;

    SourcePoint Carefully(Point destination) {
        const SourcePoint source = CarefulSearch(forward, domain, one, destination).Run();
        lost += source.Found() ? 0 : 1;
        return source;
    }
};

/// Replaces the points of a place by their sources.
template <class Group, class Layout>
struct InvertGroup {
    const Layout& layout;
    const Constants<Group>& many;
    Batch& batch;

    template <Type kind, class Number>
    KV_TR_INLINE void At(std::size_t at) const {
        constexpr std::size_t kPoints = kLanes<Number>;
        Number first;
        Number second;
        layout.Load(at, first, second);
        const Number given[2] = {first, second};
        Number found;
        if constexpr (std::is_same_v<Number, Group>) {
            newton::Search<kind>(many, first, second, found);
        } else {
            newton::Search<kind>(batch.one, first, second, found);
        }
        if (batch.troubles != nullptr) {
            std::fill_n(batch.troubles + at, kPoints, NoSource::kNone);
        }
        if (newton::Sum(found) != kPoints) Repair(at, given, found, first, second);
        layout.Store(at, first, second);
    }

private:
    template <class Number>
    KV_TR_INLINE void Repair(std::size_t at, const Number* given, const Number& found,
                             Number& first, Number& second) const {
        constexpr std::size_t kPoints = kLanes<Number>;
        double destinations[2][kPoints];
        double sources[2][kPoints];
        double has[kPoints];
        std::memcpy(has, &found, sizeof has);
        std::memcpy(destinations, given, sizeof destinations);
        std::memcpy(sources[0], &first, sizeof first);
        std::memcpy(sources[1], &second, sizeof second);
        for (std::size_t i = 0; i < kPoints; ++i) {
            if (has[i] == 1.0) continue;
            const auto [point, trouble] = batch.Carefully({destinations[0][i], destinations[1][i]});
            sources[0][i] = point.first;
            sources[1][i] = point.second;
            if (batch.troubles != nullptr) batch.troubles[at + i] = trouble;
        }
        std::memcpy(&first, sources[0], sizeof first);
        std::memcpy(&second, sources[1], sizeof second);
    }
};

template <class Group, class Layout>
struct InvertMany {
    Layout layout;
    std::size_t count;
    Constants<Group> many;
    Batch& batch;

    template <Type kind>
    KV_TR_INLINE void At() const {
        const Layout fixed = layout;  // as far as the compiler knows, results may lie in members
        groups::EachGroup<kind, Group>(fixed, count,
                                       InvertGroup<Group, Layout>{fixed, many, batch});
    }
};

template <class Layout>
struct InvertManyWith {
    const Layout& layout;
    std::size_t count;
    Batch& batch;

    template <class Group>
    InvertMany<Group, Layout> With() const {
        return {layout, count, newton::Spread<Group>(batch.one), batch};
    }
};

template <class Layout>
std::size_t InvertAll(InstructionSet set, const Layout& layout, std::size_t count, Batch batch) {
    groups::ForGroups(set, batch.forward.type, InvertManyWith<Layout>{layout, count, batch});
    return batch.lost;
}

/// What a linear transformation has no source of: counts what is not finite and makes it NaN.
std::size_t MarkLost(double* first, double* second, std::size_t stride, std::size_t count,
                     NoSource* troubles) {
    std::size_t lost = 0;
    for (std::size_t i = 0; i < count; ++i) {
        double& one = first[i * stride];
        double& other = second[i * stride];
        const bool found = std::isfinite(one) && std::isfinite(other);
        if (troubles != nullptr) troubles[i] = found ? NoSource::kNone : NoSource::kNotReached;
        if (found) continue;
        one = other = std::numeric_limits<double>::quiet_NaN();
        ++lost;
    }
    return lost;
}

}  // namespace

std::optional<ExactInverse> ExactInverse::Of(const Transformation& transformation,
                                             const std::optional<Domain>& domain) {
    ExactInverse inverse(transformation, domain);
    if (!IsPolynomial(transformation.type)) {
        inverse.closed_ = transformation.Inverse();
        return inverse.closed_ ? std::optional(inverse) : std::nullopt;
    }
    const Constants<double> constants = ConstantsOf(transformation, domain);
    inverse.constants_ = std::bit_cast<decltype(inverse.constants_)>(constants);
    const bool isFinite = std::isfinite(constants.perReference) && constants.perReference != 0.0 &&
                          std::isfinite(constants.shift[0] + constants.shift[1]);
    return isFinite ? std::optional(inverse) : std::nullopt;
}

SourcePoint ExactInverse::Apply(Point destination) const {
    SourcePoint source{.point = destination};
    double& first = source.point.first;
    double& second = source.point.second;
    if (closed_) {
        source.point = closed_->Apply(destination);
        MarkLost(&first, &second, 1, 1, &source.trouble);
        return source;
    }
    const auto one = std::bit_cast<Constants<double>>(constants_);
    Batch batch{forward_, domain_, one, &source.trouble};
    const groups::Apart itself{&first, &second, &first, &second};
    groups::ForKind(forward_.type, InvertMany<double, groups::Apart>{itself, 1, one, batch});
    return source;
}

std::size_t ExactInverse::ApplyWith(InstructionSet set, std::span<const double> first,
                                    std::span<const double> second, std::span<double> firstOut,
                                    std::span<double> secondOut,
                                    std::span<NoSource> troubles) const {
    const std::size_t count = first.size();
    groups::ExpectLengths(second.size() == count && firstOut.size() == count &&
                          secondOut.size() == count &&
                          (troubles.empty() || troubles.size() == count));
    NoSource* why = troubles.empty() ? nullptr : troubles.data();
    if (closed_) {
        kv_tr::ApplyWith(set, *closed_, first, second, firstOut, secondOut);
        return MarkLost(firstOut.data(), secondOut.data(), 1, count, why);
    }
    const groups::Apart apart{first.data(), second.data(), firstOut.data(), secondOut.data()};
    return InvertAll(set, apart, count,
                     {forward_, domain_, std::bit_cast<Constants<double>>(constants_), why});
}

std::size_t ExactInverse::ApplyToPairsWith(InstructionSet set, std::span<const double> pairs,
                                           std::span<double> pairsOut,
                                           std::span<NoSource> troubles) const {
    const std::size_t count = pairs.size() / 2;
    groups::ExpectLengths(pairs.size() % 2 == 0 && pairsOut.size() == pairs.size() &&
                          (troubles.empty() || troubles.size() == count));
    NoSource* why = troubles.empty() ? nullptr : troubles.data();
    if (closed_) {
        kv_tr::ApplyToPairsWith(set, *closed_, pairs, pairsOut);
        return MarkLost(pairsOut.data(), pairsOut.data() + 1, 2, count, why);
    }
    const groups::Alternating alternating{pairs.data(), pairsOut.data()};
    return InvertAll(set, alternating, count,
                     {forward_, domain_, std::bit_cast<Constants<double>>(constants_), why});
}

std::size_t ExactInverse::Apply(std::span<const double> first, std::span<const double> second,
                                std::span<double> firstOut, std::span<double> secondOut,
                                std::span<NoSource> troubles) const {
    return ApplyWith(WidestInstructionSet(), first, second, firstOut, secondOut, troubles);
}

std::size_t ExactInverse::ApplyToPairs(std::span<const double> pairs, std::span<double> pairsOut,
                                       std::span<NoSource> troubles) const {
    return ApplyToPairsWith(WidestInstructionSet(), pairs, pairsOut, troubles);
}

}  // namespace kv_tr
