// Does at random what a user could do in the main window: random_actions [ACTIONS [SEED]].
//
// Nothing may crash, and what was done can be taken back and done again. Whatever the window reads
// or writes lies in a folder of the test's own, and a superuser's rights are given up first.
#include <grp.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "common/languages.h"
#include "desktop/points_panel.h"
#include "desktop/workbench_window.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/qt/plan_widget.h"
#include "workbench/project_file.h"

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

/// As nobody, who may write nowhere but in the folder.
bool GiveUpRights(const fs::path& folder) {
    constexpr uid_t kNobody = 65534;
    if (geteuid() != 0) return true;
    return chown(folder.c_str(), kNobody, kNobody) == 0 && setgroups(0, nullptr) == 0 &&
           setgid(kNobody) == 0 && setuid(kNobody) == 0 && setuid(0) != 0;
}

class User {
public:
    User(fs::path folder, unsigned seed) : folder_(std::move(folder)), random_(seed) {
        WriteFiles();
        QObject::connect(&dialogs_, &QTimer::timeout, [this] { InDialog(); });
        dialogs_.setSingleShot(true);
        dialogs_.start(1);
        window_.show();
    }

    void Act() {
        platform_.messages.clear();
        platform_.requests.clear();
        platform_.choices = {AnyChoice(), AnyChoice()};
        platform_.answers = {AnyAnswer(), AnyAnswer()};
        switch (Below(12)) {
            case 0:
            case 1: return AnyEntry();
            case 2: return window_.OpenFiles({AnyFile()});
            case 3:
                return AnyKey(QApplication::focusWidget() ? *QApplication::focusWidget() : window_);
            case 4: return EditAnyCell();
            case 5: return Select();
            case 6: return OnPlan();
            case 7: return tabs_.setCurrentIndex(static_cast<int>(Below(5)));
            case 8: return AnyStep();
            case 9: return AnyClick();
            case 10: return AnyChange();
            default: return AnyFilter();
        }
    }

    /// Takes back everything and does everything again: false unless all is as it was.
    bool CanGoBackAndForth() {
        const std::size_t done = bench_.Steps().Done();
        const std::string before = workbench::ProjectText(bench_.Project());
        const double sigma0 = bench_.Project().Sigma0();
        while (bench_.Steps().CanUndo()) bench_.Undo();
        while (bench_.Steps().Done() < done) bench_.Redo();
        const double again = bench_.Project().Sigma0();
        return workbench::ProjectText(bench_.Project()) == before &&
               (again == sigma0 || (std::isnan(again) && std::isnan(sigma0)));
    }

private:
    std::size_t Below(std::size_t end) { return random_() % end; }
    auto& AnyOf(auto& list) { return list[Below(std::size(list))]; }

    std::string File(const std::string& name) const { return (folder_ / name).string(); }

    void WriteFiles() {
        fs::copy(EXAMPLES, File("examples"), fs::copy_options::recursive);
        for (const auto& entry : fs::recursive_directory_iterator(File("examples"))) {
            if (entry.is_regular_file() && entry.file_size() < 20000)
                files_.push_back(entry.path().string());
        }
        files_.push_back(
            WriteFile(File("line.dat"), "A 0 0 5 5\nB 1 1 6 6\nC 2 2 7 7\nD 3 3 8 8\n"));
        files_.push_back(WriteFile(File("same.dat"), "A 1 1 5 5\nB 1 1 5 5\nC 1 1 5 5\n"));
        files_.push_back(WriteFile(File("far.dat"), "A 1e300 0 1 1\nB 0 -1e300 2 2\nC 7 7 0 0\n"));
        files_.push_back(WriteFile(File("bad.csv"), "id;y1;x1;y2;x2\nA;0;0;100;x\n"));
        files_.push_back(WriteFile(File("bad.kvtr"), "{\"points\": ["));
        files_.push_back(File("saved.kvtr"));
        files_.push_back(File("missing.dat"));
    }

    std::string AnyFile() { return AnyOf(files_); }

    std::optional<FileChoice> AnyChoice() {
        static const char* const names[] = {"saved.kvtr",        "report.html", "report.pdf",
                                            "points.csv",        "plan.svg",    "plan.png",
                                            "no/such/folder.txt"};
        switch (Below(3)) {
            case 0: return std::nullopt;
            case 1: return FileChoice{AnyFile()};
            default: return FileChoice{File(AnyOf(names))};
        }
    }

    Answer AnyAnswer() {
        static constexpr Answer kAnswers[] = {Answer::kYes, Answer::kNo, Answer::kCancel};
        return kAnswers[Below(3)];
    }

    /// An entry of a menu; none that ends the program.
    void AnyEntry() {
        std::vector<QAction*> entries;
        for (QAction* action : window_.findChildren<QAction*>()) {
            if (action->isEnabled() && action->menu() == nullptr &&
                action->shortcut() != QKeySequence(QKeySequence::Quit))
                entries.push_back(action);
        }
        AnyOf(entries)->trigger();
    }

    void AnyKey(QWidget& target) {
        static constexpr Qt::Key kKeys[] = {
            Qt::Key_Tab,  Qt::Key_Return, Qt::Key_Down, Qt::Key_Up,    Qt::Key_Space, Qt::Key_F2,
            Qt::Key_Home, Qt::Key_End,    Qt::Key_Left, Qt::Key_Right, Qt::Key_7,     Qt::Key_X};
        static constexpr Qt::KeyboardModifier kModifiers[] = {Qt::NoModifier, Qt::ShiftModifier};
        QTest::keyClick(&target, AnyOf(kKeys), AnyOf(kModifiers));
    }

    QString AnyText() {
        static const char* const texts[] = {
            "",     "7",     "-12.5", "1e308",  "nan",
            "12,5", "Tűz ő", "66",    "\t\n\"", "99999999999999999999"};
        return QString::fromUtf8(AnyOf(texts));
    }

    void EditAnyCell() {
        QAbstractItemModel& model = *table_.model();
        if (model.rowCount() == 0) return;
        const auto row = static_cast<int>(Below(static_cast<std::size_t>(model.rowCount())));
        const auto column = static_cast<int>(Below(workbench::kColumnCount));
        const QModelIndex cell = model.index(row, column);
        if (column == 0) {
            model.setData(cell, Below(2) ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        } else if (cell.flags() & Qt::ItemIsEditable) {
            model.setData(cell, AnyText(), Qt::EditRole);
        }
    }

    void Select() {
        const int rows = table_.model()->rowCount();
        if (rows == 0) return;
        table_.selectRow(static_cast<int>(Below(static_cast<std::size_t>(rows))));
        if (Below(2))
            table_.sortByColumn(static_cast<int>(Below(workbench::kColumnCount)),
                                Below(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
    }

    void OnPlan() {
        const QPoint place(static_cast<int>(Below(800)), static_cast<int>(Below(600)));
        switch (Below(4)) {
            case 0: return QTest::mouseClick(&plan_, Qt::LeftButton, Qt::NoModifier, place);
            case 1: return QTest::mouseDClick(&plan_, Qt::LeftButton, Qt::NoModifier, place);
            case 2: return QTest::mouseMove(&plan_, place);
            default:
                QTest::mousePress(&plan_, Qt::LeftButton, Qt::ShiftModifier, place / 2);
                QTest::mouseMove(&plan_, place);
                QTest::mouseRelease(&plan_, Qt::LeftButton, Qt::ShiftModifier, place);
        }
    }

    void AnyStep() {
        if (Below(2)) return bench_.GoTo(Below(bench_.Steps().Steps().size()));
        Below(2) ? bench_.Undo() : bench_.Redo();
    }

    void AnyClick() {
        const auto buttons = window_.findChildren<QPushButton*>();
        QPushButton* button = AnyOf(buttons);
        if (button->isVisible() && button->isEnabled()) button->click();
    }

    void AnyChange() {
        switch (Below(4)) {
            case 0: return form_.SwitchLanguage(AnyOf(languages_).id);
            case 1:
                return window_.resize(400 + static_cast<int>(Below(1500)),
                                      300 + static_cast<int>(Below(900)));
            case 2: return ChooseAnyType();
            default: bench_.SetLimit(AnyText().toStdString());
        }
    }

    void ChooseAnyType() {
        auto& types = *window_.findChild<QComboBox*>("type");
        if (types.count() == 0 || !types.isEnabled()) return;
        types.setCurrentIndex(static_cast<int>(Below(static_cast<std::size_t>(types.count()))));
        emit types.activated(types.currentIndex());
    }

    void AnyFilter() {
        window_.findChild<QLineEdit*>("filter")->setText(Below(2) ? "" : AnyText());
    }

    /// What is open waits for the user, who types, clicks and at last leaves.
    void InDialog() {
        dialogs_.start(1);  // anew, as what is done here may open another dialog
        if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        platform_.choices = {AnyChoice()};
        const auto fields = dialog->findChildren<QLineEdit*>();
        const auto buttons = dialog->findChildren<QPushButton*>();
        const auto lists = dialog->findChildren<QComboBox*>();
        switch (Below(6)) {
            case 0: return fields.empty() ? void() : AnyOf(fields)->setText(AnyText());
            case 1: return lists.empty() ? void() : AnyKey(*AnyOf(lists));
            case 2: return dialog->reject();
            case 3: return dialog->accept();
            default: return buttons.empty() ? dialog->reject() : AnyOf(buttons)->click();
        }
    }

    const fs::path folder_;
    std::minstd_rand random_;
    std::vector<std::string> files_;
    RecordingPlatform platform_;
    desktop::DesktopForm form_{*platform_.texts};
    desktop::WorkbenchWindow window_{form_, "1.2.3", folder_ / "state"};
    workbench::Workbench& bench_ = window_.Project().Bench();
    desktop::PointsTable& table_ = window_.findChild<desktop::PointsPanel*>()->Table();
    PlanWidget& plan_ = *window_.findChild<PlanWidget*>();
    QTabWidget& tabs_ = *window_.findChild<QTabWidget*>("tabs");
    const std::span<const app::Language> languages_ = app::Languages();
    QTimer dialogs_;
};

bool ActAtRandom(int actions, unsigned seed) {
    const TemporaryFolder folder;
    const fs::path place = folder.File("");
    if (!GiveUpRights(place)) return std::puts("the rights of the superuser stay"), false;
    fs::current_path(place);
    qputenv("HOME", place.c_str());
    User user(place, seed);
    for (int i = 1; i <= actions; ++i) {
        user.Act();
        QApplication::processEvents();
        if (i % 500 == 0 && !user.CanGoBackAndForth()) {
            std::printf("after %d actions of seed %u a step is not what it was\n", i, seed);
            return false;
        }
    }
    return true;
}

}  // namespace
}  // namespace kv_tr::test

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    const QApplication application(argc, argv);
    const int actions = argc > 1 ? std::atoi(argv[1]) : 10000;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
    return kv_tr::test::ActAtRandom(actions, seed) ? 0 : 1;
}
