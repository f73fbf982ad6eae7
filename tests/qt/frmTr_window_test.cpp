// The wiring of the adjustment dialog's window: what users do reaches the form and is seen again.
#include "kv_tr/qt/frmTr_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTableView>
#include <QTest>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/qt/graph_area.h"

namespace kv_tr::test {
namespace {

class FrmTrWindow : public EngineTest {
protected:
    using Window = std::function<void(frmTrWindow&)>;

    void Open(const Window& script, bool showApplyButton = true) {
        auto pairs = ShiftedPairs(12);
        pairs[3].dXdest += 1;
        engine.AddXY4Tr(pairs, false);
        frmTr form;
        confirmed = form.bDoModal(engine, showApplyButton, [&] {
            frmTrWindow window(form);
            window.show();
            window.activateWindow();
            QApplication::processEvents();
            script(window);
        });
    }

    template <class Widget>
    static Widget& Find(const QWidget& window, const char* name) {
        auto* found = window.findChild<Widget*>(name);
        if (found == nullptr) throw std::invalid_argument(name);
        return *found;
    }
    static void Click(const QWidget& window, const char* name) {
        Find<QAbstractButton>(window, name).click();
        QApplication::processEvents();
    }
    static std::string TextOf(const QWidget& window, const char* label) {
        return Find<QLabel>(window, label).text().toStdString();
    }

    /// The box that has the focus.
    static QLineEdit& Editor() { return dynamic_cast<QLineEdit&>(*QApplication::focusWidget()); }

    /// The middle of a cell, rows and columns counted from 0.
    static QPoint CellAt(const QTableView& grid, int row, int column) {
        return grid.visualRect(grid.model()->index(row, column)).center();
    }

    bool confirmed = false;
};

TEST_F(FrmTrWindow, GivesEveryControlItsCaptionAndEveryButtonALetter) {
    Open([&](frmTrWindow& window) {
        for (const int language : {kHungarian, kRomanian, kVietnamese, kEnglish, kSerbian}) {
            platform.texts->SwitchLanguage(language, "");
            int without = language == kVietnamese ? -1 : 0;  // which has few plain letters
            std::set<QChar> letters;
            for (const auto* button : window.findChildren<QAbstractButton*>()) {
                if (button->text().isEmpty()) continue;  // the table's corner
                const auto mark = button->text().indexOf('&');
                const QChar letter = button->text().toLower()[mark + 1];
                without += mark < 0;
                EXPECT_TRUE(mark < 0 || letters.insert(letter).second) << int(letter.unicode());
            }
            EXPECT_EQ(without, 0) << language;
            for (const auto& [control, id] : {std::pair{"opMode(2)", 33}, {"cmdApplyResult", 27}}) {
                EXPECT_EQ(Find<QAbstractButton>(window, control).text().remove('&').toStdString(),
                          GetMlString(id, {}));
            }
            EXPECT_EQ(Find<QGroupBox>(window, "frmRes").title().toStdString(), GetMlString(60, {}));
            EXPECT_EQ(window.windowTitle().toStdString(), GetMlString(31, {}));
            EXPECT_EQ(TextOf(window, "lblCnt"), GetMlString(67, {}) + "12");
            const auto* model = Find<QTableView>(window, "Grid1").model();
            EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString().toStdString(),
                      GetMlString(98, {}));
        }
    });
}

TEST_F(FrmTrWindow, ForwardsTheButtons) {
    Open([&](frmTrWindow& window) {
        Click(window, "RadioTrType(1)");
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
        Click(window, "RadioTrType(5)");
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
        EXPECT_TRUE(Find<QAbstractButton>(window, "RadioTrType(1)").isChecked()) << "refused";
        const double shift = engine.udtTrPrm().dA0;
        Click(window, "chkInverz");
        EXPECT_LT(engine.udtTrPrm().dA0 * shift, 0);
        EXPECT_FALSE(Find<QWidget>(window, "cmdPrint").isVisible());
        Click(window, "opMode(2)");
        EXPECT_TRUE(Find<QWidget>(window, "cmdPrint").isVisible());
        EXPECT_TRUE(Find<QWidget>(window, "PicBox").isVisible());
        EXPECT_FALSE(Find<QWidget>(window, "Grid1").isVisible());
        for (const char* button : {"chkNr", "chkDx", "chkDy", "chkRad", "cmdSaveLog", "cmdSavePrm",
                                   "cmdSavePicture", "cmsResetExt", "cmdRemoveExt"}) {
            Click(window, button);
        }
        EXPECT_EQ(platform.requests.size(), 3u);
        const std::map<std::string, std::string> begins = {{"svg", "<?xml"}, {"png", "\x89PNG"}};
        for (const auto& [extension, begin] : begins) {
            platform.choices = {FileChoice{folder.File("picture." + extension)}};
            Click(window, "cmdSavePicture");
            EXPECT_TRUE(ReadFile(folder.File("picture." + extension)).starts_with(begin));
        }
        platform.TakeTexts();
        platform.choices = {FileChoice{folder.File("picture.jpg")}};
        Click(window, "cmdSavePicture");
        EXPECT_EQ(platform.TakeTexts().size(), 1U);
        EXPECT_EQ(ReadFile(folder.File("picture.jpg")), "");
        Click(window, "cmdApplyResult");
        EXPECT_FALSE(window.isVisible());
    });
    EXPECT_TRUE(confirmed);
}

TEST_F(FrmTrWindow, TogglesPairsByMouseAndKeyboard) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        const auto excluded = [&] { return TextOf(window, "lblExtCnt"); };
        const auto at = [&](int row) { return CellAt(grid, row, 4); };
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, at(3));
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at(3));
        EXPECT_TRUE(engine.Pairs()[3].bNotUsed);
        EXPECT_FALSE(grid.selectionModel()->hasSelection());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at(8));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, at(6));
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, at(7));
        EXPECT_EQ(excluded(), "Excluded:4");
        QTest::keyClick(&grid, Qt::Key_Space);
        EXPECT_EQ(excluded(), "Excluded:1");
        QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 4) << "headings and three rows";

        Click(window, "opMode(2)");
        auto& picture = Find<QWidget>(window, "PicBox");
        QTest::mouseClick(&picture, Qt::LeftButton, {}, {1, 1});
        EXPECT_EQ(excluded(), "Excluded:1");
        QTest::mouseDClick(&picture, Qt::LeftButton, {}, {1, 1});
        QTest::mouseRelease(&picture, Qt::LeftButton, {}, {1, 1});
        EXPECT_EQ(excluded(), "Excluded:2");
    });
}

TEST_F(FrmTrWindow, PaintsTheTextsOfACrossApart) {
    GraphPage page{.width = 200, .height = 100};
    page.marks = {
        {.place = {100, 50}, .colour = kRed, .labels = {" HHHH", " HHHH", "HHHH ", "HHHH"}}};
    QImage image(200, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintPage(painter, page);
    painter.end();
    const auto ink = [&image](int left, int right, int top, int bottom) {
        int count = 0;
        for (int x = left; x <= right; ++x) {
            for (int y = top; y <= bottom; ++y) count += image.pixelColor(x, y) != Qt::white;
        }
        return count;
    };
    EXPECT_GT(ink(75, 95, 35, 44), 0) << "no text at all";
    for (const auto& [top, bottom] : {std::pair{30, 44}, {56, 70}}) {
        EXPECT_EQ(ink(97, 102, top, bottom), 0) << "the texts touch";
    }
}

TEST_F(FrmTrWindow, TakesWhatIsTypedInACellBeforeAnythingElse) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        const auto type = [&](int row, const char* text) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, row, 2));
            Editor().setText(text);
        };
        window.setFocus();
        Click(window, "opMode(1)");
        EXPECT_TRUE(grid.hasFocus()) << "who wants to edit moves and types";
        engine.ExcludeByIx(0, true);
        type(11, "6");
        Click(window, "cmdRemoveExt");  // as its letter does, the focus staying in the editor
        EXPECT_EQ(engine.lFullCnt(), 11);
        EXPECT_EQ(engine.Pairs().back().dXsour, 6);
        QTest::keyClick(&grid, Qt::Key_F2);
        EXPECT_EQ(Editor().text(), "6.000") << "the current row exists";
        QTest::keyClick(&Editor(), Qt::Key_Escape);
        EXPECT_TRUE(window.isVisible()) << "Esc belongs to the editor";
        QTest::keyClick(&grid, Qt::Key_Escape);
        EXPECT_TRUE(window.isVisible());
        type(3, "7");
        Find<QWidget>(window, "txtLimit").setFocus();
        EXPECT_EQ(engine.Pairs()[3].dXsour, 7);
        type(4, "8");
        Click(window, "opMode(2)");
        EXPECT_EQ(engine.Pairs()[4].dXsour, 8);
        Click(window, "opMode(1)");
        type(5, "9");
        Click(window, "cmdExit");
        EXPECT_EQ(engine.Pairs()[5].dXsour, 9);
    });
}

TEST_F(FrmTrWindow, IsDrawnOnceAClick) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        int drawn = 0;  // every time the headings are told that they may have changed
        QObject::connect(grid.model(), &QAbstractItemModel::headerDataChanged, [&] { ++drawn; });
        const auto expectOne = [&](const char* what) {
            EXPECT_EQ(std::exchange(drawn, 0), 1) << what;
        };
        for (const char* button :
             {"RadioTrType(1)", "RadioTrType(5)", "chkInverz", "opMode(2)", "chkNr", "chkRad",
              "cmsResetExt", "opMode(1)", "opMode(0)", "cmdRemoveExt"}) {
            platform.whileShown = [&] { drawn = 0; };  // a refusal is drawn before it is told, too
            Click(window, button);
            expectOne(button);
        }
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, 2, 2));
        expectOne("click");
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, 2, 2));
        expectOne("double click");
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, 2, 2));
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, CellAt(grid, 4, 2));
        EXPECT_LE(std::exchange(drawn, 0), 2) << "the button goes down, and up";
        auto& limit = Find<QLineEdit>(window, "txtLimit");
        limit.setFocus();
        limit.selectAll();
        QTest::keyClicks(&limit, "0.7");
        EXPECT_EQ(drawn, 0);
        Click(window, "chkInverz");
        expectOne("limit and inverse");
        platform.texts->SwitchLanguage(kSerbian, "");
        expectOne("language");
    });
}

TEST_F(FrmTrWindow, KeepsAWrongLimitUntilItIsRight) {
    Open([&](frmTrWindow& window) {
        auto& limit = Find<QLineEdit>(window, "txtLimit");
        limit.setFocus();
        limit.selectAll();
        QTest::keyClicks(&limit, "x");
        Find<QWidget>(window, "Grid1").setFocus();
        QApplication::processEvents();
        EXPECT_EQ(platform.TakeTexts(), Texts{"x"});
        EXPECT_TRUE(limit.hasFocus());
        Click(window, "cmdApplyResult");
        EXPECT_EQ(platform.TakeTexts(), Texts{"x"});
        EXPECT_TRUE(window.isVisible()) << "the entry comes first";
        limit.selectAll();
        QTest::keyClicks(&limit, "0.5");
        Click(window, "cmdApplyResult");
        EXPECT_EQ(engine.gdErrLimit, 0.5);
        EXPECT_FALSE(window.isVisible());
    });
}

TEST_F(FrmTrWindow, ComesBackInItsSize) {
    Open([](frmTrWindow& window) {
        window.resize(780, 700);
        window.close();
    });
    EXPECT_FALSE(confirmed);
    Open([](frmTrWindow& window) { EXPECT_EQ(window.size(), QSize(780, 700)); });
}

}  // namespace
}  // namespace kv_tr::test
