// The wiring of the preview, the transforming of files, the start page and the icons.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include "desktop/icon.h"
#include "desktop/preview_dialog.h"
#include "desktop/small_svg.h"
#include "desktop/start_page.h"
#include "desktop/transform_files_dialog.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace kv_tr::desktop {
namespace {

using test::ReadFile;
using test::WriteFile;

class PartsTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
};

TEST_F(PartsTest, PreviewTakesWhatTheUserChose) {
    workbench::OpenPreview preview;
    preview.TakeText("A;1.5;2;3;4.25\nB;5;6.5;7;8\nC;9;1;2;3\n");
    PreviewDialog dialog(preview, nullptr);
    dialog.show();
    auto* format = dialog.findChild<QComboBox*>("choice0");
    format->setCurrentIndex(2);
    emit format->activated(2);
    auto* table = dialog.findChild<QTableWidget*>();
    auto* second = dialog.findChild<QComboBox*>("column1");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(table->item(1, 4)->text(), "4.25");
    emit second->activated(4);
    QTRY_COMPARE(preview.Take().pairs[0].point.source.first, 3);
    auto* take = dialog.findChild<QPushButton*>("take");
    EXPECT_TRUE(take->text().contains('3'));
    EXPECT_FALSE(dialog.findChild<QPlainTextEdit*>("sentences")->isVisible());
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);

    preview.TakeText("A 1 2 x 4\n");
    PreviewDialog refused(preview, nullptr);
    refused.show();
    EXPECT_FALSE(refused.findChild<QPushButton*>("take")->isEnabled());
    EXPECT_TRUE(refused.findChild<QPlainTextEdit*>("sentences")->toPlainText().contains("x"));
    QTest::keyClick(&refused, Qt::Key_Escape);
    EXPECT_EQ(refused.result(), QDialog::Rejected);
}

TEST_F(PartsTest, TransformingRunsBesideTheWindowAsksBeforeItReplacesAndFillsTheClipboard) {
    TransformFilesDialog dialog(
        {.transformation = {.type = Type::kAffine, .a = {100, 1, 0}, .b = {200, 0, 1}}}, nullptr);
    dialog.show();
    auto* run = dialog.findChild<QPushButton*>("run");
    EXPECT_FALSE(run->isEnabled());
    const std::string first = WriteFile(folder.File("a.txt"), "A 1 2.5\n");
    dialog.Add({first});
    QApplication::clipboard()->setText("B 3 4\n");
    dialog.findChild<QPushButton*>("paste")->click();
    dialog.findChild<QLineEdit*>("pattern")->setText("*_new");
    dialog.findChild<QCheckBox*>("keepGoing")->click();
    run->click();
    auto* files = dialog.findChild<QTreeWidget*>("files");
    QTRY_VERIFY(dialog.findChild<QPlainTextEdit*>("sentences")->toPlainText().contains("2 of 2"));
    EXPECT_EQ(files->topLevelItem(0)->text(2), "1");
    EXPECT_EQ(ReadFile(folder.File("a_new.txt")), "A 101.000 202.500\n");
    EXPECT_EQ(QApplication::clipboard()->text(), "B 103.000 204.000\n");

    WriteFile(folder.File("a_new.txt"), "older");
    platform.answers = {Answer::kNo};
    run->click();
    EXPECT_EQ(platform.TakeTexts().size(), 1U);
    EXPECT_EQ(ReadFile(folder.File("a_new.txt")), "older");
    platform.answers = {Answer::kYes};
    run->click();
    dialog.reject();
    EXPECT_TRUE(dialog.isVisible()) << "the work is stopped first";
    QTRY_VERIFY(dialog.findChild<QPushButton*>("add")->isEnabled());
    dialog.reject();
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(PartsTest, StartPageTellsWhatIsWanted) {
    StartPage page;
    page.show();
    const QSignalSpy open(&page, &StartPage::OpenWanted);
    const QSignalSpy file(&page, &StartPage::FileWanted);
    const QSignalSpy forget(&page, &StartPage::ForgetWanted);
    page.SetRecent(
        {{.file = "/a/one.dat", .name = "one.dat"}, {.file = "/b/two.kvtr", .name = "two.kvtr"}});
    page.findChild<QPushButton*>("open")->click();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    auto* recent = page.findChild<QListWidget*>("recent");
    recent->setFocus();
    QTest::keyClick(recent, Qt::Key_Down);
    QTest::keyClick(recent, Qt::Key_Return);
    QTest::keyClick(recent, Qt::Key_Delete);
    EXPECT_EQ(open.size(), 1);
    ASSERT_EQ(file.size(), 1);
    EXPECT_EQ(file[0][0].toString(), "/b/two.kvtr");
    EXPECT_EQ(forget.size(), 1);
}

/// How much of a picture of this size is painted, and in which colour its darkest dot.
std::pair<int, QColor> Painted(const QImage& image) {
    int dots = 0;
    QColor colour;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            const QColor dot = image.pixelColor(x, y);
            if (dot.alpha() == 255) colour = dot;
            dots += dot.alpha() > 0 ? 1 : 0;
        }
    }
    return {dots, colour};
}

TEST_F(PartsTest, IconsAreDrawnInTheColourOfTexts) {
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::ButtonText, QColor(10, 200, 30));
    QApplication::setPalette(palette);
    for (const char* name : {"open", "save", "undo", "redo", "swap", "exclude", "include",
                             "next_suspect", "report", "export", "transform", "start", "paste"}) {
        const auto [dots, colour] = Painted(Icon(name).pixmap(48, 48).toImage());
        EXPECT_GT(dots, 100) << name;
        EXPECT_LT(dots, 48 * 48 / 2) << name;
        EXPECT_EQ(colour, QColor(10, 200, 30)) << name;
    }
    EXPECT_TRUE(Icon("nothing").isNull());
    QApplication::setPalette(before);

    QImage image(40, 20, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PaintSvg(painter, image.rect(),
             R"(<svg width="20" height="20" fill="#c33"><circle cx="5" cy="15" r="3"/></svg>)", {});
    painter.end();
    EXPECT_EQ(image.pixelColor(15, 15), QColor("#c33")) << "in the middle of the place";
    EXPECT_EQ(image.pixelColor(25, 5).alpha(), 0);
}

}  // namespace
}  // namespace kv_tr::desktop
