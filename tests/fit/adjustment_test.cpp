// Fits without any surroundings, and what a user does with a set of points.
#include "kv_tr/fit/adjustment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <tuple>
#include <utility>

#include "helpers/sample_points.h"
#include "kv_tr/fit/matrix.h"

namespace kv_tr::test {
namespace {

TEST(Fit, TellsWhatIsWrong) {
    const auto points = PointsBy(General(Type::kHelmert3), 9);
    EXPECT_EQ(Fit({}, Type::kHelmert).outcome.trouble, FitTrouble::kNoPoints);
    const auto few = Fit(std::span(points).first(5), Type::kPolynomial2);
    EXPECT_EQ(few.outcome.trouble, FitTrouble::kTooFewPoints);
    EXPECT_EQ(few.residuals.size(), 5U) << "computed all the same";
    for (const int limit : {-5, 0, 1, 2}) {  // the second pass finds that the first sufficed
        const FitOutcome outcome = Fit(points, Type::kHelmert3, {.passLimit = limit}).outcome;
        EXPECT_EQ(outcome.converged, limit == 2);
        EXPECT_EQ(outcome.trouble, limit == 2 ? FitTrouble::kNone : FitTrouble::kNotConverged);
    }
    // Destinations that no such transformation reaches keep the iteration moving for ever.
    for (const auto& [type, usual, step] :
         {std::tuple{Type::kHelmert3, 20, 1U}, {Type::kAffine5, 50, 5U}}) {
        const auto exact = PointsBy(General(type), 12);
        auto wild = exact;
        for (std::size_t i = 0; i < wild.size(); ++i) {
            const Point other = exact[(step * i + step / 5) % 12].destination;
            wild[i].destination = {3.0 * other.first, 3.0 * other.second};
        }
        wild[0].destination.first += 900.0;
        const Transformation last = Fit(wild, type).transformation;
        EXPECT_EQ(Fit(wild, type, {.passLimit = usual}).transformation, last);
        EXPECT_NE(Fit(wild, type, {.passLimit = usual - 1}).transformation, last);
        EXPECT_NE(Fit(wild, type, {.passLimit = usual + 1}).transformation, last);
    }
    auto line = points;  // exact integers with an exact mean
    for (std::size_t i = 0; i < line.size(); ++i)
        line[i].source = {8.0, 2.0 * static_cast<double>(i)};
    const FitResult singular = Fit(line, Type::kAffine);
    EXPECT_EQ(singular.outcome.trouble, FitTrouble::kSingular);
    EXPECT_EQ(singular.outcome.singularSystems, 1);
    EXPECT_TRUE(singular.outcome.Computed());

    line = {{"", {0, 0}, {1, 1}}, {"", {1, 1}, {2, 2}}, {"", {-1, -1}, {0, 0}}};
    const FitResult nothing = Fit(line, Type::kAffine5);
    EXPECT_EQ(nothing.outcome.trouble, FitTrouble::kNoStart);
    EXPECT_EQ(nothing.residuals.size(), 0U);
}

/// The image of a vector by which a start misses: turned, and shorter or longer.
Point TurnedVector(Point vector, double angle, double scale) {
    return Turned(Type::kHelmert, angle, scale, scale, {}).Apply(vector);
}

TEST(Fit, StartsAtTheFirstPointWhateverItsMarkAndArrivesFromAnywhere) {
    for (const Type type : {Type::kHelmert3, Type::kAffine5}) {
        const Transformation exact = General(type);
        // A start that is hardly any scale throws the angle up to 1e15 full turns away.
        for (const auto& [angle, scale] : {std::pair{2.5, 1.0},
                                           {-2.0, 1.0},
                                           {1.0, 1e-6},
                                           {1.0, 1e-12},
                                           {2.0, 1e-12},
                                           {0.3, 1e-10}}) {
            SCOPED_TRACE(testing::Message() << NumberOf(type) << " from " << angle << " " << scale);
            auto points = PointsBy(exact, 12);
            points[0].used = false;
            Point centre;  // of the other points, so that it is that of all but for the scale
            for (const ControlPoint& point : std::span(points).subspan(1)) {
                centre.first += point.destination.first / 11.0;
                centre.second += point.destination.second / 11.0;
            }
            Point& start = points[0].destination;
            const Point way = TurnedVector(
                {start.first - centre.first, start.second - centre.second}, angle, scale);
            start = {centre.first + way.first, centre.second + way.second};
            const FitResult first = Fit(points, type, {.passLimit = 0});
            EXPECT_GT(first.statistics.rms, 1.0) << "far from the start of a good point";
            const FitResult result = Fit(points, type);
            EXPECT_TRUE(result.outcome.Succeeded());
            EXPECT_LT(result.statistics.rms, 1e-6);
            // From behind, the first pass finds negative scales. The one of the first axis turns
            // positive with half a turn, that of the second axis stays: a mirror image.
            const auto& [found, a, b] = first.transformation;
            const bool mirrored = type == Type::kAffine5 && std::abs(angle) >= 2.0;
            EXPECT_EQ(a[1] * b[2] < a[2] * b[1], mirrored);
        }
    }
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

TEST(ResidualsOf, AreThoseOfEveryPointInItsOrder) {
    const Transformation t = General(Type::kAffine);
    const auto points = PointsBy(t, 600, 0.03);  // several blocks
    const auto residuals = ResidualsOf(points, t);
    ASSERT_EQ(residuals.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto& [id, source, destination, used] = points[i];
        const Point image = t.Apply(source);
        EXPECT_EQ(residuals[i],
                  (Residual{image.first - destination.first, image.second - destination.second}));
    }
    EXPECT_EQ((Residual{3.0, -4.0}).Length(), 5.0);
}

TEST(Adjustment, ExcludesAndLowersWhileEnoughPointsAreInUse) {
    const auto points = PointsBy(General(Type::kAffine), 7);
    Adjustment adjustment(points, Type::kPolynomial2);
    EXPECT_TRUE(adjustment.Toggle(6));
    EXPECT_FALSE(adjustment.LowerType()) << "six are enough";
    EXPECT_TRUE(adjustment.Toggle(0));
    EXPECT_EQ(adjustment.LowerType(), Type::kBilinear);
    EXPECT_EQ(adjustment.ExcludedCount(), 2U);
    for (const std::size_t index : {1U, 2U, 3U}) EXPECT_TRUE(adjustment.Toggle(index));
    EXPECT_FALSE(adjustment.Toggle(4)) << "one of the last two in use";
    EXPECT_FALSE(adjustment.Toggle(7));
    EXPECT_TRUE(adjustment.Toggle(6)) << "taking back is always allowed";
    adjustment.Fit();
    const std::vector<Residual> residuals{adjustment.Residuals()[4], adjustment.Residuals()[5],
                                          adjustment.Residuals()[6]};
    adjustment.RemoveExcluded();
    EXPECT_EQ(adjustment.Points()[0], points[4]);
    EXPECT_EQ(std::vector(adjustment.Residuals().begin(), adjustment.Residuals().end()), residuals);
    EXPECT_EQ(adjustment.UsedCount(), 3U);
    EXPECT_EQ(adjustment.Means().source, Adjustment(std::span(points).last(3)).Means().source);
}

TEST(Adjustment, KeepsMeansAndExtentWhateverHappensToItsPoints) {
    const auto points = PointsBy(General(Type::kAffine), 5);
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
    EXPECT_TRUE(parts.IsSwapped());
    parts.Append(exchanged);  // goes on with the sums as they were swapped
    auto twice = exchanged;
    twice.insert(twice.end(), exchanged.begin(), exchanged.end());
    expectSame(parts, Adjustment(twice));

    twice[2] = {"new", {-1e6, 5.0}, {1e6, -7.0}, false};
    parts.Replace(2, twice[2]);
    expectSame(parts, Adjustment(twice));
    EXPECT_EQ(parts.ExcludedCount(), 1U);
    parts.Append(parts.Points());
    EXPECT_EQ(parts.Points().size(), 20U);
    EXPECT_EQ(parts.ExcludedCount(), 2U);
    parts.Assign({});
    EXPECT_EQ(parts.ExcludedCount(), 0U);
    EXPECT_FALSE(parts.IsSwapped());
    EXPECT_EQ(parts.DestinationExtent()->greatest.first, 1e6) << "that of the points before";
    parts.Swap();
    EXPECT_EQ(parts.DestinationExtent()->greatest.first, 1e6) << "without points";
}

}  // namespace
}  // namespace kv_tr::test
