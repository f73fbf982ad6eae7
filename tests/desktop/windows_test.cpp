// The wiring of the parameter dialogs' windows and of the main window.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <set>

#include "desktop/main_window.h"
#include "desktop/transform_window.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/qt/frmAffinTrPrm_window.h"
#include "kv_tr/qt/frmChooseDAT2M1_window.h"
#include "kv_tr/qt/frmChoosePrm_window.h"
#include "kv_tr/qt/text_window.h"

namespace kv_tr::test {
namespace {

class WindowsOfForms : public testing::Test {
protected:
    RecordingPlatform platform;
    clsTr transformation;

    /// Shows the window of a form on the transformation and plays the script with it.
    template <class Window, class Form>
    bool Open(const std::function<void(Window&)>& script) {
        Form form;
        return form.bDoModal(transformation, [&] {
            Window window(form);
            window.show();
            script(window);
        });
    }
};

void Click(const QWidget& window, const char* name) {
    window.findChild<QPushButton*>(name)->click();
}

TEST_F(WindowsOfForms, ForwardWhatTheUserDoes) {
    EXPECT_TRUE((Open<frmAffinTrPrmWindow, frmAffinTrPrm>([&](frmAffinTrPrmWindow& window) {
        auto* box = window.findChild<QLineEdit*>("txtTrPrm(3)");
        box->clear();
        QTest::keyClicks(box, "x");
        Click(window, "cmdOk");
        EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{"x"});
        EXPECT_EQ(box->text(), "0.000");
        QTest::keyClicks(box, "12.5");
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_TRUE(window.isVisible()) << "confirmed by a button only";
        Click(window, "cmdOk");
        EXPECT_FALSE(window.isVisible());
    })));
    EXPECT_EQ(double{transformation.udtTrPrm().dB0}, 12.5);
    Open<frmAffinTrPrmWindow, frmAffinTrPrm>([&](frmAffinTrPrmWindow& window) {
        auto* menu = window.findChild<QPushButton*>("cmdCopyAs")->menu();
        emit menu->aboutToShow();
        QTest::keyClicks(window.findChild<QLineEdit*>("txtTrPrm(2)"), "7");
        menu->actions()[5]->trigger();
        EXPECT_TRUE(QApplication::clipboard()->text().startsWith("[0, 1, -7e-09, 12.5, "));
    });
    EXPECT_TRUE((Open<frmChoosePrmWindow, frmChoosePrm>([&](frmChoosePrmWindow& window) {
        Click(window, "cmdPoli");
        EXPECT_EQ(platform.opened.back(), "polynomial");
    })));
    platform.answers = {Answer::kCancel};
    EXPECT_FALSE((Open<PolynomialWindow, frmPoliTrPrm>([&](PolynomialWindow& window) {
        auto* box = window.findChild<QPlainTextEdit*>("rtBox");
        QTest::keyClicks(box, "x");
        Click(window, "cmdOk");
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(platform.TakeTexts().size(), 1U);
    })));
    enuTR_TYPE type = TR_POLI_1;
    frmChooseDAT2M1 form;
    EXPECT_TRUE(form.bDoModal(type, [&] {
        frmChooseDAT2M1Window window(form);
        EXPECT_FALSE(window.findChild<QPushButton*>("cmdOk")->isEnabled());
        auto* list = window.findChild<QTreeWidget*>("lstTr");
        list->setCurrentItem(list->topLevelItem(20));
        Click(window, "cmdOk");
    }));
    EXPECT_EQ(type, TR_EOV_STG_10e);
}

/// Expects that no control covers another or lies outside the window.
void ExpectControlsApart(QWidget& window) {
    window.show();
    QTest::qWait(0);
    std::vector<std::pair<QRect, const char*>> seen;
    for (const QWidget* control : window.findChildren<QWidget*>()) {
        const bool single = qobject_cast<const QLabel*>(control) != nullptr ||
                            qobject_cast<const QAbstractButton*>(control) != nullptr ||
                            qobject_cast<const QLineEdit*>(control) != nullptr ||
                            qobject_cast<const QSpinBox*>(control) != nullptr;
        if (!single || !control->isVisible() || control->parent()->inherits("QSpinBox")) continue;
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        EXPECT_TRUE(window.rect().contains(place)) << control->metaObject()->className();
        for (const auto& [other, name] : seen)
            EXPECT_FALSE(place.intersects(other)) << control->metaObject()->className() << name;
        seen.emplace_back(place, control->metaObject()->className());
    }
}

TEST_F(WindowsOfForms, OfTheProgramShowOneTransformationAndSpeakEachLanguage) {
    const TemporaryFolder folder;
    WriteFile(folder.File("shift.trp"), "100\n1\n0\n200\n0\n1\n");
    WriteFile(folder.File("in.txt"), "A 1,5 2,5\n");
    desktop::DesktopForm form(*platform.texts);
    desktop::MainWindow window(form, "1.2.3");
    window.show();
    window.Open(folder.File("in.txt"));
    EXPECT_EQ(platform.TakeTexts().size(), 1U) << "no parameters yet";
    window.Open(folder.File("shift.trp"));
    window.findChild<QLineEdit*>("Y1")->setText("1");
    window.findChild<QLineEdit*>("X1")->setText("2");
    EXPECT_EQ(window.findChild<QLineEdit*>("X2")->text(), "202.000");
    window.findChild<QLineEdit*>("Y1")->setText("3");
    EXPECT_EQ(window.findChild<QLineEdit*>("Y2")->text(), "103.000");
    for (const char* name : {"Y1", "X1", "direction", "length"}) {
        const auto* input = window.findChild<QLineEdit*>(name);
        const auto labels = window.findChildren<QLabel*>();
        EXPECT_TRUE(std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->buddy() == input && label->isVisible() && label->x() < input->x();
        })) << name;
    }
    for (QAction* entry : window.menuBar()->actions()[2]->menu()->actions()) {
        entry->trigger();
        std::set<QChar> letters;
        for (const QAction* menu : window.menuBar()->actions())
            letters.insert(menu->text()[menu->text().indexOf('&') + 1].toLower());
        EXPECT_EQ(letters.size(), 4U) << "one letter for Alt leads to one menu";
        EXPECT_EQ(window.menuBar()->actions()[0]->text().remove('&').toStdString(),
                  GetMlString(1160, {}));
    }
    auto* pages = window.findChild<QStackedWidget*>();
    EXPECT_EQ(pages->currentIndex(), 1);
    ExpectControlsApart(window);
    form.ShowStartPage(true);
    EXPECT_EQ(pages->currentIndex(), 0);
    ExpectControlsApart(window);
    const auto recent = window.menuBar()->actions()[0]->menu()->actions()[3]->menu()->actions();
    ASSERT_EQ(recent.size(), 1);
    recent[0]->trigger();
    EXPECT_EQ(pages->currentIndex(), 1) << "the recent file is open again";

    desktop::TransformForm transform(form.Record());
    transform.Input(folder.File("in.txt"));
    desktop::TransformWindow transformWindow(transform, &window);
    transformWindow.findChild<QCheckBox*>("chkDecimalComma")->click();
    EXPECT_EQ(transformWindow.findChild<QTreeWidget*>()->topLevelItem(0)->text(1),
              "→ A 101,500 202,500");
    EXPECT_EQ(transformWindow.findChild<QSpinBox*>()->value(), 3);
    ExpectControlsApart(transformWindow);
    Click(transformWindow, "cmdRun");
    EXPECT_EQ(ReadFile(folder.File("in_tr.txt")), "A 101,500 202,500\n");
}

TEST(TransformationOfAFile, ShowsHowFarItIsAndWritesNothingOnceItIsCancelled) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    desktop::TransformForm form({.dA1 = 1, .dB2 = 1});
    std::string lines;
    while (lines.size() < (4U << 20)) lines += "A 1.000 2.000\n";  // several blocks
    form.Input(folder.File("in.txt"));
    WriteFile(form.Input(), lines);
    desktop::TransformWindow window(form, nullptr, std::chrono::milliseconds(0));
    window.show();
    window.resize(700, 500);
    const auto bar = [&window] { return window.findChild<QProgressDialog*>(); };
    platform.whileShown = [&] { EXPECT_EQ(bar(), nullptr) << "nothing goes on then"; };
    int seen = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (bar() != nullptr && ++seen == 1) bar()->cancel();
    });
    timer.start(0);
    Click(window, "cmdRun");
    EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{"Cancelled; nothing was written."});
    EXPECT_FALSE(std::filesystem::exists(form.Output()));
    EXPECT_TRUE(window.isVisible());
    WriteFile(form.Output(), "older");
    platform.answers = {Answer::kYes};
    Click(window, "cmdRun");
    EXPECT_EQ(platform.messages.size(), 2U) << "the question and the outcome";
    EXPECT_GT(seen, 1);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(ReadFile(form.Output()).size(), lines.size());
    EXPECT_EQ(desktop::TransformWindow(form, nullptr).size(), QSize(700, 500));
}

}  // namespace
}  // namespace kv_tr::test
