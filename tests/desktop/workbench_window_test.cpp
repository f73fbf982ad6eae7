// The wiring of the main window, and the way from two lists to a report and a transformed file.
#include "desktop/workbench_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <set>

#include "common/languages.h"
#include "desktop/points_panel.h"
#include "desktop/preview_dialog.h"
#include "desktop/transform_files_dialog.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/findings_view.h"
#include "kv_tr/qt/plan_widget.h"

namespace kv_tr::test {
namespace {

using workbench::Column;

class MainWindow : public testing::Test {
protected:
    RecordingPlatform platform;
    const TemporaryFolder folder;
    desktop::DesktopForm form{*platform.texts};
    desktop::WorkbenchWindow window{form, "1.2.3", folder.File("state")};
    workbench::Workbench& bench = window.Project().Bench();
    desktop::PointsTable& table = window.findChild<desktop::PointsPanel*>()->Table();
    PlanWidget& plan = *window.findChild<PlanWidget*>();
    QStringList shown;  // what previews had to say
    QTimer previews;

    /// Previews are taken as they are, and left where nothing can be taken.
    MainWindow() {
        QObject::connect(&previews, &QTimer::timeout, [this] {
            auto* dialog = qobject_cast<desktop::PreviewDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr) return;
            shown << dialog->findChild<QPlainTextEdit*>("sentences")->toPlainText();
            auto* take = dialog->findChild<QPushButton*>("take");
            take->isEnabled() ? take->click() : dialog->reject();
        });
        previews.start(1);
    }
    std::string File(const std::string& name, const std::string& text) const {
        WriteFile(folder.File(name), text);
        return folder.File(name);
    }
    void Trigger(const char* name) { window.findChild<QAction*>(name)->trigger(); }
    QString Cell(int row, Column column) const {
        return table.model()->index(row, static_cast<int>(column)).data().toString();
    }
    void OpenSample() { window.OpenFiles({EXAMPLES "/swiss_helmert_9.dat"}); }
};

TEST_F(MainWindow, LeadsFromTwoListsToAReportAndATransformedFile) {
    const std::string source = File("old.txt",
                                    "A 10 10\nB 90 12\nC 88 95\nD 12 91\nE 50 52\nF 30 70\n"
                                    "G 71 33\nlost 5 5\n");
    const std::string destination = File("new.txt",
                                         "A 110.002 210.001\nB 189.999 212.003\nC 188 295.002\n"
                                         "D 112.001 290.999\nE 150.001 251.998\nF 130.4 270.2\n"
                                         "G 170.998 233.001\nfound 7 7\n");
    window.show();
    window.OpenFiles({source, destination});
    ASSERT_EQ(bench.Project().Count(), 7U);
    EXPECT_TRUE(shown.at(0).contains("lost"));

    auto& notNow = *window.findChild<QPushButton*>("notNow");
    EXPECT_TRUE(notNow.isVisible());
    notNow.click();
    EXPECT_FALSE(notNow.isVisible()) << "nothing else is to be said";
    Trigger("next_suspect");
    EXPECT_EQ(plan.Selection(), std::vector<std::size_t>{5}) << "F, in the plan as in the table";
    EXPECT_EQ(table.selectionModel()->selectedRows().at(0).row(), 5);
    Trigger("exclude");
    EXPECT_EQ(bench.Project().UsedCount(), 6U);
    const double good = bench.Project().Sigma0();
    Trigger("undo");
    EXPECT_GT(bench.Project().Sigma0(), 10 * good);
    EXPECT_TRUE(notNow.isVisible()) << "of another state";
    Trigger("redo");
    EXPECT_EQ(bench.Project().Sigma0(), good);
    auto* types = window.findChild<QComboBox*>("type");
    types->setCurrentIndex(types->findData(NumberOf(Type::kHelmert)));
    emit types->activated(types->currentIndex());
    EXPECT_EQ(bench.Project().Adjusted().Result().type, Type::kHelmert);

    platform.choices = {FileChoice{folder.File("r.html")}, FileChoice{folder.File("p.kvtr")}};
    Trigger("report");
    EXPECT_NE(ReadFile(folder.File("r.html")).find("new.txt"), std::string::npos);
    Trigger("save");
    EXPECT_FALSE(bench.IsDirty());
    EXPECT_EQ(InitDir(), std::filesystem::path(source).parent_path().string());

    const std::string rest = File("rest.txt", "P 20 30\n");
    QTimer::singleShot(0, [&] {
        auto* dialog = window.findChild<desktop::TransformFilesDialog*>();
        dialog->Add({rest});
        dialog->findChild<QPushButton*>("run")->click();
        QTRY_VERIFY(dialog->findChild<QPushButton*>("add")->isEnabled());
        dialog->reject();
    });
    Trigger("transform");
    EXPECT_TRUE(ReadFile(folder.File("rest_tr.txt")).starts_with("P 120.00")) << "F is out of it";

    desktop::WorkbenchWindow again(form, "1.2.3", folder.File("state"));
    again.OpenFiles({folder.File("p.kvtr")});
    EXPECT_EQ(again.Project().Bench().Project().Sigma0(), bench.Project().Sigma0());
}

TEST_F(MainWindow, EditsSortsFiltersAndCopiesInTheTable) {
    OpenSample();
    auto& model = *table.model();
    const auto cell = [&](int row, Column column) {
        return model.index(row, static_cast<int>(column));
    };
    table.sortByColumn(static_cast<int>(Column::kResidual), Qt::DescendingOrder);
    const QString worst = Cell(0, Column::kIdentifier);
    EXPECT_NE(worst, "66.301");
    EXPECT_TRUE(model.setData(cell(0, Column::kUse), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(Cell(8, Column::kIdentifier), worst) << "excluded points come last";
    EXPECT_TRUE(model.setData(cell(0, Column::kNote), "kő", Qt::EditRole));
    EXPECT_FALSE(model.setData(cell(0, Column::kSourceFirst), "x", Qt::EditRole));
    EXPECT_TRUE(bench.Notice().find("x") != std::string::npos);
    window.findChild<QLineEdit*>("filter")->setText("KO");
    ASSERT_EQ(model.rowCount(), 1);
    const QString noted = Cell(0, Column::kIdentifier);
    table.selectRow(0);
    table.CopySelected();
    EXPECT_TRUE(QApplication::clipboard()->text().contains("\t" + noted + "\t"));

    constexpr std::size_t hidden = 2;
    emit plan.SelectionAsked({hidden}, false);
    EXPECT_EQ(model.rowCount(), 9) << "what is chosen in the plan is to be seen";
    EXPECT_EQ(plan.Selection(), std::vector<std::size_t>{hidden});
    emit plan.ToggleAsked(hidden);
    EXPECT_EQ(bench.Project().UsedCount(), 7U);

    auto* tabs = window.findChild<QTabWidget*>("tabs");
    tabs->setCurrentIndex(4);
    auto* steps = window.findChild<FindingsView*>("steps");
    ASSERT_EQ(steps->rowCount(), 4);
    emit steps->cellClicked(0, 0);
    EXPECT_EQ(bench.Project().UsedCount(), 9U);
    EXPECT_EQ(steps->rowCount(), 4) << "what was taken back can be done again";
}

TEST_F(MainWindow, AsksBeforeItLosesAnythingAndTellsWhatItCannotRead) {
    OpenSample();
    bench.Exclude({2});
    const double sigma0 = bench.Project().Sigma0();
    EXPECT_FALSE(window.close()) << "the default is to stay";
    window.OpenFiles({File("others.dat", "X 0 0 5 5\nY 9 0 14 5\nZ 0 9 5 14\n")});
    EXPECT_EQ(platform.TakeTexts().size(), 2U);
    EXPECT_EQ(bench.Project().Sigma0(), sigma0);
    platform.answers = {Answer::kNo, Answer::kNo};
    const std::string broken = File("broken.csv", "id;y1;x1;y2;x2\nA;0;0;100;x\n");
    window.OpenFiles({broken, File("bad.kvtr", "{}")});
    const auto texts = platform.TakeTexts();
    ASSERT_GE(texts.size(), 3U);
    EXPECT_TRUE(shown.back().contains("line 2, column 11")) << shown.back().toStdString();
    EXPECT_NE(texts[2].find("bad.kvtr"), std::string::npos);
    EXPECT_EQ(bench.Project().Sigma0(), sigma0) << "what was open stays";
    platform.answers = {Answer::kYes};
    platform.choices = {FileChoice{folder.File("kept.kvtr")}};
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(std::filesystem::exists(folder.File("kept.kvtr")));
}

TEST_F(MainWindow, OffersWhatAProgramThatIsGoneHadNotSaved) {
    std::filesystem::create_directories(folder.File("left"));
    {
        workbench::RecoveryCopy copy(folder.File("state/recovery"));
        OpenSample();
        copy.Write(bench.Project(), "");
        std::filesystem::copy(folder.File("state/recovery"), folder.File("left"),
                              std::filesystem::copy_options::recursive);
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder.File("left")))
        std::filesystem::copy(entry.path(), folder.File("state/recovery"));
    window.Project().Begin();
    platform.answers = {Answer::kYes};
    window.OfferLeftovers();
    EXPECT_EQ(bench.Project().Count(), 9U);
    EXPECT_TRUE(bench.IsDirty());
}

TEST_F(MainWindow, HasALetterForEveryEntryInEveryLanguage) {
    OpenSample();
    window.show();
    for (const app::Language& language : app::Languages()) {
        form.SwitchLanguage(language.id);
        SCOPED_TRACE(language.name);
        for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
            std::set<QChar> letters;
            for (const QAction* action : menu->actions()) {
                if (action->isSeparator()) continue;
                const QString text = action->text();
                ASSERT_TRUE(text.contains('&')) << text.toStdString();
                EXPECT_TRUE(letters.insert(text[text.indexOf('&') + 1].toLower()).second)
                    << text.toStdString();
            }
        }
        EXPECT_EQ(window.findChild<QTabWidget*>("tabs")->tabText(4).toStdString(),
                  workbench::Said(workbench::Phrase::kHistoryTab));
    }
    std::set<QString> keys;
    for (const QAction* action : window.findChildren<QAction*>()) {
        for (const QKeySequence& key : action->shortcuts())
            EXPECT_TRUE(key.isEmpty() || keys.insert(key.toString()).second)
                << key.toString().toStdString();
    }
}

}  // namespace
}  // namespace kv_tr::test
