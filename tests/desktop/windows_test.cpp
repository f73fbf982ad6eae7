// The wiring of the parameter dialogs' windows and of the main window.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

#include "common/languages.h"
#include "desktop/parameters_window.h"
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

TEST_F(WindowsOfForms, OfParametersShowThemAndSpeakEachLanguage) {
    const TemporaryFolder folder;
    WriteFile(folder.File("shift.trp"), "100\n1\n0\n200\n0\n1\n");
    desktop::DesktopForm form(*platform.texts);
    desktop::ParametersWindow window(
        form, [] {}, nullptr);
    window.show();
    form.OpenFile(folder.File("shift.trp"));
    window.findChild<QLineEdit*>("Y1")->setText("1");
    window.findChild<QLineEdit*>("X1")->setText("2");
    EXPECT_EQ(window.findChild<QLabel*>("X2")->text(), "202.000");
    window.findChild<QLineEdit*>("Y1")->setText("3");
    EXPECT_EQ(window.findChild<QLabel*>("Y2")->text(), "103.000");
    for (const char* name : {"Y1", "X1", "direction", "length"}) {
        const auto* input = window.findChild<QLineEdit*>(name);
        const auto labels = window.findChildren<QLabel*>();
        EXPECT_TRUE(std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->buddy() == input && label->isVisible() && label->x() < input->x();
        })) << name;
    }
    for (const app::Language& language : app::Languages()) {
        form.SwitchLanguage(language.id);
        EXPECT_EQ(window.windowTitle().toStdString(), Translated(Text::kCurrentParameters));
        ExpectControlsApart(window);
    }
}

}  // namespace
}  // namespace kv_tr::test
