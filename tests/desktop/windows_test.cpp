// The wiring of the parameter dialogs' windows and of the main window.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include "desktop/main_window.h"
#include "desktop/transform_window.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"
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
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(box->text(), "0.000");
        QTest::keyClicks(box, "12.5");
        Click(window, "cmdOk");
        EXPECT_FALSE(window.isVisible());
    })));
    EXPECT_FALSE((Open<frmAffinTrPrmWindow, frmAffinTrPrm>([](frmAffinTrPrmWindow& window) {
        for (const auto& [name, text] : {std::pair{"txtTrPrm(1)", "x"}, {"txtTrPrm(3)", "13.5"}}) {
            auto* box = window.findChild<QLineEdit*>(name);
            box->clear();
            QTest::keyClicks(box, text);
        }
        Click(window, "cmdNok");
    })));
    EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{});
    EXPECT_EQ(double{transformation.udtTrPrm().dB0}, 13.5);

    EXPECT_TRUE((Open<frmChoosePrmWindow, frmChoosePrm>([&](frmChoosePrmWindow& window) {
        Click(window, "cmdPoli");
        EXPECT_EQ(platform.opened.back(), "polynomial");
        EXPECT_FALSE(window.isVisible());
    })));

    transformation.udtTrPrmByDAT2M1(TR_STG_HER);
    platform.answers = {Answer::kCancel};
    EXPECT_FALSE((Open<PolynomialWindow, frmPoliTrPrm>([&](PolynomialWindow& window) {
        auto* box = window.findChild<QPlainTextEdit*>("rtBox");
        EXPECT_TRUE(box->toPlainText().startsWith("STG-HÉR transzformáció\n\n sy = 0.000"));
        QTest::keyClicks(box, "x");
        Click(window, "cmdOk");
        EXPECT_EQ(platform.TakeTexts().size(), 1U);
        EXPECT_TRUE(window.isVisible());
        Click(window, "cmdNok");
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

TEST_F(WindowsOfForms, OutliveAnEmptyClipboard) {
    const auto paste = [](QDialog& window) {
        auto* box = window.findChild<QPlainTextEdit*>("rtBox");
        box->clear();
        QApplication::clipboard()->setMimeData(new QMimeData);
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(box->toPlainText(), "");
        QApplication::clipboard()->setText("1 2\n3");
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(box->toPlainText(), "1 2\n3");
    };
    Open<PolynomialWindow, frmPoliTrPrm>(paste);
    frmXY4Tr points;
    points.bDoModal(*transformation.oCalcTr(), {}, [&] {
        ControlPointWindow window(points);
        window.show();
        paste(window);
    });
}

TEST_F(WindowsOfForms, OfTheProgramShowOneTransformationAndSpeakEachLanguage) {
    const TemporaryFolder folder;
    WriteFile(folder.File("shift.trp"), "100\n1\n0\n200\n0\n1\n");
    WriteFile(folder.File("in.txt"), "A 1 2\n");
    desktop::DesktopForm form(*platform.texts);
    desktop::MainWindow window(form, "1.2.3");
    window.show();
    window.Open(folder.File("in.txt"));
    EXPECT_EQ(platform.TakeTexts().size(), 1U) << "no parameters yet";
    window.Open(folder.File("shift.trp"));
    window.findChild<QLineEdit*>("Y1")->setText("1");
    window.findChild<QLineEdit*>("X1")->setText("2");
    EXPECT_EQ(window.findChild<QLineEdit*>("X2")->text(), "202.000");
    for (const QAction* entry : window.menuBar()->actions()[2]->menu()->actions()) {
        const_cast<QAction*>(entry)->trigger();
        EXPECT_EQ(window.menuBar()->actions()[0]->text().toStdString(),
                  "&" + GetMlString(1160, {}));
    }
    EXPECT_EQ(CurrentMlLanguage(), kSerbian);
    auto* pages = window.findChild<QStackedWidget*>();
    EXPECT_EQ(pages->currentIndex(), 1);
    form.ShowStartPage(true);
    EXPECT_EQ(pages->currentIndex(), 0);

    desktop::TransformForm transform(form.Record());
    transform.Input(folder.File("in.txt"));
    desktop::TransformWindow transformWindow(transform, &window);
    transformWindow.show();
    Click(transformWindow, "cmdRun");
    EXPECT_EQ(ReadFile(folder.File("in_tr.txt")), "A 101.000 202.000\n");

    transform.Input(folder.File("commas.txt"));
    WriteFile(transform.Input(), "A 1,5 2,5\n");
    desktop::TransformWindow other(transform, &window);
    other.findChild<QCheckBox*>("chkDecimalComma")->click();
    Click(other, "cmdRun");
    EXPECT_EQ(ReadFile(folder.File("commas_tr.txt")), "A 101,500 202,500\n");
}

class TransformationOfAFile : public testing::Test {
protected:
    RecordingPlatform platform;
    const TemporaryFolder folder;
    desktop::TransformForm form{RecordOf({})};

    TransformationOfAFile() {
        std::string lines;
        while (lines.size() < (4U << 20)) lines += "A 1.000 2.000\n";  // several blocks
        WriteFile(folder.File("in.txt"), lines);
        form.Input(folder.File("in.txt"));
    }
};

TEST_F(TransformationOfAFile, ShowsHowFarItIsOnlyWhileItGoesOn) {
    WriteFile(form.Output(), "older");
    platform.answers = {Answer::kYes};
    desktop::TransformWindow window(form, nullptr, std::chrono::milliseconds(0));
    window.show();
    bool bar = false;
    bool before = false;
    platform.whileShown = [&] { before |= window.findChild<QProgressDialog*>() != nullptr; };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout,
                     [&] { bar |= window.findChild<QProgressDialog*>() != nullptr; });
    timer.start(0);
    Click(window, "cmdRun");
    EXPECT_EQ(platform.messages.size(), 2U) << "the question and the outcome";
    EXPECT_FALSE(before) << "there is nothing to see or to cancel then";
    EXPECT_TRUE(bar);
    EXPECT_FALSE(window.isVisible());

    desktop::TransformWindow patient(form, nullptr, std::chrono::hours(1));
    platform.answers = {Answer::kYes};
    bar = false;
    Click(patient, "cmdRun");
    EXPECT_EQ(platform.messages.size(), 4U);
    EXPECT_FALSE(bar || before);
}

TEST_F(TransformationOfAFile, WritesNothingOnceItIsCancelled) {
    desktop::TransformWindow window(form, nullptr, std::chrono::milliseconds(0));
    window.show();
    window.resize(700, 500);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* bar = window.findChild<QProgressDialog*>()) bar->cancel();
    });
    timer.start(0);
    Click(window, "cmdRun");
    EXPECT_EQ(platform.TakeTexts(), std::vector<std::string>{"Cancelled; nothing was written."});
    EXPECT_FALSE(std::filesystem::exists(form.Output()));
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_EQ(desktop::TransformWindow(form, nullptr).size(), QSize(700, 500));
}

}  // namespace
}  // namespace kv_tr::test
