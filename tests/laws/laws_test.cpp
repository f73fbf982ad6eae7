// What is true for every type that can be fitted, with general numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <span>
#include <utility>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/fit/adjustment.h"
#include "kv_tr/model/direction.h"
#include "kv_tr/model/evaluate.h"
#include "kv_tr/model/inverse.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr::test {
namespace {

/// What the equations of order 5 lose, in metres; the iterated types stop below it.
constexpr double kRounding = 1e-6;

class Laws : public testing::TestWithParam<Type> {
protected:
    const Type type = GetParam();
    const bool linear = !IsPolynomial(type);
    const Transformation general = General(type);
    const std::vector<ControlPoint> points = PointsBy(general, 40, 0.03);
};

void ExpectSameFit(const FitResult& one, const FitResult& other) {
    EXPECT_EQ(one.transformation, other.transformation);
    EXPECT_EQ(one.residuals, other.residuals);
    EXPECT_EQ(one.statistics, other.statistics);
}

FitResult ResultOf(Adjustment& adjustment) {
    const FitOutcome outcome = adjustment.Fit();
    const auto residuals = adjustment.Residuals();
    return {.transformation = adjustment.Result(),
            .residuals = {residuals.begin(), residuals.end()},
            .statistics = adjustment.Figures(),
            .outcome = outcome,
            .check = adjustment.Check()};
}

TEST_P(Laws, AFitOfExactPointsReturnsThemAndWhatABadPointMisses) {
    auto exact = PointsBy(general, 40);
    exact[3].used = false;
    exact[3].destination.first -= 7.0;
    exact[3].destination.second += 5.0;
    const FitResult result = Fit(exact, type);
    EXPECT_TRUE(result.outcome.Succeeded());
    EXPECT_TRUE(result.outcome.converged);
    EXPECT_EQ(result.transformation.type, type);
    for (const Point at : SpreadPoints(60))
        ExpectNear(result.transformation.Apply(at), general.Apply(at), kRounding);
    EXPECT_NEAR(result.residuals.at(3).first, 7.0, kRounding) << "computed minus measured";
    EXPECT_NEAR(result.residuals.at(3).second, -5.0, kRounding);
    EXPECT_LT(result.statistics.rms, kRounding) << "without the excluded point";
}

TEST_P(Laws, AFitMovesWithItsPoints) {
    const FitResult fixed = Fit(points, type);
    const bool turns = type != Type::kBilinear && type != Type::kAffine5;  // in the source
    for (const auto& [source, destination] :
         {std::pair{Turned(type, turns ? 2.1 : 0.0, 1.0, 1.0, {250.5, -4000.0}),
                    Turned(type, -0.4, 1.0, 1.0, {-31.0, 17.25})},
          {Turned(type, turns ? -1.3 : 0.0, 3.5, 3.5, {10.0, 20.0}),
           Turned(type, 0.7, 3.5, 3.5, {-600.0, 75.0})}}) {
        const auto move = [](Transformation by, Point& point) {
            by.type = Type::kAffine;
            point = by.Apply(point);
        };
        auto moved = points;
        for (ControlPoint& point : moved) {
            move(source, point.source);
            move(destination, point.destination);
        }
        const FitResult result = Fit(moved, type);
        for (std::size_t i = 0; i < points.size(); ++i) {
            Point image = fixed.transformation.Apply(points[i].source);
            move(destination, image);
            ExpectNear(result.transformation.Apply(moved[i].source), image, 3.5 * kRounding);
        }
        const double scale = std::hypot(destination.a[1], destination.b[1]);
        EXPECT_NEAR(result.statistics.rms, scale * fixed.statistics.rms, kRounding);
    }
}

TEST_P(Laws, TheExactInverseLeadsBackAndArraysLikePointsOnEveryInstructionSet) {
    const FitResult fit = Fit(points, type);
    std::vector<Point> sources;
    for (const ControlPoint& point : points) sources.push_back(point.source);
    const auto inverse = ExactInverse::Of(fit.transformation, DomainOf(sources));
    ASSERT_TRUE(inverse);
    // Among the images lie a few points that have no source, or are hard to find.
    std::vector<double> first, second, pairs;
    for (std::size_t i = 0; i < 3 * sources.size(); ++i) {
        Point image = fit.transformation.Apply(sources[i % sources.size()]);
        if (i % 7 == 3) image.first += 500.0 * static_cast<double>(i);
        if (i == 50) image.second = std::numeric_limits<double>::quiet_NaN();
        first.push_back(image.first);
        second.push_back(image.second);
        pairs.insert(pairs.end(), {image.first, image.second});
    }
    const std::size_t count = first.size();
    const auto bits = [](Point p) {
        return std::pair(std::bit_cast<std::uint64_t>(p.first),
                         std::bit_cast<std::uint64_t>(p.second));
    };
    for (const auto set :
         {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512}) {
        if (!IsAvailable(set)) continue;
        std::vector<double> firstOut(count), secondOut(count);
        auto inPlace = pairs;
        std::vector<NoSource> troubles(count), pairTroubles(count);
        const auto lost = inverse->ApplyWith(set, first, second, firstOut, secondOut, troubles);
        EXPECT_EQ(inverse->ApplyToPairsWith(set, inPlace, inPlace, pairTroubles), lost);
        EXPECT_EQ(troubles, pairTroubles);
        EXPECT_EQ(lost,
                  count - static_cast<std::size_t>(std::ranges::count(troubles, NoSource::kNone)));
        EXPECT_GE(lost, 1U);
        for (std::size_t i = 0; i < count; ++i) {
            const auto [source, trouble] = inverse->Apply({first[i], second[i]});
            EXPECT_EQ(bits({firstOut[i], secondOut[i]}), bits(source)) << i;
            EXPECT_EQ(bits({inPlace[2 * i], inPlace[2 * i + 1]}), bits(source)) << i;
            EXPECT_EQ(troubles[i], trouble);
            if (i % 7 == 3 || i == 50) continue;
            ExpectNear(source, sources[i % sources.size()], 1e-9);
        }
    }
}

/// How the image of a point, of reduced coordinates u and v, moves with each unknown of a type.
std::vector<Point> Derivatives(const Transformation& t, double u, double v) {
    const auto& [type, a, b] = t;
    const Point alongFirst{a[1] * u, b[1] * u};
    const Point alongSecond{a[2] * v, b[2] * v};
    const Point grown{alongFirst.first + alongSecond.first, alongFirst.second + alongSecond.second};
    std::vector<Point> derivatives{{1.0, 0.0}, {0.0, 1.0}};
    if (type == Type::kHelmert || type == Type::kHelmert3 || type == Type::kAffine5)
        derivatives.push_back({-grown.second, grown.first});
    if (type == Type::kHelmert) derivatives.push_back(grown);
    if (type == Type::kAffine5) derivatives.insert(derivatives.end(), {alongFirst, alongSecond});
    if (type != Type::kAffine && !IsPolynomial(type)) return derivatives;
    for (int ofU = 0; ofU <= 5; ++ofU) {
        for (int ofV = 0; ofV <= 5 - ofU; ++ofV) {
            const bool has =
                type == Type::kBilinear ? ofU <= 1 && ofV <= 1 : ofU + ofV <= PolynomialOrder(type);
            const double term = std::pow(u, ofU) * std::pow(v, ofV);
            if (has) derivatives.insert(derivatives.end(), {{term, 0.0}, {0.0, term}});
        }
    }
    return derivatives;
}

TEST_P(Laws, ResidualsAreOrthogonalToTheDesign) {
    auto some = points;
    for (const std::size_t i : {5U, 18U}) some[i].used = false;
    const FitResult result = Fit(some, type);
    ASSERT_GT(result.statistics.rms, 0.01);
    const Transformation& t = result.transformation;
    std::vector<double> sums, squares;
    for (std::size_t i = 0; i < some.size(); ++i) {
        if (!some[i].used) continue;
        const auto [first, second] = result.residuals[i];
        const auto derivatives = Derivatives(t, (some[i].source.first - 1500.0) / 500.0,
                                             (some[i].source.second - 2500.0) / 500.0);
        sums.resize(derivatives.size());
        squares.resize(derivatives.size());
        for (std::size_t k = 0; k < derivatives.size(); ++k) {
            sums[k] += first * derivatives[k].first + second * derivatives[k].second;
            squares[k] += std::pow(derivatives[k].first, 2) + std::pow(derivatives[k].second, 2);
        }
    }
    for (std::size_t k = 0; k < sums.size(); ++k)
        EXPECT_NEAR(sums[k] / std::sqrt(squares[k]), 0.0, kRounding) << k;
}

TEST_P(Laws, AnExcludedPointCountsForNothing) {
    const std::span all(points);
    const FitResult without = Fit(all.first(37), type);
    auto marked = points;
    Adjustment toggled(points, type);
    const FitResult whole = ResultOf(toggled);
    for (const std::size_t i : {37U, 38U, 39U}) {
        marked[i].used = false;
        EXPECT_TRUE(toggled.Toggle(i));
    }
    const FitResult with = Fit(marked, type);
    ExpectSameFit(ResultOf(toggled), with);
    for (const Point at : SpreadPoints(60))
        ExpectNear(with.transformation.Apply(at), without.transformation.Apply(at), kRounding);
    EXPECT_NEAR(with.statistics.rmsFirst, without.statistics.rmsFirst, kRounding);
    EXPECT_NEAR(with.statistics.rmsSecond, without.statistics.rmsSecond, kRounding);
    toggled.UseAll();
    ExpectSameFit(ResultOf(toggled), whole);
}

TEST_P(Laws, SwappingTwiceIsNothingAndOnceIsTheFitTheOtherWay) {
    auto exchanged = points;
    for (ControlPoint& point : exchanged) std::swap(point.source, point.destination);
    Adjustment adjustment(points, type);
    const FitResult before = ResultOf(adjustment);
    adjustment.Swap();
    ExpectSameFit(ResultOf(adjustment), Fit(exchanged, type));
    adjustment.Swap();
    ExpectSameFit(ResultOf(adjustment), before);
}

TEST_P(Laws, TheInverseLeadsBack) {
    const auto inverse = general.Inverse();
    ASSERT_EQ(inverse.has_value(), linear);
    if (!linear) return;
    EXPECT_EQ(inverse->type, type);
    for (const Point at : SpreadPoints(5))  // coordinates of some thousand metres
        ExpectNear(inverse->Apply(general.Apply(at)), at, 1e-9);
    const AFFIN_PRM published = InverseOf(AffineOf(general));
    EXPECT_EQ(WithAffine({}, published), *inverse);
}

TEST_P(Laws, DirectionsFollowTheDerivative) {
    for (const double angle : {0.3, 2.0, 4.4, 6.0}) {
        constexpr double kStep = 1e-2;  // the difference misses the derivative by its square
        const Point at{1213.0, 2818.5};
        const auto image = [&](double step) {
            return general.Apply(
                {at.first + step * std::cos(angle), at.second + step * std::sin(angle)});
        };
        const Point to = image(kStep);
        const Point from = image(-kStep);
        EXPECT_NEAR(general.Direction(angle, at).value(),
                    DirectionOf(to.first - from.first, to.second - from.second), 1e-8);
    }
}

TEST_P(Laws, FilesKeepTheDigitsTheyShowWithPointAndComma) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    for (const char separator : {'.', ','}) {
        DecimalSeparator(separator);
        for (const std::string extension : {"trp", "PRM", "all"}) {
            if (linear == (extension == "all")) continue;
            const std::string name = folder.File("town." + extension);
            clsTr saved, loaded;
            saved.udtTrPrm(RecordOf(general));
            EXPECT_EQ(saved.bSaveAffinTrPrm(name, extension == "PRM"), linear);
            EXPECT_EQ(saved.bSavePoliTrPrm(name), !linear);
            loaded.udtTrPrm({.eType = linear ? PublishedType(type) : TR_HELMERT});
            EXPECT_TRUE(linear ? loaded.bLoadAffinTrPrmFromFile(name, extension == "PRM")
                               : loaded.bLoadPoliTrPrmFromFile(name));
            EXPECT_EQ(loaded.gName + "/", folder.File(""));
            const Transformation read = TransformationOf(loaded.udtTrPrm());
            EXPECT_EQ(ReadParameterFile(name, type, {.numbers = {separator}}).transformation.a,
                      read.a);
            EXPECT_EQ(read.type, type);
            const auto count = linear ? 3 : static_cast<std::size_t>(TermCount(type)) + 1;
            for (std::size_t k = 0; k < count; ++k) {
                const double size = linear ? 1e7 : std::abs(general.a[k]);
                const double half = k == 0 ? 0.5e-3 : 5e-16 * size + 5e-16 * std::abs(general.b[k]);
                EXPECT_NEAR(read.a[k], general.a[k], half) << k;
                EXPECT_NEAR(read.b[k], general.b[k], half) << k;
            }
        }
    }
    EXPECT_TRUE(platform.messages.empty());
}

/// Bits that can be compared: compilers may choose which of two nan they pass on.
std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(std::isnan(value) ? std::nan("") : value);
}

using Numbers = std::vector<double>;

/// Applies a transformation to arrays in every way: apart, crossed, in place, in pairs, and at
/// addresses of every alignment.
void ExpectImages(const Transformation& t, InstructionSet set, const Numbers& first,
                  const Numbers& second) {
    const std::size_t count = first.size();
    Numbers pairs, kept(count + 16), firstOut(kept.size()), other(count), crossed = first;
    for (std::size_t i = 0; i < count; ++i) pairs.insert(pairs.end(), {first[i], second[i]});
    const auto shifted = [count](Numbers& numbers) {
        return std::span(numbers).subspan(count % 8, count);
    };
    ApplyWith(set, t, first, second, shifted(firstOut), shifted(kept));
    ApplyWith(set, t, crossed, second, other, crossed);
    ApplyToPairsWith(set, t, pairs, pairs);
    for (const Numbers* results : {&firstOut, &kept})
        EXPECT_TRUE(
            std::all_of(results->end() - 8, results->end(), [](double v) { return v == 0; }));
    for (std::size_t i = 0; i < count; ++i) {
        const Point image = t.Apply({first[i], second[i]});
        for (const double result : {shifted(firstOut)[i], other[i], pairs[2 * i]})
            ASSERT_EQ(Bits(result), Bits(image.first)) << i;
        for (const double result : {shifted(kept)[i], crossed[i], pairs[2 * i + 1]})
            ASSERT_EQ(Bits(result), Bits(image.second)) << i;
    }
}

TEST_P(Laws, ArraysHaveTheBitsOfPointsWithEveryInstructionSet) {
    using Limits = std::numeric_limits<double>;
    constexpr double kExtremes[] = {
        0.0,           -0.0,           Limits::infinity(),   -Limits::infinity(), Limits::max(),
        Limits::min(), -Limits::min(), Limits::denorm_min(), Limits::quiet_NaN(), 1e-200};
    std::mt19937_64 random(5);
    const auto fill = [&](auto& numbers, unsigned oneExtremeIn, double size) {
        for (double& number : numbers)
            number = random() % oneExtremeIn == 0
                         ? kExtremes[random() % std::size(kExtremes)]
                         : std::uniform_real_distribution(-size, size)(random);
    };
    EXPECT_TRUE(IsAvailable(WidestInstructionSet()));
    for (const auto set :
         {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512}) {
        if (!IsAvailable(set)) continue;
        for (std::size_t count = 0; count < 40; ++count) {
            SCOPED_TRACE(testing::Message() << "set " << static_cast<int>(set) << ", " << count);
            Transformation t{.type = type};
            Numbers first(count), second(count);
            for (auto* series : {&t.a, &t.b}) fill(*series, count % 2 == 0 ? 1000000 : 20, 1.0);
            for (auto* coordinates : {&first, &second}) fill(*coordinates, 10, 1e5);
            ExpectImages(t, set, first, second);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Types, Laws,
                         testing::Values(Type::kHelmert, Type::kAffine, Type::kHelmert3,
                                         Type::kAffine5, Type::kBilinear, Type::kPolynomial1,
                                         Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4,
                                         Type::kPolynomial5),
                         [](const auto& test) {
                             const int number = NumberOf(test.param);
                             return (number < 0 ? "minus" : "") + std::to_string(std::abs(number));
                         });

}  // namespace
}  // namespace kv_tr::test
