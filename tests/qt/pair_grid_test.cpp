// The table of pairs as a view, without the dialog: editing by mouse and keyboard.
#include "kv_tr/qt/pair_grid.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

#include "helpers/recording_platform.h"

namespace kv_tr::test {
namespace {

class Grid : public testing::Test {
protected:
    RecordingPlatform platform;
    double limit = 0.2;
    Adjustment adjustment{std::vector<ControlPoint>{
        {"A", {1, 2}, {3, 4}}, {"B", {10, 20}, {30, 40}}, {"C", {100, 200}, {300, 400}}}};
    ChangeEvent changed;
    PairTable table{adjustment, limit, changed};
    QWidget window;
    PairGrid grid{table, [](const std::function<void()>& action) { action(); }, &window};
    QLineEdit other{&window};
    const Subscription drawn = changed.Subscribe([this] { grid.Redraw(); });

    Grid() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&grid);
        layout->addWidget(&other);
        window.resize(900, 300);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        table.Editable(true);
        grid.Redraw();
    }

    /// The open one; those that were closed may still be there.
    QLineEdit* Editor() const {
        for (auto* edit : grid.findChildren<QLineEdit*>("txtEdit")) {
            if (edit->isVisible()) return edit;
        }
        return nullptr;
    }
    QPoint At(int row, int column) const {
        return grid.visualRect(grid.model()->index(row, column)).center();
    }
    void Click(int row, int column) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, At(row, column));
    }
    /// The keyboard goes where the focus is; "\x1b" and the like are keys.
    static void Type(const char* keys) {
        for (const char* key = keys; *key != '\0'; ++key) {
            switch (*key) {
                case '\n': QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); break;
                case '\x1b': QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); break;
                case '^': QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up); break;
                case 'v': QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down); break;
                case '!': QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2); break;
                case '<': QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace); break;
                default: QTest::keyClick(QApplication::focusWidget(), *key);
            }
            QApplication::processEvents();
        }
    }
};

TEST_F(Grid, EditsByTheKeyboard) {
    const struct {
        const char* keys;
        double value;  // of the second point's first coordinate
        int row;
        bool open;
    } steps[] = {
        {"5", 10, 1, true},         {"6", 10, 1, true},  // behind the first character
        {"\n", 56, 1, false},       {"\n", 56, 1, true},
        {"<<<<<7\n", 57, 1, false},  // "56.000" without its last five letters
        {"!", 57, 1, true},         {"\x1b", 57, 1, false},
        {"9\x1b", 57, 1, false},    {"8^", 8, 0, false},
        {"v", 8, 1, false},         {"x\n", 8, 1, false},
        {"-1v", -1, 2, false},      {"^", -1, 1, false},
    };
    Click(1, 2);
    Type("\x1b");
    for (const auto& [keys, value, row, open] : steps) {
        SCOPED_TRACE(keys);
        Type(keys);
        EXPECT_EQ(adjustment.Points()[1].source.first, value);
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(row, 2));
        EXPECT_EQ(Editor() != nullptr, open);
        EXPECT_EQ(table.CellEditor().visible, open);
    }
    EXPECT_TRUE(grid.hasFocus());
    EXPECT_EQ(platform.messages.size(), 0U);
}

TEST_F(Grid, EditsByTheMouse) {
    Click(2, 2);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_TRUE(Editor()->geometry().contains(At(2, 2)));
    EXPECT_EQ(Editor()->text(), "100.000");
    EXPECT_FALSE(Editor()->hasSelectedText());
    Editor()->setText("7");
    Click(0, 1);
    EXPECT_EQ(adjustment.Points()[2].source.first, 7) << "a click elsewhere takes what was typed";
    EXPECT_EQ(Editor()->text(), "A");
    Editor()->setText("name");
    changed.Raise();
    EXPECT_EQ(Editor()->text(), "name") << "drawing does not disturb who types";
    other.setFocus();
    EXPECT_EQ(adjustment.Points()[0].id, "name");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(other.hasFocus());
    Click(1, 7);
    EXPECT_EQ(Editor(), nullptr) << "results are not edited";
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 7));
    Click(1, 3);
    Editor()->setText("8");
    grid.setCurrentIndex(grid.model()->index(2, 3));
    EXPECT_EQ(adjustment.Points()[1].source.second, 8);
    EXPECT_EQ(Editor(), nullptr) << "the editor closes when the current cell moves";
    table.Grid1Click(1, 5);
    EXPECT_EQ(Editor()->text(), "4.000") << "opened by the table";
    table.Editable(false);
    EXPECT_EQ(Editor(), nullptr);
    Click(2, 2);
    Type("5");
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(Grid, IsAModelThatTakesTexts) {
    auto* model = grid.model();
    EXPECT_TRUE(model->flags(model->index(0, 1)) & Qt::ItemIsEditable);
    EXPECT_TRUE(model->setData(model->index(0, 1), "new"));
    EXPECT_EQ(adjustment.Points()[0].id, "new");
    EXPECT_FALSE(model->setData(model->index(0, 2), "x"));
    table.Editable(false);
    EXPECT_FALSE(model->flags(model->index(0, 1)) & Qt::ItemIsEditable);
    adjustment.Assign({});
    grid.Redraw();
    EXPECT_EQ(model->rowCount(), 0);
}

TEST_F(Grid, ShowsItsToolTipOverItsCells) {
    grid.setToolTip("tip");
    QHelpEvent event(QEvent::ToolTip, At(1, 2), grid.viewport()->mapToGlobal(At(1, 2)));
    QApplication::sendEvent(grid.viewport(), &event);
    EXPECT_EQ(QToolTip::text(), "tip");
}

}  // namespace
}  // namespace kv_tr::test
