// The residual graph: scale, marks, picking, and the page with it.
#include "kv_tr/forms/residual_graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmTr.h"

namespace kv_tr::test {
namespace {

class ResidualGraph : public EngineTest {
protected:
    GraphScale Scale(const std::vector<PlanePoint>& points, double width, double height) {
        engine.AddXY4Tr(PairsBy(points, Identity), false);
        return ScaleFor(engine.Held(), width, height);
    }
};

TEST_F(ResidualGraph, ScalesByTheAxisThatNeedsMoreRoom) {
    const GraphScale wide = Scale({{100, 500}, {300, 540}}, 400, 200);
    EXPECT_EQ(wide.metresPerUnit, 0.6);
    EXPECT_EQ(wide.originFirst, 80);
    EXPECT_EQ(wide.originSecond, 544) << "the margin is that of the axis, not of the scale";
    const GraphScale vertical = Scale({{7, 0}, {7, 100}}, 400, 200);
    EXPECT_EQ(vertical.metresPerUnit, 0.6);
    EXPECT_EQ(vertical.ToSurface({7, 100}).first, 0);
    const PlanePoint back = wide.ToDestination(wide.ToSurface({123, 456}));
    ExpectNear(back, {123, 456}, 1e-12);
    const GraphScale point = Scale({{50, 60}, {50, 60}}, 400, 200);
    EXPECT_EQ(point.metresPerUnit, 1);
    ExpectNear(point.ToSurface({50, 60}), {200, 100}, 0);
}

TEST_F(ResidualGraph, MarksPairsByUseAndLimit) {
    std::vector<typeXYs4Tr> pairs(6);
    pairs[0] = {.sId = "A", .dXdest = 10, .dYdest = 20, .dXerr = 0.3, .dYerr = -0.4};
    pairs[1].dXerr = 0.49;
    pairs[2].bNotUsed = true;
    pairs[3].dYerr = std::nan("");
    pairs[4].bNotUsed = true;
    pairs[5].dXdest = std::numeric_limits<double>::infinity();
    const GraphScale scale{.metresPerUnit = 2, .originFirst = 0, .originSecond = 100};
    engine.AddXY4Tr(pairs, false);
    const auto marks = GraphMarks(engine.Held(), 0.5, scale, {true, true, true, true});

    const std::pair<Colour, bool> expected[] = {
        {kRed, true}, {kBlue, false}, {kBlack, false}, {kRed, true}, {kBlack, false}};
    ASSERT_EQ(marks.size(), std::size(expected)) << "a pair without a place has no mark";
    for (std::size_t i = 0; i < marks.size(); ++i) {
        EXPECT_EQ(std::pair(marks[i].colour, marks[i].bold), expected[i]) << i;
    }
    ExpectNear(marks[0].place, {5, 40}, 0);
    EXPECT_EQ(marks[0].labels, (std::array<std::string, 4>{" A", " 0.500", "0.300 ", "-0.400"}));
    EXPECT_EQ(GraphMarks(engine.Held(), 0.5, scale, {false, false, true, false})[0].labels,
              (std::array<std::string, 4>{"", "", "", "-0.400"}));
}

TEST_F(ResidualGraph, TogglesTheNearestPairAfterADoubleClick) {
    engine.AddXY4Tr(PairsBy({{0, 0}, {100, 0}, {100, 100}, {0, 100}}, Identity), false);
    const auto used = [&](std::size_t i) { return !engine.Pairs()[i].bNotUsed; };
    frmTr form;
    form.bDoModal(engine, false, [&] {
        form.Plan().Resize(120, 120);
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
        form.Plan().Resize(5, 400);
        EXPECT_EQ(form.Plan().Marks()[2].place.first, 110) << "too small to be laid out";

        engine.AddXY4Tr({}, false);
        form.Plan().PicBoxDblClick();
        EXPECT_FALSE(form.PicBoxMouseUp(10, 10));
        EXPECT_EQ(platform.TakeTexts(), Texts{"Nearer!"});
    });
}

TEST_F(ResidualGraph, FollowsWhatHappenedInTheTable) {
    engine.AddXY4Tr(ShiftedPairs(3), false);
    frmTr form;
    form.bDoModal(engine, false, [&] {
        form.Plan().Resize(300, 300);
        form.chkInverz();
        form.opMode(frmTr::Mode::kGraph);
        for (const GraphMark& mark : form.Plan().Marks()) {
            EXPECT_GT(mark.place.first, 0);
            EXPECT_LT(mark.place.second, 300);
        }
    });
}

TEST_F(ResidualGraph, IsDrawnAsAnSvgDocument) {
    auto pairs = ShiftedPairs(4);
    pairs[0].sId = "<&>\x01";
    pairs[1].dYdest += 5;
    engine.AddXY4Tr(pairs, false);
    engine.gdErrLimit = 0.004;
    engine.DoCalcTr();
    DecimalSeparator(',');
    const std::string svg = SvgOf(PageOf(engine.Held(), engine.gdErrLimit, {}, 400, 300));
    for (const char* part : {"> &lt;&amp;&gt; </text>", ">HELMERT transformation</text>",
                             ">Calculated:4  Excluded:0  Error limit [m]:0,004</text>",
                             "class=\"red bold\"", "width=\"424.00\""}) {
        EXPECT_NE(svg.find(part), std::string::npos) << part << '\n' << svg;
    }
    EXPECT_EQ(svg.find("NaN"), std::string::npos);

    GraphPage page{.width = 100, .height = 100};
    page.marks = {
        {.place = {50, 60}, .colour = kBlue, .labels = {" P0002", " 1.2", "51.300 ", "3.4"}}};
    const std::string side = SvgOf(page);
    for (const char* part : {"<text x=\"47.00\" y=\"57.00\" text-anchor=\"end\"> P0002<",
                             "<text x=\"53.00\" y=\"57.00\">51.300 <", "x=\"47.00\" y=\"71.00\"",
                             "x=\"53.00\" y=\"71.00\""}) {
        EXPECT_NE(side.find(part), std::string::npos) << part << '\n' << side;
    }

    std::string id;  // so long that looking for each letter from the start would not end
    for (int i = 0; i < 1000000; ++i) id += "\uFFFE\uFFFF\uFFFD";
    pairs[0].sId = id;
    engine.AddXY4Tr(pairs, false);
    const std::string odd = SvgOf(PageOf(engine.Held(), engine.gdErrLimit, {}, 400, 300));
    EXPECT_EQ(odd.find("\uFFFE"), std::string::npos);
    EXPECT_EQ(std::ranges::count(odd, '\xBD'), 1000000);
}

}  // namespace
}  // namespace kv_tr::test
