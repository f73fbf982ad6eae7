// The residual graph: scale, marks, picking, and the page with it.
#include "kv_tr/forms/residual_graph.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmTr.h"

namespace kv_tr::test {
namespace {

using ResidualGraph = EngineTest;

TEST_F(ResidualGraph, ScalesByTheAxisThatNeedsMoreRoom) {
    const auto scale = [this](const std::vector<PlanePoint>& points) {
        engine.AddXY4Tr(PairsBy(points, Identity), false);
        return ScaleFor(engine.Held(), 400, 200);
    };
    const GraphScale wide = scale({{100, 500}, {300, 540}});
    EXPECT_EQ(wide.metresPerUnit, 0.6);
    EXPECT_EQ(wide.originFirst, 80);
    EXPECT_EQ(wide.originSecond, 544) << "the margin is that of the axis, not of the scale";
    ExpectNear(wide.ToDestination(wide.ToSurface({123, 456})), {123, 456}, 1e-12);
    EXPECT_EQ(scale({{7, 0}, {7, 100}}).metresPerUnit, 0.6);
    ExpectNear(scale({{50, 60}, {50, 60}}).ToSurface({50, 60}), {200, 100}, 0);
}

TEST_F(ResidualGraph, MarksPairsByUseAndLimit) {
    std::vector<typeXYs4Tr> pairs(5);
    pairs[0] = {.sId = "A", .dXdest = 10, .dYdest = 20, .dXerr = 0.3, .dYerr = -0.4};
    pairs[1].dXerr = 0.49;
    pairs[2].bNotUsed = true;
    pairs[3].dYerr = std::nan("");
    pairs[4].dXdest = std::numeric_limits<double>::infinity();
    const GraphScale scale{.metresPerUnit = 2, .originFirst = 0, .originSecond = 100};
    engine.AddXY4Tr(pairs, false);
    const auto marks = GraphMarks(engine.Held(), 0.5, scale, {true, true, true, true});
    const Colour expected[] = {kRed, kBlue, kBlack, kRed};
    ASSERT_EQ(marks.size(), std::size(expected)) << "a pair without a place has no mark";
    for (std::size_t i = 0; i < marks.size(); ++i) {
        EXPECT_EQ(marks[i].colour, expected[i]) << i;
        EXPECT_EQ(marks[i].bold, expected[i] == kRed) << i;
    }
    ExpectNear(marks[0].place, {5, 40}, 0);
    EXPECT_EQ(marks[0].labels, (std::array<std::string, 4>{" A", " 0.500", "0.300 ", "-0.400"}));
    EXPECT_EQ(GraphMarks(engine.Held(), 0.5, scale, {false, false, true, false})[0].labels,
              (std::array<std::string, 4>{"", "", "", "-0.400"}));
}

TEST_F(ResidualGraph, TogglesTheNearestPairAfterADoubleClick) {
    engine.AddXY4Tr(PairsBy({{0, 0}, {100, 0}, {100, 100}, {0, 100}}, Shift), false);
    const auto used = [&](std::size_t i) { return !engine.Pairs()[i].bNotUsed; };
    frmTr form;
    form.bDoModal(engine, false, [&] {
        form.Plan().Resize(120, 120);
        form.chkInverz();  // which moves the points
        form.opMode(frmTr::Mode::kGraph);
        EXPECT_FALSE(form.PicBoxMouseUp(10, 10)) << "no double click before";
        EXPECT_TRUE(used(3));
        form.Plan().PicBoxDblClick();
        EXPECT_TRUE(form.PicBoxMouseUp(-5000, -5000));
        EXPECT_FALSE(used(3)) << "the upper left one is nearest, however far";
        EXPECT_FALSE(form.PicBoxMouseUp(-5000, -5000)) << "used up";
        form.Plan().PicBoxDblClick();
        form.PicBoxMouseUp(60, 60);
        EXPECT_FALSE(used(0)) << "the first of equally near ones";
        form.chkInverz();
        form.Plan().Resize(5, 400);
        EXPECT_EQ(form.Plan().Marks()[2].place.first, 110) << "too small to be laid out";

        engine.AddXY4Tr({}, false);
        form.Plan().PicBoxDblClick();
        EXPECT_FALSE(form.PicBoxMouseUp(10, 10));
        EXPECT_EQ(platform.TakeTexts(), Texts{"Nearer!"});
    });
}

TEST_F(ResidualGraph, IsDrawnAsAnSvgDocument) {
    auto pairs = ShiftedPairs(4);
    pairs[0].sId = "<&>\x01\uFFFE\uFFFF";
    pairs[1].dYdest += 5;
    engine.AddXY4Tr(pairs, false);
    engine.gdErrLimit = 0.004;
    engine.DoCalcTr();
    DecimalSeparator(',');
    std::string svg = SvgOf(PageOf(engine.Held(), engine.gdErrLimit, {}, 400, 300));
    GraphPage page{.width = 100, .height = 100, .planTop = 30};
    page.marks = {
        {.place = {50, 60}, .colour = kBlue, .labels = {" P0002", " 1.2", "51.300 ", "3.4"}}};
    svg += SvgOf(page);
    for (const char* part :
         {"> &lt;&amp;&gt;   </text>", ">HELMERT transformation</text>",
          ">Calculated:4  Excluded:0  Error limit [m]:0,004</text>", "class=\"red bold\"",
          "width=\"424.00\"", "y=\"128.00\" width=\"400.00\" height=\"172.00\"",
          "<text x=\"47.00\" y=\"57.00\" text-anchor=\"end\"> P0002<",
          "<text x=\"53.00\" y=\"57.00\">51.300 <", "x=\"47.00\" y=\"71.00\"",
          "x=\"53.00\" y=\"71.00\""}) {
        EXPECT_NE(svg.find(part), std::string::npos) << part << '\n' << svg;
    }
}

}  // namespace
}  // namespace kv_tr::test
