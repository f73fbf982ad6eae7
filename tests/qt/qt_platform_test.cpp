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

class QtFileChooser : public EngineTest {
protected:
    QtFileChooser() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(folder.File("settings")));
        QObject::connect(&visits_, &QTimer::timeout, [this] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr) return;
            ++visits;
            visit(*dialog);
        });
        visits_.start(0);
    }

    static void Type(const QFileDialog& dialog, const std::string& name) {
        auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
        edit->setText(QString::fromStdString(name));
        QTest::keyClick(edit, Qt::Key_Return);
    }

    std::function<void(QFileDialog&)> visit;  // what the user does in a chooser
    int visits = 0;

private:
    QTimer visits_;
};

TEST_F(QtFileChooser, AsksWhereThePointListGoesAsForAnyFileToBeSaved) {
    WriteFile(folder.File("old.dat"), "old");
    InitDir(folder.File(""));
    visit = [&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.nameFilters(), (QStringList{"*.dat", "all files (*)"}));
        EXPECT_EQ(dialog.directory(), QDir(QString::fromStdString(folder.File(""))));
        Type(dialog, visits == 1 ? "old" : "new");
    };
    frmXY4Tr list;
    list.bDoModal(engine, {}, [&] { list.cmdSave(); });  // cancelled
    const auto choice = QtPlatform(kEnglish).files->ChooseToOpen(platform.requests.back());
    EXPECT_EQ(platform.TakeTexts(), Texts{folder.File("old.dat") + " exists already. Replace it?"});
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, folder.File("new.dat"));
    EXPECT_EQ(visits, 2);
}

}  // namespace
}  // namespace kv_tr::test
