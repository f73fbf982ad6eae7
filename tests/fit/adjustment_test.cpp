// Fits without any surroundings, and what a user does with a set of points.
#include "kv_tr/fit/adjustment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <utility>

namespace kv_tr {
namespace {

/// Points whose destination is the image of the source, no three on a line.
std::vector<ControlPoint> PointsBy(const Transformation& t, int count) {
    std::vector<ControlPoint> points;
    for (int i = 0; i < count; ++i) {
        const Point source{1000.0 + (i * 617 + i * i * 13) % 997,
                           2000.0 + (i * 389 + i * i * 71) % 1009};
        points.push_back({std::to_string(i), source, t.Apply(source)});
    }
    return points;
}

const Transformation kTurn{.a = {70.0, 0.8, -0.6}, .b = {-30.0, 0.6, 0.8}};

TEST(Fit, YieldsTheTransformationOfItsPointsAndWhatTheyMissItBy) {
    for (const Type type : {Type::kHelmert, Type::kAffine, Type::kHelmert3, Type::kAffine5,
                            Type::kBilinear, Type::kPolynomial2}) {
        auto points = PointsBy(kTurn, 12);
        points[3].used = false;
        points[3].destination.second += 5.0;
        const FitResult result = Fit(points, type);
        EXPECT_TRUE(result.outcome.Succeeded()) << NumberOf(type);
        EXPECT_EQ(result.transformation.type, type);
        EXPECT_NEAR(result.residuals.at(3).second, -5.0, 1e-5) << "computed minus measured";
        EXPECT_LT(result.statistics.rms, 1e-5) << "without the excluded point";
    }
}

TEST(Fit, TellsWhatIsWrong) {
    const auto points = PointsBy(kTurn, 9);
    EXPECT_EQ(Fit({}, Type::kHelmert).outcome.trouble, FitTrouble::kNoPoints);
    const auto few = Fit(std::span(points).first(5), Type::kPolynomial2);
    EXPECT_EQ(few.outcome.trouble, FitTrouble::kTooFewPoints);
    EXPECT_EQ(few.residuals.size(), 5U) << "computed all the same";
    EXPECT_EQ(Fit(points, Type::kHelmert3, {.passLimit = 0}).outcome.trouble,
              FitTrouble::kNotConverged);

    std::vector<ControlPoint> line;  // exact integers with an exact mean
    for (int i = 0; i < 5; ++i) line.push_back({"", {8.0, 2.0 * i}, {1.0, 1.0 * i}});
    const FitResult singular = Fit(line, Type::kAffine);
    EXPECT_EQ(singular.outcome.trouble, FitTrouble::kSingular);
    EXPECT_EQ(singular.outcome.singularSystems, 1);
    EXPECT_TRUE(singular.outcome.Computed());

    line = {{"", {0, 0}, {1, 1}}, {"", {1, 1}, {2, 2}}, {"", {-1, -1}, {0, 0}}};
    const FitResult nothing = Fit(line, Type::kAffine5);
    EXPECT_EQ(nothing.outcome.trouble, FitTrouble::kNoStart);
    EXPECT_EQ(nothing.residuals.size(), 0U);
}

TEST(StatisticsOf, DividesByThePointsInUseLessOne) {
    std::vector<ControlPoint> points(3);
    const std::vector<Residual> residuals{{0.1, -0.3}, {0.2, 0.5}, {9.0, 9.0}};
    points[2].used = false;
    const Statistics figures = StatisticsOf(points, residuals);
    EXPECT_DOUBLE_EQ(figures.rms, std::sqrt(0.39));
    EXPECT_DOUBLE_EQ(figures.rmsFirst, std::sqrt(0.05));
    EXPECT_DOUBLE_EQ(figures.rmsSecond, std::sqrt(0.34));
    EXPECT_DOUBLE_EQ(figures.meanFirst, 0.15);
    EXPECT_DOUBLE_EQ(figures.meanSecond, 0.1);
    points[1].used = false;
    EXPECT_TRUE(std::isinf(StatisticsOf(points, residuals).rms));
    points[0].used = false;
    EXPECT_TRUE(std::isnan(StatisticsOf(points, residuals).meanFirst));
}

TEST(Adjustment, ExcludesLowersAndFitsLikeAFitOfItsPoints) {
    auto points = PointsBy(kTurn, 7);
    points[6].destination.first += 2.0;
    Adjustment adjustment(points, Type::kPolynomial2);
    EXPECT_TRUE(adjustment.Toggle(6));
    EXPECT_FALSE(adjustment.LowerType()) << "six are enough";
    EXPECT_TRUE(adjustment.Toggle(0));
    EXPECT_EQ(adjustment.LowerType(), Type::kBilinear);
    EXPECT_EQ(adjustment.ExcludedCount(), 2U);
    EXPECT_TRUE(adjustment.Fit().Succeeded());
    points[0].used = points[6].used = false;
    const FitResult same = Fit(points, Type::kBilinear);
    EXPECT_EQ(adjustment.Result().a[4], same.transformation.a[4]);
    EXPECT_EQ(adjustment.Residuals()[6], same.residuals[6]);
    EXPECT_EQ(adjustment.Figures(), same.statistics);

    for (const std::size_t index : {1U, 2U, 3U}) EXPECT_TRUE(adjustment.Toggle(index));
    EXPECT_FALSE(adjustment.Toggle(4)) << "one of the last two in use";
    EXPECT_FALSE(adjustment.Toggle(7));
    EXPECT_TRUE(adjustment.Toggle(6)) << "taking back is always allowed";
    adjustment.UseAll();
    EXPECT_EQ(adjustment.UsedCount(), 7U);
}

TEST(Adjustment, KeepsMeansAndExtentWhateverHappensToItsPoints) {
    const auto points = PointsBy(kTurn, 5);
    const auto expectSame = [](const Adjustment& one, const Adjustment& other) {
        EXPECT_EQ(one.Means().source, other.Means().source);
        EXPECT_EQ(one.Means().destination, other.Means().destination);
        EXPECT_EQ(one.DestinationExtent()->least, other.DestinationExtent()->least);
        EXPECT_EQ(one.DestinationExtent()->greatest, other.DestinationExtent()->greatest);
    };
    const Adjustment whole(points);
    const std::span all(points);
    Adjustment parts(all.first(2));
    parts.Append(all.subspan(2));
    expectSame(parts, whole);

    auto exchanged = points;
    for (ControlPoint& point : exchanged) std::swap(point.source, point.destination);
    parts.Swap();
    expectSame(parts, Adjustment(exchanged));
    EXPECT_EQ(parts.Points()[4], exchanged[4]);

    exchanged[2] = {"new", {-1e6, 5.0}, {1e6, -7.0}, false};
    parts.Replace(2, exchanged[2]);
    expectSame(parts, Adjustment(exchanged));
    EXPECT_EQ(parts.ExcludedCount(), 1U);

    parts.Append(parts.Points());
    EXPECT_EQ(parts.Points().size(), 10U);
    parts.Assign({});
    EXPECT_EQ(parts.ExcludedCount(), 0U);
    EXPECT_EQ(parts.DestinationExtent()->greatest.first, 1e6) << "that of the points before";
}

}  // namespace
}  // namespace kv_tr
