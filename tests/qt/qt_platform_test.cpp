// The file choosers of a Qt program.
#include "kv_tr/qt/qt_platform.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include "helpers/engine_test.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/published/settings.h"

namespace kv_tr::test {
namespace {

using QtFileChooser = EngineTest;

TEST_F(QtFileChooser, AsksWhereThePointListGoesAsForAnyFileToBeSaved) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(folder.File("settings")));
    WriteFile(folder.File("old.dat"), "old");
    InitDir(folder.File(""));
    int visits = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog->nameFilters(), (QStringList{"*.dat", "all files (*)"}));
        EXPECT_EQ(dialog->directory(), QDir(QString::fromStdString(folder.File(""))));
        auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
        edit->setText(++visits == 1 ? "old" : "new");
        QTest::keyClick(edit, Qt::Key_Return);
    });
    timer.start(0);
    frmXY4Tr list;
    list.bDoModal(engine, {}, [&] { list.cmdSave(); });  // cancelled
    const auto choice = QtPlatform(kEnglish).files->ChooseToOpen(platform.requests.back());
    EXPECT_EQ(platform.TakeTexts(), Texts{folder.File("old.dat") + " exists already. Replace it?"});
    EXPECT_EQ(choice.value_or(FileChoice{}).path, folder.File("new.dat"));
}

TEST(QtPlatform, MakesPdfWhereThatIsBuilt) {
    const Platform platform = QtPlatform(kEnglish);
    ASSERT_EQ(platform.makePdf != nullptr, HAS_PDF);
    if (platform.makePdf) {
        EXPECT_TRUE(platform.makePdf({}).starts_with("%PDF"));
    }
}

}  // namespace
}  // namespace kv_tr::test
