// The plan as a widget: what users do in it is told, seen and saved.
#include "kv_tr/qt/plan_widget.h"

#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QImage>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <sstream>

#include "helpers/engine_test.h"
#include "helpers/files.h"
#include "helpers/plan_sample.h"
#include "kv_tr/forms/plan_marks.h"
#include "kv_tr/qt/plan_output.h"

namespace kv_tr::test {
namespace {

class PlanWidgetTest : public testing::Test {
protected:
    PlanWidgetTest() {
        widget.resize(700, 520);
        widget.SetWords(SampleWords());
        widget.SetData(SamplePlan(40));
        widget.show();
        QObject::connect(&widget, &PlanWidget::SelectionAsked,
                         [this](const std::vector<std::size_t>& pairs, bool isAdded) {
                             asked.emplace_back(pairs, isAdded);
                         });
        QObject::connect(&widget, &PlanWidget::ToggleAsked,
                         [this](std::size_t pair) { toggled.push_back(pair); });
        QObject::connect(&widget, &PlanWidget::PlaceHovered,
                         [this](Point place) { hovered = place; });
        QObject::connect(&widget, &PlanWidget::PlaceLeft, [this] { hovered.reset(); });
    }

    QPoint At(std::size_t pair) const {
        const auto [x, y] = widget.View().ToSurface(widget.Index().Pair(pair).place);
        return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
    }
    void DragBy(QPoint from, QPoint by, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        QTest::mousePress(&widget, button, keys, from);
        for (const QPoint to : {from + by / 2, from + by}) {
            QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, button,
                             keys);
            QApplication::sendEvent(&widget, &move);
        }
        QTest::mouseRelease(&widget, button, keys, from + by);
    }
    QImage Grab() { return widget.grab().toImage(); }

    PlanWidget widget;
    std::vector<std::pair<std::vector<std::size_t>, bool>> asked;
    std::vector<std::size_t> toggled;
    std::optional<Point> hovered;
};

using Asked = std::vector<std::pair<std::vector<std::size_t>, bool>>;

TEST_F(PlanWidgetTest, TellsWhatIsClickedAndChangesNothing) {
    const PlanView view = widget.View();
    QTest::mouseClick(&widget, Qt::LeftButton, {}, At(5) + QPoint(2, -3));
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::ControlModifier, At(7));
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {2, 2});
    EXPECT_EQ(asked, (Asked{{{5}, false}, {{7}, true}, {{}, false}}));
    asked.clear();
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, At(33));
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, At(33));
    EXPECT_EQ(toggled, std::vector<std::size_t>{33});
    for (const auto& [button, keys] : {std::pair{Qt::RightButton, Qt::KeyboardModifiers()},
                                       {Qt::LeftButton, Qt::ShiftModifier}}) {
        asked.clear();
        DragBy(At(9) - QPoint(40, 30), {80, 60}, button, keys);
        ASSERT_EQ(asked.size(), 1U);
        EXPECT_EQ(std::ranges::count(asked[0].first, 9U), 1);
        EXPECT_LT(asked[0].first.size(), 10U);
    }
    EXPECT_EQ(widget.View(), view);
    EXPECT_TRUE(widget.Selection().empty());
}

TEST_F(PlanWidgetTest, ZoomsAndMovesByMouse) {
    const PlanView all = widget.View();
    const QPoint mouse(500, 120);
    QWheelEvent wheel(mouse, widget.mapToGlobal(mouse), {}, {0, 240}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
    EXPECT_NEAR(widget.View().metresPerUnit, all.metresPerUnit / 1.25 / 1.25, 1e-9);
    const Point before = all.ToPlan({500, 120});
    EXPECT_NEAR(widget.View().ToPlan({500, 120}).first, before.first, 1e-6);
    DragBy({300, 200}, {60, -40}, Qt::LeftButton, {});
    EXPECT_NEAR(widget.View().ToPlan({560, 80}).second, before.second, 1e-6);
    EXPECT_TRUE(asked.empty());

    const Point place = widget.View().ToPlan({333, 222});
    QTest::mouseMove(&widget, {333, 222});
    ASSERT_TRUE(hovered);
    EXPECT_NEAR(hovered->first, place.first, 1e-6);
    QTest::mouseMove(&widget, {333, 515});
    EXPECT_FALSE(hovered) << "the legend has no places";

    // New data leave a view that was chosen, and fit one that shows everything.
    const PlanView chosen = widget.View();
    widget.SetData(SamplePlan(20));
    EXPECT_EQ(widget.View(), chosen);
    widget.Zoom(1e-9);
    EXPECT_LT(widget.View().metresPerUnit, 30 * all.metresPerUnit);
    widget.Zoom(1e30);
    EXPECT_GT(widget.View().metresPerUnit, 1e-9) << "coordinates have no such digits";
    widget.ShowAll();
    widget.SetData(SamplePlan(40));
    widget.resize(400, 300);
    for (std::size_t pair = 0; pair < 40; ++pair) {
        EXPECT_TRUE(widget.View().Frame().Contains(
            widget.View().ToSurface(widget.Index().Pair(pair).place)));
    }
}

TEST_F(PlanWidgetTest, IsUsedByKeyboardOnly) {
    const PlanView all = widget.View();
    EXPECT_TRUE(widget.focusPolicy() & Qt::TabFocus);
    QTest::keyClick(&widget, Qt::Key_PageDown);
    EXPECT_EQ(asked, (Asked{{{7}, false}})) << "the suspect pair";
    widget.SetSelection({7});
    QTest::keyClick(&widget, Qt::Key_Space);
    QTest::keyClick(&widget, Qt::Key_PageDown);
    EXPECT_EQ(asked.back().first, std::vector<std::size_t>{20}) << "the next worst";
    QTest::keyClick(&widget, Qt::Key_Escape);
    EXPECT_TRUE(asked.back().first.empty());
    widget.SetSelection({7, 8, 4000});
    EXPECT_EQ(widget.Selection(), (std::vector<std::size_t>{7, 8})) << "there is no other";
    QTest::keyClick(&widget, Qt::Key_Return);
    EXPECT_EQ(toggled, std::vector<std::size_t>{7}) << "two pairs are not toggled at once";

    QTest::keyClick(&widget, Qt::Key_Right);
    EXPECT_GT(widget.View().centre.first, all.centre.first);
    QTest::keyClick(&widget, Qt::Key_Up);
    EXPECT_GT(widget.View().centre.second, all.centre.second);
    QTest::keyClick(&widget, Qt::Key_Plus);
    EXPECT_LT(widget.View().metresPerUnit, all.metresPerUnit);
    for (int i = 0; i < 20; ++i) QTest::keyClick(&widget, Qt::Key_Plus);
    widget.ShowPair(12);
    EXPECT_TRUE(
        widget.View().Frame().Contains(widget.View().ToSurface(widget.Index().Pair(12).place)));
    QTest::keyClick(&widget, Qt::Key_0);
    EXPECT_EQ(widget.View(), all);
}

TEST_F(PlanWidgetTest, ShowsStandingSelectionAndTip) {
    for (const QColor base : {QColor(Qt::white), QColor(24, 24, 24)}) {
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        widget.setPalette(palette);
        const PlanPaper paper = base.lightness() > 128 ? PlanPaper::kLight : PlanPaper::kDark;
        const auto ink = [paper](PlanInk of) {
            const Colour colour = ColourOf(of, paper);
            return QColor(colour.red, colour.green, colour.blue);
        };
        widget.SetSelection({});
        EXPECT_EQ(Grab().pixelColor(At(7)), ink(PlanInk::kSuspect));
        EXPECT_EQ(Grab().pixelColor(At(20) + QPoint(0, 2)), ink(PlanInk::kOverLimit));
        EXPECT_EQ(Grab().pixelColor(1, 400), base);
        const QImage before = Grab();
        widget.SetSelection({7});
        const QImage after = Grab();
        EXPECT_NE(before.copy(QRect(At(7) - QPoint(12, 12), QSize(24, 24))),
                  after.copy(QRect(At(7) - QPoint(12, 12), QSize(24, 24))));
    }
    PlanData data = SamplePlan(40);
    data.pairs[7].id = "<b>7</b>";
    widget.SetData(data);
    QHelpEvent help(QEvent::ToolTip, At(7), widget.mapToGlobal(At(7)));
    QApplication::sendEvent(&widget, &help);
    EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;7")) << QToolTip::text().toStdString();
    EXPECT_TRUE(QToolTip::text().contains("suspect"));
}

using PlanOutput = EngineTest;

TEST_F(PlanWidgetTest, LaysAPictureBelowThePoints) {
    const TemporaryFolder folder;
    const std::string picture = folder.File("scan.png");
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::blue);
    image.setPixelColor(1, 0, Qt::red);
    ASSERT_TRUE(image.save(QString::fromStdString(picture)));
    EXPECT_FALSE(ReadBackground(picture)) << "nothing says where the picture lies";
    const double unit = widget.View().metresPerUnit;
    const Point middle = widget.View().ToPlan({200, 100});  // of the red pixel, 40 units wide
    const auto place = [&](double across) {
        std::ostringstream world;
        world.precision(17);
        world << across << "\n0\n0\n"
              << -40 * unit << '\n'
              << middle.first - across << '\n'
              << middle.second << '\n';
        WriteFile(folder.File("scan.pgw"), world.str());
    };
    place(0);
    EXPECT_FALSE(ReadBackground(picture)) << "all pixels would lie on a line";
    place(40 * unit);
    const auto background = ReadBackground(picture);
    ASSERT_TRUE(background);
    widget.SetBackground(background);
    const auto isRed = [this](int x, int y) {
        const QColor colour = Grab().pixelColor(x, y);
        return colour.red() > colour.blue();
    };
    EXPECT_TRUE(isRed(190, 92) && isRed(208, 106));
    EXPECT_FALSE(isRed(175, 95) || isRed(225, 105) || isRed(200, 130));
    widget.SetBackground({});
    EXPECT_EQ(Grab().pixelColor(190, 92), Grab().pixelColor(175, 95));
}

TEST_F(PlanWidgetTest, DrawsVectorsLongerAndShorter) {
    const double chosen = VectorScaleOf(widget.Index(), widget.View(), widget.Options()).bar;
    widget.ScaleVectors(true);
    EXPECT_LT(widget.Options().vectorBar, chosen);
    EXPECT_GE(widget.Options().vectorBar, chosen / 2.5);
    widget.ScaleVectors(false);
    EXPECT_EQ(widget.Options().vectorBar, chosen);
}

TEST_F(PlanOutput, WritesEachFormatOrTellsWhyNot) {
    const PlanIndex index(SamplePlan(3000));  // so many that the screen would stamp symbols
    const auto save = [&](const std::string& path) {
        return SavePlan(path, index, SampleWords(), {});
    };
    const std::pair<const char*, std::string> formats[] = {
        {"plan.svg", "<?xml"}, {"plan.PDF", "%PDF"}, {"plan.png", "\x89PNG"}};
    for (const auto& [fileName, magic] : formats) {
        const std::string path = folder.File(fileName);
        EXPECT_EQ(save(path), std::nullopt) << fileName;
        EXPECT_EQ(ReadFile(path).substr(0, magic.size()), magic) << fileName;
    }
    const QImage image(QString::fromStdString(folder.File("plan.png")));
    EXPECT_EQ(image.width(), 2245) << "A4 at 192 dots an inch";
    EXPECT_NE(ReadFile(folder.File("plan.PDF")).find("/MediaBox [0 0 842.000000 595"),
              std::string::npos);
    for (const std::string& path : {folder.File("plan.gif"), folder.File("none/plan.pdf")}) {
        const auto trouble = save(path);
        ASSERT_TRUE(trouble);
        EXPECT_NE(trouble->find(path), std::string::npos) << *trouble;
    }
}

}  // namespace
}  // namespace kv_tr::test
