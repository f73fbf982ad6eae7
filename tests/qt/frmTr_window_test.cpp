// The wiring of the adjustment dialog's window: what users do reaches the form and is seen again.
#include "kv_tr/qt/frmTr_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QToolTip>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"

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

    /// The middle of a cell, rows counted from 0.
    static QPoint CellAt(const QTableView& grid, int row, int column = 2) {
        return grid.visualRect(grid.model()->index(row, column)).center();
    }
    /// The box that has the focus, if one has.
    static QLineEdit* Editor() { return dynamic_cast<QLineEdit*>(QApplication::focusWidget()); }

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
                without += mark < 0 || !letters.insert(button->text().toLower()[mark + 1]).second;
            }
            EXPECT_EQ(without, 0) << language;
            auto& grid = Find<QTableView>(window, "Grid1");
            for (const auto& [shown, id] :
                 {std::pair{Find<QAbstractButton>(window, "opMode(2)").text().remove('&'), 33},
                  {Find<QLabel>(window, "lblCnt").text().remove("12"), 67},
                  {grid.model()->headerData(0, Qt::Horizontal).toString(), 98},
                  {grid.toolTip(), 87}}) {
                EXPECT_EQ(shown.toStdString(), GetMlString(id, {}));
            }
        }
    });
}

TEST_F(FrmTrWindow, ForwardsTheButtons) {
    Open([&](frmTrWindow& window) {
        EXPECT_FALSE(Find<QWidget>(window, "cmdPrint").isVisible());
        Click(window, "opMode(2)");
        EXPECT_FALSE(Find<QWidget>(window, "Grid1").isVisible());
        for (const char* button : {"cmdSaveLog", "cmdSavePrm", "cmdReport"}) Click(window, button);
        QTest::keyClick(&window, Qt::Key_F9);
        EXPECT_EQ(platform.requests.size(), 4u);
        for (const auto& [file, begin] :
             {std::pair{"a.svg", "<?xml"}, {"a.png", "\x89PNG"}, {"no/a.svg", ""}}) {
            platform.choices = {FileChoice{folder.File(file)}};
            Click(window, "cmdSavePicture");
            EXPECT_TRUE(ReadFile(folder.File(file)).starts_with(begin));
        }
        EXPECT_EQ(platform.TakeTexts().size(), 1U) << "an error is a message";
        Click(window, "cmdApplyResult");
        EXPECT_FALSE(window.isVisible());
    });
    EXPECT_TRUE(confirmed);
}

TEST_F(FrmTrWindow, TogglesPairsByMouseAndKeyboard) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        const auto at = [&](int row) { return CellAt(grid, row, 4); };
        QHelpEvent pause(QEvent::ToolTip, at(3), grid.viewport()->mapToGlobal(at(3)));
        QApplication::sendEvent(grid.viewport(), &pause);
        EXPECT_EQ(QToolTip::text(), grid.toolTip());
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, at(3));
        EXPECT_TRUE(engine.Pairs()[3].bNotUsed);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at(8));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, at(6));
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, at(7));
        EXPECT_EQ(engine.lNotUsedCnt(), 4);
        QTest::keyClick(&grid, Qt::Key_Space);
        EXPECT_EQ(engine.lNotUsedCnt(), 1);
        QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 4) << "headings and three rows";

        Click(window, "opMode(2)");
        auto& picture = Find<QWidget>(window, "PicBox");
        const auto pair = engine.Pairs()[5];
        const PlanePoint place = ScaleFor(engine.Held(), picture.width(), picture.height())
                                     .ToSurface({pair.dXdest, pair.dYdest});
        const QPoint cross(int(place.first), int(place.second));
        QTest::mouseDClick(&picture, Qt::LeftButton, {}, cross);
        QTest::mouseRelease(&picture, Qt::LeftButton, {}, cross);
        EXPECT_TRUE(engine.Pairs()[5].bNotUsed);
    });
}

TEST_F(FrmTrWindow, EditsByTheKeyboard) {
    using enum Qt::Key;
    const struct {
        std::vector<Qt::Key> keys;
        double value;  // of the second pair's first coordinate
        int row;
        bool open;
    } steps[] = {
        {{Key_5, Key_6}, 1630, 1, true},  // behind the first character
        {{Key_Return}, 56, 1, false},
        {{Key_F2}, 56, 1, true},
        {{Key_Backspace, Key_1, Key_Return}, 56.001, 1, false},
        {{Key_9, Key_Escape}, 56.001, 1, false},
        {{Key_8, Key_Up}, 8, 0, false},
        {{Key_Down}, 8, 1, false},
        {{Key_X, Key_Return}, 8, 1, false},
        {{Key_7, Key_Down}, 7, 2, false},
        {{Key_Up}, 7, 1, false},
    };
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        Find<QWidget>(window, "txtLimit").setFocus();
        Click(window, "opMode(1)");
        EXPECT_TRUE(grid.hasFocus()) << "who wants to edit moves and types";
        grid.setCurrentIndex(grid.model()->index(1, 2));
        for (const auto& [keys, value, row, open] : steps) {
            SCOPED_TRACE(value);
            for (const Qt::Key key : keys) {
                QTest::keyClick(QApplication::focusWidget(), key);
                QApplication::processEvents();
            }
            EXPECT_EQ(engine.Pairs()[1].dXsour, value);
            EXPECT_EQ(grid.currentIndex(), grid.model()->index(row, 2));
            EXPECT_EQ(Editor() != nullptr, open);
        }
        QTest::keyClick(&grid, Key_Escape);
        EXPECT_TRUE(window.isVisible()) << "Esc belongs to the editor";
    });
}

TEST_F(FrmTrWindow, TakesWhatIsTypedInACellBeforeAnythingElse) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        const auto type = [&](int row, const char* text) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, row));
            EXPECT_TRUE(Editor()->geometry().contains(CellAt(grid, row)));
            EXPECT_FALSE(Editor()->hasSelectedText());
            Editor()->setText(text);
        };
        const auto expectTaken = [&](std::size_t row, double value) {
            EXPECT_EQ(engine.Pairs()[row].dXsour, value);
            EXPECT_TRUE(Editor() == nullptr || Editor()->objectName() == "txtLimit");
        };
        Click(window, "opMode(1)");
        type(2, "3");
        type(3, "5");  // a click elsewhere
        EXPECT_EQ(engine.Pairs()[2].dXsour, 3);
        platform.texts->SwitchLanguage(kSerbian, {});
        EXPECT_EQ(Editor()->text(), "5") << "drawing does not disturb who types";
        grid.setCurrentIndex(grid.model()->index(4, 7));
        expectTaken(3, 5);
        type(3, "7");
        Find<QWidget>(window, "txtLimit").setFocus();
        expectTaken(3, 7);
        engine.ExcludeByIx(0, true);
        type(11, "6");
        Click(window, "cmdRemoveExt");  // as its letter does, the focus staying in the editor
        EXPECT_EQ(engine.lFullCnt(), 11);
        expectTaken(10, 6);
        type(4, "8");
        Click(window, "cmdExit");
        EXPECT_EQ(engine.Pairs()[4].dXsour, 8);
    });
}

TEST_F(FrmTrWindow, IsDrawnOnceAClick) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        int drawn = 0;  // every time the headings are told that they may have changed
        QObject::connect(grid.model(), &QAbstractItemModel::headerDataChanged, [&] { ++drawn; });
        platform.whileShown = [&] { EXPECT_EQ(std::exchange(drawn, 0), 1) << "before a refusal"; };
        auto& limit = Find<QLineEdit>(window, "txtLimit");
        limit.setText("0.70");
        limit.setModified(true);  // the first action takes the limit, too
        for (const char* button : {"RadioTrType(1)", "RadioTrType(5)", "chkInverz", "opMode(2)",
                                   "chkNr", "opMode(1)", "opMode(0)", "cmdRemoveExt"}) {
            Click(window, button);
            EXPECT_EQ(std::exchange(drawn, 0), 1) << button;
        }
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, CellAt(grid, 2));
        EXPECT_EQ(drawn, 1);
        EXPECT_EQ(engine.gdErrLimit, 0.7);
    });
}

TEST_F(FrmTrWindow, KeepsAWrongLimitUntilItIsRightAndComesBackInItsSize) {
    Open([&](frmTrWindow& window) {
        auto& limit = Find<QLineEdit>(window, "txtLimit");
        limit.setFocus();
        limit.selectAll();
        QTest::keyClicks(&limit, "x");
        Find<QWidget>(window, "Grid1").setFocus();
        QApplication::processEvents();
        EXPECT_TRUE(limit.hasFocus());
        Click(window, "RadioTrType(1)");
        EXPECT_EQ(platform.TakeTexts(), (Texts{"x", "x"}));
        EXPECT_TRUE(Find<QAbstractButton>(window, "RadioTrType(0)").isChecked()) << "entry first";
        limit.selectAll();
        QTest::keyClicks(&limit, "0.5");
        window.resize(780, 700);
        Click(window, "cmdExit");
    });
    EXPECT_EQ(engine.gdErrLimit, 0.5);
    Open([](frmTrWindow& window) { EXPECT_EQ(window.size(), QSize(780, 700)); });
}

TEST_F(FrmTrWindow, TellsWhatTheFitIsWorthAndTakesTheOfferByItsLetter) {
    Open([&](frmTrWindow& window) {
        auto& offer = Find<QAbstractButton>(window, "cmdOffer");
        auto& strip = Find<QLabel>(window, "lblWarning");
        EXPECT_TRUE(offer.isVisible());
        EXPECT_TRUE(strip.text().startsWith("Warning: Point 4 ")) << strip.text().toStdString();
        const QChar letter = offer.text()[offer.text().indexOf('&') + 1];
        QTest::keyClick(&window, letter.toLatin1(), Qt::AltModifier);
        QApplication::processEvents();
        QTest::qWait(150);  // a button pressed by its letter is released a while later
        EXPECT_TRUE(engine.Pairs()[3].bNotUsed);
        EXPECT_FALSE(offer.isVisible());
        EXPECT_TRUE(strip.text().startsWith("Checked")) << strip.text().toStdString();
    });
}

TEST_F(FrmTrWindow, ShowsPanelsAndColumnsByAKey) {
    Open([&](frmTrWindow& window) {
        auto& grid = Find<QTableView>(window, "Grid1");
        auto& types = Find<QTableView>(window, "types");
        const auto press = [&](Qt::Key key) {
            int drawn = 0;
            const auto counted = QObject::connect(
                grid.model(), &QAbstractItemModel::headerDataChanged, [&] { ++drawn; });
            QTest::keyClick(QApplication::focusWidget(), key);
            QApplication::processEvents();
            QObject::disconnect(counted);
            EXPECT_EQ(drawn, 1);
        };
        press(Qt::Key_F6);
        EXPECT_FALSE(grid.isColumnHidden(9) || grid.isColumnHidden(13));
        press(Qt::Key_F7);
        EXPECT_TRUE(Find<QWidget>(window, "figures").isVisible());
        EXPECT_GT(Find<QTableView>(window, "parameters").model()->rowCount(), 6);
        press(Qt::Key_F8);
        EXPECT_FALSE(Find<QWidget>(window, "figures").isVisible());
        EXPECT_TRUE(types.hasFocus());
        types.selectRow(3);
        press(Qt::Key_Return);
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
        EXPECT_TRUE(Find<QAbstractButton>(window, "RadioTrType(1)").isChecked());
        press(Qt::Key_F8);
        EXPECT_TRUE(grid.hasFocus());
        press(Qt::Key_F6);
        EXPECT_TRUE(grid.isColumnHidden(9) && grid.isColumnHidden(13));
    });
}

TEST_F(FrmTrWindow, ListsTheOtherWarningsWithTheirOffers) {
    Open([&](frmTrWindow& window) {
        for (const char* type : {"RadioTrType(3)", "cmdTypes"}) Click(window, type);
        auto& others = Find<QLabel>(window, "lblOtherWarnings");
        EXPECT_FALSE(others.isVisible());
        Click(window, "cmdMoreWarnings");
        ASSERT_TRUE(others.isVisible());
        const auto link = others.text().indexOf("<a href='");
        ASSERT_GE(link, 0) << others.text().toStdString();
        emit others.linkActivated(others.text().sliced(link + 9, 1));
        QApplication::processEvents();
        EXPECT_NE(engine.eTrType(), TR_POLI_2);
    });
}

}  // namespace
}  // namespace kv_tr::test
