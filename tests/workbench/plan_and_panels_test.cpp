// What plan, panels and status line show of a document.
#include "kv_tr/analysis/point_precision.h"
#include "workbench/panels.h"
#include "workbench/plan_of.h"
#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

using PlanAndPanels = WorkbenchTest;

TEST_F(PlanAndPanels, PutEachPairWhereItsAxesPointTo) {
    using enum AxisMapping;
    for (const AxisMapping axes : {kEn, kNe, kWs, kSw, kEs, kWn, kSe, kNw}) {
        SCOPED_TRACE(AxisWord(axes));
        Content content = SampleContent(9);
        content.settings.destination.axes = axes;
        bench.Begin(std::move(content), {});
        const PlanData plan = PlanOf(bench.Project());
        for (std::size_t i = 0; i < plan.pairs.size(); ++i) {
            const auto& [place, vector, isUsed, standing, id] = plan.pairs[i];
            const Point at = bench.Project().PointAt(i).destination;
            EXPECT_EQ(DestinationOf(bench.Project(), place), at);
            const Point moved = DestinationOf(bench.Project(), {vector.first, vector.second});
            const Residual residual = bench.Project().Adjusted().Residuals()[i];
            EXPECT_EQ(moved, (Point{residual.first, residual.second}));
        }
        const auto follows = [&](const PlanAxis& axis, Point direction) {
            const Point along = DestinationOf(bench.Project(), direction);
            return (axis.name == "Y" ? along.first : along.second) == (axis.isReversed ? -1 : 1);
        };
        EXPECT_TRUE(follows(plan.right, {1, 0}) && follows(plan.up, {0, 1}));
        const Point somewhere = plan.pairs[4].place;
        const double ppm = plan.scalePpm(somewhere);
        const auto at =
            PlaceInfo(bench.Project()).AtDestination(DestinationOf(bench.Project(), somewhere));
        EXPECT_EQ(ppm, at->Ppm());
    }
}

TEST_F(PlanAndPanels, TurnErrorEllipsesWithTheAxes) {
    using enum AxisMapping;
    for (const AxisMapping axes : {kEn, kNe, kWs, kSe}) {
        SCOPED_TRACE(AxisWord(axes));
        Content content = SampleContent(9);
        content.settings.type = Type::kAffine5;
        content.settings.destination.axes = axes;
        bench.Begin(std::move(content), {});
        EXPECT_TRUE(PlanOf(bench.Project()).ellipses.empty()) << "not wanted";
        const PlanData plan = PlanOf(bench.Project(), true);
        ASSERT_EQ(plan.ellipses.size(), 9U);
        const Adjustment& fit = bench.Project().Adjusted();
        const PointPrecision precision(AdjustedModel(fit.Points(), fit.FitType(),
                                                     bench.Project().Findings().Options().sigmas));
        const Point source = fit.Points()[5].source;
        const auto covariance = precision.At(std::span(&source, 1)).front();
        EXPECT_NE(covariance.mixed, 0);
        const auto& [major, minor, bearing] = plan.ellipses[5];
        const double factor = ConfidenceFactor(0.95, 13);
        const Point right = DestinationOf(bench.Project(), {1, 0});
        const double along = right.first != 0 ? covariance.SigmaFirst() : covariance.SigmaSecond();
        EXPECT_NEAR(std::hypot(major * std::sin(bearing), minor * std::cos(bearing)),
                    factor * along, 1e-9 * along);
        const Point diagonal = DestinationOf(bench.Project(), {1, 1});
        const double variance = covariance.first + covariance.second +
                                2 * diagonal.first * diagonal.second * covariance.mixed;
        EXPECT_NEAR(std::hypot(major * (std::sin(bearing) + std::cos(bearing)),
                               minor * (std::sin(bearing) - std::cos(bearing))),
                    factor * std::sqrt(variance), 1e-9 * along);
    }
}

TEST_F(PlanAndPanels, TellExcludedPointsFromBadAndSuspectOnes) {
    Open(12);
    bench.SetCell(4, Column::kDestinationFirst, "1e6");
    bench.Exclude({7});
    PlanData plan = PlanOf(bench.Project());
    EXPECT_EQ(plan.pairs[4].standing, PlanStanding::kSuspect);
    EXPECT_FALSE(plan.pairs[7].isUsed);
    EXPECT_EQ(plan.limit, bench.Project().Limit());
    const FindingsTable table = PointsTable(bench.Project(), {4, 7});
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_TRUE(table.rows[0].isMarked && !table.rows[1].isMarked);
    EXPECT_EQ(table.rows[1].cells.front(), "P8");
    EXPECT_EQ(table.rows[1].cells.back(), "excluded");
    bench.Exclude({4});
    bench.SetLimit("0");
    plan = PlanOf(bench.Project());
    EXPECT_EQ(plan.pairs[0].standing, PlanStanding::kOverLimit);
    const std::size_t corners = plan.hull.size();
    for (const Point corner : plan.hull) EXPECT_NE(corner, plan.pairs[4].place);
    EXPECT_GT(corners, 2U);
}

TEST_F(PlanAndPanels, NameTheExtremesOfTheDistortion) {
    Content content = SampleContent(30, 0.5);
    content.settings.type = Type::kPolynomial2;
    bench.Begin(std::move(content), {});
    const FindingsTable table = DistortionTable(bench.Project(), AngleUnit::kGon);
    ASSERT_EQ(table.rows.size(), 4U);
    const auto scale = [&](std::size_t row) { return std::stod(table.rows[row].cells[3]); };
    EXPECT_LT(scale(1), scale(0));
    EXPECT_LT(scale(0), scale(2));
    EXPECT_LT(std::stod(table.rows[0].cells[5]), std::stod(table.rows[3].cells[5]));
    for (const ControlPoint& point : bench.Project().Points()) {
        const auto at = PlaceInfo(bench.Project()).AtSource(point.source);
        EXPECT_LE(at->Ppm(), scale(2) + 0.005);
        EXPECT_GE(at->Ppm(), scale(1) - 0.005);
    }
    bench.Begin({}, {});
    EXPECT_TRUE(DistortionTable(bench.Project(), AngleUnit::kGon).rows.empty());
    EXPECT_TRUE(PlanOf(bench.Project()).pairs.empty());
}

TEST_F(PlanAndPanels, MarkTheStepThatIsThePresentState) {
    Open(9);
    bench.Exclude({1});
    bench.Exclude({2});
    bench.Undo();
    const FindingsTable steps = StepsTable(bench.Steps());
    ASSERT_EQ(steps.rows.size(), 3U);
    EXPECT_TRUE(!steps.rows[0].isMarked && steps.rows[1].isMarked && !steps.rows[2].isMarked);
    EXPECT_EQ(steps.rows[1].cells[0], "Excluded P2");
    PlaceFigures figures{.source = {1.25, 2.5}, .image = {3, 4}, .scale = 1.00002, .rotation = 0.5};
    PlaceTexts texts = TextsOf(figures, AngleUnit::kGon);
    EXPECT_EQ(texts.coordinates, "Y 1.250  X 2.500  →  Y 3.000  X 4.000") << "no σ is known";
    EXPECT_EQ(texts.figures, "scale 20.00 ppm   rotation 31.83099 gon");
    EXPECT_EQ(texts.outside, "");
    figures.sigma = 0.0125;
    figures.distanceOutside = 7.26;
    texts = TextsOf(figures, AngleUnit::kSeconds);
    EXPECT_TRUE(texts.figures.ends_with("103132.40″")) << texts.figures;
    EXPECT_TRUE(texts.coordinates.ends_with("± 0.013 m") && texts.outside.starts_with("7.3 m"));
}

}  // namespace
}  // namespace kv_tr::workbench
