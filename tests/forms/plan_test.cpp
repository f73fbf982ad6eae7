// The plan of control points: view, order, level of detail, marks, legend, layers, page.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <regex>
#include <set>
#include <utility>

#include "helpers/plan_sample.h"
#include "kv_tr/forms/plan_drawing.h"
#include "kv_tr/forms/plan_layers.h"
#include "kv_tr/forms/plan_legend.h"

namespace kv_tr::test {
namespace {

const double kNan = std::nan("");

void ExpectPlace(Point actual, Point expected, double tolerance) {
    EXPECT_NEAR(actual.first, expected.first, tolerance);
    EXPECT_NEAR(actual.second, expected.second, tolerance);
}

/// The items of one kind, inside and outside the frame.
template <class Kind>
std::vector<Kind> ItemsOf(const PlanPicture& picture) {
    std::vector<Kind> found;
    for (const auto* items : {&picture.inside, &picture.outside}) {
        for (const PlanItem& item : *items) {
            if (const auto* kind = std::get_if<Kind>(&item)) found.push_back(*kind);
        }
    }
    return found;
}

PlanLines LinesOf(const PlanPicture& picture, PlanInk ink) {
    const auto all = ItemsOf<PlanLines>(picture);
    const auto found = std::ranges::find(all, ink, &PlanLines::ink);
    return found == all.end() ? PlanLines{} : *found;
}

std::set<std::string> TextsOf(const PlanPicture& picture) {
    std::set<std::string> texts;
    for (const PlanText& text : ItemsOf<PlanText>(picture)) texts.insert(text.text);
    return texts;
}

PlanPicture Draw(const PlanIndex& index, const PlanOptions& options = {}, double zoom = 1) {
    const PlanView all = ViewOf(index.Extent(), 1000, 600);
    return DrawPlan(index, SampleWords(), options, all.Zoomed(zoom, {500, 300}));
}

TEST(PlanView, ShowsEverythingAndZoomsAboutAPlace) {
    constexpr double kGreat = 1e308;
    for (const PlanExtent extent : {PlanExtent{{650000, 250000}, {654000, 250900}},
                                    {{7, -5}, {7, 400}},
                                    {{3e12, 1e5}, {3e12, 1e5}},
                                    {{-kGreat, 0}, {kGreat, 1}}}) {
        const PlanView view = ViewOf(extent, 900, 500);
        for (const Point corner : {extent.least, extent.greatest}) {
            EXPECT_TRUE(view.Frame().Contains(view.ToSurface(corner)));
        }
    }
    const PlanView view = ViewOf(PlanExtent{{650000, 250000}, {654000, 250900}}, 900, 500);
    EXPECT_LT(view.ToSurface({0, 250900}).second, view.ToSurface({0, 250000}).second);
    const PlanView zoomed = view.Zoomed(3, {200, 410});
    ExpectPlace(zoomed.ToPlan({200, 410}), view.ToPlan({200, 410}), 1e-6);
    EXPECT_NEAR(zoomed.ToSurface(view.ToPlan({210, 400})).first, 230, 1e-6);
    ExpectPlace(view.Moved(30, -20).ToPlan({130, 80}), view.ToPlan({100, 100}), 1e-6);
}

TEST(PlanView, ClipsSegmentsToARectangle) {
    const PlanRect rect{10, 20, 110, 70};
    const auto clipped = Clipped({{-90, 45}, {210, 75}}, rect);
    ASSERT_TRUE(clipped);
    ExpectPlace(clipped->from, {10, 55}, 1e-12);
    ExpectPlace(clipped->to, {110, 65}, 1e-12);
    EXPECT_TRUE(Clipped({{50, -1e300}, {50, 1e300}}, rect));
    EXPECT_FALSE(Clipped({{0, 65}, {30, 95}}, rect));
    EXPECT_FALSE(Clipped({{50, 10}, {90, 15}}, rect));
    EXPECT_FALSE(Clipped({{kNan, 30}, {50, 30}}, rect));
}

TEST(PlanIndex, OrdersFromWorstToBestAndFindsPairs) {
    PlanData data;
    data.pairs = {{.place = {0, 0}, .residual = {0.01, 0}},
                  {.place = {100, 0}, .residual = {9, 0}, .isUsed = false},
                  {.place = {50, 80}, .residual = {0.3, 0.4}, .standing = PlanStanding::kSuspect},
                  {.place = {50, 80}, .residual = {0.0, 0.2}, .standing = PlanStanding::kOverLimit},
                  {.place = {20, 30}, .residual = {kNan, 0}, .standing = PlanStanding::kOverLimit},
                  {.place = {kNan, 30}, .residual = {0.02, 0}}};
    const PlanIndex index(data);
    std::vector<std::uint32_t> order;
    for (const auto& ranked : index.WorstFirst()) order.push_back(ranked.index);
    EXPECT_EQ(order, (std::vector<std::uint32_t>{2, 4, 3, 1, 0}));
    EXPECT_EQ(index.Count(PlanKind::kGood), 2U) << "one of them without a place";
    EXPECT_EQ(index.TypicalResidual(), 0.2) << "neither suspect nor excluded pairs count";
    EXPECT_EQ(index.Next({}, false), 2U);
    EXPECT_EQ(index.Next(4, false), 3U);
    EXPECT_EQ(index.Next(4, true), 2U);
    EXPECT_EQ(index.Next(0, false), std::nullopt);

    const PlanView view = ViewOf(index.Extent(), 500, 400);
    const Point both = view.ToSurface({50, 80});
    EXPECT_EQ(index.PairAt(view, {both.first + 3, both.second - 4}, 5), 2U) << "of two the worse";
    EXPECT_EQ(index.PairAt(view, {both.first + 3, both.second - 4}, 4.9), std::nullopt);
    EXPECT_EQ(index.PairsIn(view, {0, both.second - 1, both.first + 1, both.second + 1}),
              (std::vector<std::size_t>{2, 3}));

    PlanWords words = SampleWords();
    words.numbers.decimalSign = ',';
    data.right.isReversed = true;
    EXPECT_EQ(PlanTip(PlanIndex(data), words, 2), "\ndY -0,300  dX 0,400  0,500 m\nsuspect");
    EXPECT_EQ(PlanTip(index, words, 4), "\ndY \u2013  dX 0,000  \u2013 m\nover");
}

TEST(PlanIndex, KnowsHowFarAPairIsFromTheNext) {
    const auto spacing = [](double height) {
        PlanData data;
        data.pairs = {{.place = {0, 0}}, {.place = {40, height}}, {.place = {100, 0}}, {}};
        return PlanIndex(data).Spacing();
    };
    EXPECT_DOUBLE_EQ(spacing(36), 30) << "of 100 x 36 each of four has 900";
    EXPECT_DOUBLE_EQ(spacing(0), 25);
    EXPECT_EQ(PlanIndex(PlanData{}).Spacing(), 0);
}

TEST(PlanDetail, ThinsOutGoodPairsOnly) {
    const PlanIndex index(SamplePlan(50000));
    const PlanView view = ViewOf(index.Extent(), 1400, 860);
    const auto [shown, isThinned, important] =
        PairsToShow(index, view, std::vector<std::size_t>{0});
    EXPECT_TRUE(isThinned);
    EXPECT_LT(shown.size(), 8000U);
    std::set<std::uint32_t> isShown;
    std::set<std::tuple<PlanKind, long, long>> pixels;
    const auto pixel = [](double value) { return std::lround(value / 3); };
    for (const ShownPair& pair : shown) {
        isShown.insert(pair.index);
        for (const int dx : {-1, 0, 1}) {
            for (const int dy : {-1, 0, 1}) {
                pixels.insert({pair.kind, pixel(pair.at.first) + dx, pixel(pair.at.second) + dy});
            }
        }
    }
    EXPECT_EQ(isShown.size(), shown.size());
    EXPECT_TRUE(isShown.contains(0)) << "selected";
    for (const auto& [place, length, i, kind] : index.WorstFirst()) {
        const Point at = view.ToSurface(place);
        if (kind == PlanKind::kGood) continue;
        EXPECT_TRUE(pixels.contains({kind, pixel(at.first), pixel(at.second)})) << i;
    }
    // Of the good pairs around any one there is a shown one that is no better.
    for (std::uint32_t i = 1; i < 50000; i += 997) {
        if (KindOf(index.Pair(i)) != PlanKind::kGood) continue;
        const Point at = view.ToSurface(index.Pair(i).place);
        EXPECT_TRUE(std::ranges::any_of(shown, [&](const ShownPair& other) {
            return std::hypot(other.at.first - at.first, other.at.second - at.second) < 29 &&
                   other.length >= index.Pair(i).residual.Length();
        })) << i;
    }
    // Moving the plan makes no mark come or go.
    const PlanView moved = view.Moved(37.3, -21.7);
    for (const ShownPair& pair : PairsToShow(index, moved, {}).pairs) {
        const bool isSelected = pair.index == 0;
        const bool wasInView = view.Frame().Contains(view.ToSurface(index.Pair(pair.index).place));
        const bool isAtBorder = !PlanRect{40, 40, 1360, 820}.Contains(pair.at);
        if (isSelected || !wasInView || isAtBorder) continue;
        EXPECT_TRUE(isShown.contains(pair.index)) << pair.index;
    }
    const auto few = PairsToShow(PlanIndex(SamplePlan(2000)), view, {});
    EXPECT_EQ(few.pairs.size(), 2000U);
    EXPECT_FALSE(few.isThinned);
}

/// Names cover neither each other nor symbols, and the worst pairs have theirs.
TEST(PlanDrawing, WritesNamesWhereThereIsRoom) {
    for (const std::size_t count : {300, 6000}) {
        const PlanIndex index(SamplePlan(count));
        const PlanPicture picture = Draw(index);
        std::vector<PlanRect> boxes;
        std::size_t suspects = 0;
        for (const PlanText& text : ItemsOf<PlanText>(picture)) {
            if (text.text[0] != 'P') continue;
            suspects += text.isBold ? 1 : 0;
            const PlanRect box = BoxOf(text);
            const auto overlaps = [&box](const PlanRect& other) {
                return box.left < other.right && other.left < box.right && box.top < other.bottom &&
                       other.top < box.bottom;
            };
            EXPECT_TRUE(std::ranges::none_of(boxes, overlaps)) << text.text;
            EXPECT_TRUE(picture.frame.Contains({box.left, box.top}));
            boxes.push_back(box);
            for (const PlanSymbols& symbols : ItemsOf<PlanSymbols>(picture)) {
                EXPECT_TRUE(std::ranges::none_of(symbols.places, [&box](Point place) {
                    return box.Contains(place);
                })) << text.text;
            }
        }
        EXPECT_GT(boxes.size(), 30U);
        EXPECT_GE(suspects, count == 300 ? 6U : 20U);
    }
}

TEST(PlanDrawing, DrawsResidualsAtTheScaleOfTheBar) {
    PlanData data;
    data.pairs = {{.place = {0, 0}, .residual = {0.012, 0.02}},
                  {.place = {400, 300}, .residual = {kNan, 0.02}},
                  {.place = {100, 200}, .residual = {-3, 4}, .isUsed = false}};
    const PlanIndex index(data);
    const PlanView view = ViewOf(index.Extent(), 1000, 600);
    for (const double chosen : {0.0, 0.03}) {
        const PlanOptions options{.vectorBar = chosen};
        const double bar = VectorScaleOf(index, view, options).bar;
        EXPECT_EQ(bar, chosen > 0 ? 0.03 : 0.05) << "23 mm may be 44 units long, so 60 mean 32 mm";
        const PlanPicture picture = Draw(index, options);
        const auto [from, tip] = LinesOf(picture, PlanInk::kGood).segments.at(0);
        ExpectPlace(from, view.ToSurface({0, 0}), 1e-9);
        ExpectPlace(tip, {from.first + 0.012 / bar * 60, from.second - 0.02 / bar * 60}, 1e-9);
        EXPECT_EQ(LinesOf(picture, PlanInk::kGood).segments.size(), 3U) << "the other is no number";
        const auto cut = LinesOf(picture, PlanInk::kExcluded).segments;
        ASSERT_EQ(cut.size(), 5U) << "two heads";
        EXPECT_NEAR(
            std::hypot(cut[0].to.first - cut[0].from.first, cut[0].to.second - cut[0].from.second),
            110, 1e-9);
        EXPECT_TRUE(TextsOf(picture).contains("cut"));
        EXPECT_TRUE(TextsOf(picture).contains(chosen > 0 ? "residuals 20 mm" : "residuals 50 mm"));
    }
    for (PlanPair& pair : data.pairs) pair.residual = {1e-9, 0};
    EXPECT_EQ(VectorScaleOf(PlanIndex(data), view, {}).bar, 0) << "rounding is not shown";
}

TEST(PlanDrawing, DrawsEllipsesByTheirBearing) {
    PlanData data;
    data.pairs = {{.place = {10, 20}, .residual = {0.01, 0.02}}};
    data.ellipses = {{0.04, 0.01, 0.5}};
    const PlanPicture picture = Draw(PlanIndex(data), {.showsEllipses = true, .vectorBar = 0.06});
    const auto sides = LinesOf(picture, PlanInk::kEllipse).segments;
    ASSERT_FALSE(sides.empty());
    for (const auto& [from, to] : sides) {
        const double x = from.first - 500;
        const double y = 300 - from.second;
        const double along = (x * std::sin(0.5) + y * std::cos(0.5)) / 40;
        const double across = (x * std::cos(0.5) - y * std::sin(0.5)) / 10;
        EXPECT_NEAR(along * along + across * across, 1, 1e-9);
    }
}

TEST(PlanLegend, TellsScaleAndHonestCounts) {
    const PlanIndex index(SamplePlan(50000));
    const PlanWords words = SampleWords();
    const double height = LegendHeight(index, words, {}, 700);
    for (const double zoom : {0.3, 1.0, 7.0}) {
        const PlanView view = ViewOf(index.Extent(), 700, 500).Zoomed(zoom, {300, 300});
        const PlanPicture picture = DrawPlan(index, words, {}, view);
        EXPECT_EQ(picture.height, 500 + height);
        std::size_t symbols = 0;
        for (const PlanItem& item : picture.inside) {
            const auto* some = std::get_if<PlanSymbols>(&item);
            if (some != nullptr) symbols += some->places.size();
        }
        EXPECT_EQ(picture.shown, symbols);
        const auto texts = TextsOf(picture);
        EXPECT_TRUE(texts.contains("shown " + std::to_string(symbols) + " / 50000"));
        EXPECT_TRUE(texts.contains("good 47000"));
        EXPECT_TRUE(texts.contains("over (0.05 m) 1000"));
        const auto& bar = std::get<PlanLines>(picture.outside.front()).segments.front();
        const double metres = (bar.to.first - bar.from.first) * view.metresPerUnit;
        EXPECT_TRUE(texts.contains(RoundLengthText(metres + 1e-9, {}))) << metres;
    }
    EXPECT_EQ(RoundLengthText(0.0005, {','}), "0,5 mm");
    EXPECT_EQ(RoundLengthText(20000, {}), "20 km");
}

/// The part of a surface that an item covers.
PlanRect BoxOf(const PlanItem& item) {
    if (const auto* text = std::get_if<PlanText>(&item)) return BoxOf(*text);
    std::vector<Point> points;
    double reach = 0;
    if (const auto* lines = std::get_if<PlanLines>(&item)) {
        for (const auto& [from, to] : lines->segments) points.insert(points.end(), {from, to});
    } else {
        const auto& symbols = std::get<PlanSymbols>(item);
        points = symbols.places;
        reach = symbols.size;
    }
    const auto [left, right] = std::ranges::minmax_element(points, {}, &Point::first);
    const auto [top, bottom] = std::ranges::minmax_element(points, {}, &Point::second);
    return {left->first - reach, top->second - reach, right->first + reach, bottom->second + reach};
}

TEST(PlanLegend, SetsSignsAndTextsSideBySideInItsStrip) {
    const PlanIndex index(SamplePlan(500));
    const PlanOptions options{.showsEllipses = true};
    const LegendFigures figures{.vectors = {0.05}, .isAnyCut = true, .shown = 500};
    std::vector<PlanItem> items;
    AddLegend(items, index, SampleWords(), options, figures, {30, 700}, 380);
    ASSERT_GT(items.size(), 10U);
    const double bottom = 700 + LegendHeight(index, SampleWords(), options, 380);
    PlanRect before{30, 700, 30, 700};
    bool isSign = false;
    for (const PlanItem& item : items) {
        const PlanRect box = BoxOf(item);
        EXPECT_GE(box.left, 30);
        EXPECT_LE(box.right, 30 + 380);
        EXPECT_LE(box.bottom, bottom);
        const bool isBeside = box.left >= before.right;
        EXPECT_TRUE(isBeside || box.top >= before.bottom) << "the row below";
        const bool hasSign = std::exchange(isSign, !std::holds_alternative<PlanText>(item));
        if (hasSign) {
            EXPECT_LT(std::abs(box.top + box.bottom - before.top - before.bottom), 11)
                << "in one row with its sign";
        }
        before = box;
    }
}

TEST(PlanLayers, KeepsTheRoomOfTheAxesFree) {
    const PlanView view = ViewOf(PlanExtent{{0, 0}, {100, 60}}, 1000, 600);
    PlanData data = SamplePlan(9);
    for (const int kind : {0, 1, 2}) {
        data.hasNorthArrow = kind == 2;
        data.right.isReversed = data.up.isReversed = kind == 1;
        std::vector<PlanItem> items;
        PlanRoom room(view.Frame());
        AddAxes(items, room, view, data, SampleWords());
        ASSERT_EQ(items.size(), kind == 2 ? 2U : 3U);
        for (const PlanItem& item : items) {
            const PlanRect box = BoxOf(item);
            EXPECT_TRUE(view.Frame().Contains({box.left, box.top}));
            EXPECT_TRUE(view.Frame().Contains({box.right, box.bottom}));
            EXPECT_TRUE(room.IsTaken({box.left, box.top, box.left + 1, box.top + 1}));
            EXPECT_TRUE(room.IsTaken({box.right - 1, box.bottom - 1, box.right, box.bottom}));
        }
        const auto& arrows = std::get<PlanLines>(items.back()).segments;
        const double sign = kind == 1 ? -1 : 1;
        const auto [from, tip] = arrows[kind == 2 ? 0 : 3];
        ExpectPlace(tip, {from.first, from.second - sign * 28}, 1e-9);
        if (kind == 2) continue;
        ExpectPlace(arrows[0].from, from, 0);
        ExpectPlace(arrows[0].to, {from.first + sign * 28, from.second}, 1e-9);
    }
}

TEST(PlanLayers, NamesCoordinatesAsTheAxesRun) {
    PlanData data = SamplePlan(9);
    for (PlanPair& pair : data.pairs) {
        pair.place = {-pair.place.first, -pair.place.second};
    }
    data.right.isReversed = data.up.isReversed = true;
    const PlanIndex index(data);
    const PlanPicture picture = Draw(index, {.showsGrid = true});
    const PlanView view = ViewOf(index.Extent(), 1000, 600);
    std::size_t lines = 0;
    for (const PlanText& text : ItemsOf<PlanText>(picture)) {
        if (text.ink != PlanInk::kCoordinate) continue;
        const double value = std::stod(text.text);
        const bool isRight = value > 500000;
        const Point at = view.ToSurface({-value, -value});
        EXPECT_NEAR(isRight ? at.first : at.second,
                    isRight ? text.base.first - 3 : text.base.second + 3, 1e-6);
        ++lines;
    }
    EXPECT_GT(lines, 8U);
    EXPECT_TRUE(TextsOf(picture).contains("X"));
    data.hasNorthArrow = true;
    EXPECT_FALSE(TextsOf(Draw(PlanIndex(data))).contains("X"));
}

TEST(PlanLayers, DrawsIsolinesWhereTheQuantityIsTheLevel) {
    const PlanExtent box{{100, 200}, {500, 400}};
    const auto plane = [](Point at) { return 0.07 * at.first - 0.11 * at.second; };
    const PlanIsolines isolines = IsolinesOf(box, plane);
    EXPECT_EQ(isolines.step, 10) << "50 in about eight steps";
    EXPECT_EQ(isolines.levels.size(), 5U);
    for (const auto& level : isolines.levels) {
        double length = 0;
        for (const auto& [from, to] : level.segments) {
            EXPECT_NEAR(plane(from), level.value, 1e-9);
            EXPECT_NEAR(plane(to), level.value, 1e-9);
            length += std::hypot(to.first - from.first, to.second - from.second);
        }
        EXPECT_GT(length, 50) << level.value;
    }
    // At a saddle the lines of a level do not cross.
    const auto saddle = [](Point at) { return (at.first - 301) * (at.second - 299); };
    for (const auto& level : IsolinesOf(box, saddle).levels) {
        for (const auto& [from, to] : level.segments) {
            EXPECT_NEAR(saddle({(from.first + to.first) / 2, (from.second + to.second) / 2}),
                        level.value, 20);
        }
    }
    EXPECT_EQ(IsolinesOf(box, [](Point) { return -7.5; }).constant, -7.5);
    EXPECT_TRUE(IsolinesOf(box, [](Point) { return kNan; }).IsEmpty());
    const auto half = [](Point at) { return at.first < 300 ? kNan : at.first; };
    for (const auto& level : IsolinesOf(box, half).levels) EXPECT_GE(level.value, 300);
}

TEST(PlanPage, FillsThePaperAndWritesEqualBytes) {
    PlanData data = SamplePlan(40);
    data.pairs[3].id = "<&\x01>";
    const PlanPicture lying = DrawPlanPage(PlanIndex(data), SampleWords(), {});
    for (PlanPair& pair : data.pairs) std::swap(pair.place.first, pair.place.second);
    const PlanPicture upright = DrawPlanPage(PlanIndex(data), SampleWords(), {});
    EXPECT_GT(lying.width, lying.height);
    EXPECT_NEAR(lying.height, upright.width, 1e-9);
    EXPECT_GT(lying.frame.Height(), 0.85 * lying.height);
    const auto symbols = ItemsOf<PlanSymbols>(lying);
    std::size_t inFrame = 0;
    for (const PlanSymbols& some : symbols) {
        inFrame += static_cast<std::size_t>(
            std::ranges::count_if(some.places, [&](Point at) { return lying.frame.Contains(at); }));
    }
    EXPECT_EQ(inFrame, 40U);

    const std::string svg = SvgOf(lying, kPageMargin);
    EXPECT_EQ(svg, SvgOf(lying, kPageMargin));
    EXPECT_NE(svg.find(">Residuals &lt;1 &amp; 2&gt;<"), std::string::npos);
    EXPECT_NE(svg.find(">&lt;&amp;_&gt;<"), std::string::npos);
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    const std::regex disc("<circle [^>]*r=\"2.50\"/>");
    const std::sregex_iterator first(svg.begin(), svg.end(), disc);
    EXPECT_EQ(std::distance(first, {}), 37 + 1) << "good pairs, and one in the legend";
    const double width = kPageMargin * 2 + lying.width;
    EXPECT_NEAR(width, 297 / 25.4 * 96, 1e-9);
}

TEST(PlanDrawing, SurvivesWhatIsNoPlan) {
    const double kGreat = std::numeric_limits<double>::max();
    PlanData none;
    PlanData hostile = SamplePlan(60);
    hostile.pairs[0].place = {kGreat, -kGreat};
    hostile.pairs[1].place = {-kGreat, kNan};
    hostile.pairs[2].residual = {kGreat, kGreat};
    hostile.scalePpm = [](Point at) { return at.first; };
    hostile.ellipses = {{kGreat, 1, 0}, {kNan, kNan, kNan}};
    PlanData point = SamplePlan(1);
    point.pairs.resize(12, point.pairs[0]);
    const PlanOptions all{.showsGrid = true, .showsEllipses = true, .showsDistortion = true};
    for (const auto& [data, shown] : {std::pair{none, 0U}, {hostile, 5U}, {point, 1U}}) {
        EXPECT_EQ(Draw(PlanIndex(data), all).shown, shown) << "one of each kind at a place";
        const PlanPicture picture = Draw(PlanIndex(data), all, 1e20);
        for (const PlanLines& lines : ItemsOf<PlanLines>(picture)) {
            for (const auto& [from, to] : lines.segments) {
                EXPECT_TRUE(std::isfinite(from.first + from.second + to.first + to.second));
            }
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
