// The main window of the desktop program: control points read, judged, adjusted and applied.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/desktop_form.h"
#include "desktop/ui_text.h"
#include "kv_tr/forms/plan_data.h"
#include "workbench/exports.h"
#include "workbench/place_info.h"
#include "workbench/points_view.h"
#include "workbench/recent_projects.h"
#include "workbench/session.h"

class QActionGroup;
class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QToolButton;

namespace kv_tr {
class PlanWidget;
class WarningStrip;
}  // namespace kv_tr

namespace kv_tr::desktop {

class FindingsTabs;
class ParametersWindow;
class PointsPanel;
class StartPage;

/// Table, plan, strip and panels of one project; the start page while there is none. Whatever the
/// user does is decided by the workbench; parameters from other sources, and the component's own
/// dialogs, belong to the form.
class WorkbenchWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Projects are kept safe, and the list of projects lies, in the user's folder for state.
    WorkbenchWindow(DesktopForm& form, std::string version,
                    const std::filesystem::path& stateFolder = workbench::StateFolder({}));

    workbench::Session& Project() { return session_; }
    /// Opens files as if they had been dropped on the window: projects, control points, parameters;
    /// two lists of points are paired.
    void OpenFiles(const std::vector<std::string>& fileNames);
    /// Offers what a program that is gone had not saved.
    void OfferLeftovers();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Action = std::function<void()>;

    // Menus and tools.

    void MakeMenus();
    void MakeFileMenu();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeFitMenu();
    void MakeTransformMenu();
    void MakeParametersMenu();
    void MakeLanguageMenu();
    void MakeTools();
    void FitTools();
    QMenu* AddMenu(Words words);
    QMenu* AddSubMenu(QMenu* menu, Words words, const std::function<void(QMenu*)>& fill);
    QAction* Add(QMenu* menu, Words words, const Action& action, const QKeySequence& keys = {});
    QAction* AddSwitch(QMenu* menu, Words words, bool PlanOptions::*option);
    void SetTip(QAction* action, Words tip);
    void Letter();
    void FillRecent(QMenu* menu);
    void FillExports(QMenu* menu, bool toClipboard);
    void FillPoints(QMenu* menu);

    // The window.

    void MakeBody();
    void MakeStart();
    void MakeStatus();
    void Redraw();
    void RedrawCaptions();
    void RedrawActions();
    void RedrawTypes();
    void MakeStrip(QWidget* centre);
    void RedrawStrip();
    void RedrawPlan();
    void RenewPlan();
    void ShowPlace(Point onPlan);
    void Tell(const QString& text);
    void Remember();
    void Recall();

    // What the user does.

    void SelectOnPlan(const std::vector<std::size_t>& places, bool isAdded);
    void ShowSelectionOnPlan();
    workbench::Places Selected();
    void Exclude();
    void ShowPoint(std::optional<std::size_t> place);
    void NextSuspect();
    void Remark();
    void Paste();
    void Report();
    void GiveOut(const workbench::Offered& offered, bool toClipboard);
    void SaveOffered(const workbench::Offered& offered);
    void SavePlanAs();
    void ChooseBackground();
    void Transform(const std::vector<std::string>& fileNames);
    void TransformByParameters(const std::vector<std::string>& fileNames);
    bool MayGiveAway();
    void ShowParameters();
    void ShowGuide();

    // Projects and files.

    void NewProject();
    void ChooseFile();
    void ChooseLists();
    void OpenClipboard();
    void OpenOne(const std::string& fileName);
    void OpenProject(const std::string& fileName);
    void Take(workbench::OpenPreview& preview, const std::string& fileName);
    bool Save();
    bool SaveAs();
    bool MayLose();
    void Opened(const std::string& fileName);

    void SetAngles(AngleUnit unit);

    DesktopForm& form_;
    std::string version_;
    workbench::Session session_;
    workbench::Workbench& bench_{session_.Bench()};
    workbench::PointsView view_{bench_.Project()};
    workbench::PlaceInfo places_{bench_.Project()};
    workbench::RecentProjects recent_;
    AngleUnit angles_ = AngleUnit::kGon;
    std::vector<Action> captions_;  // each sets a text in the current language
    std::vector<Action> switches_;  // each sets the state of a switch
    std::vector<QAction*> needPoints_;
    std::vector<QAction*> needFit_;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QAction* exclude_ = nullptr;
    QAction* include_ = nullptr;
    QAction* exclusion_ = nullptr;  // the tool that is one of both
    QAction* invert_ = nullptr;
    QAction* saveParameters_ = nullptr;
    QActionGroup* typeActions_ = nullptr;
    QToolBar* tools_ = nullptr;
    QComboBox* types_ = nullptr;
    QToolButton* exportButton_ = nullptr;
    QPushButton* offer_ = nullptr;
    QPushButton* showPoint_ = nullptr;
    QPushButton* notNow_ = nullptr;
    QPushButton* more_ = nullptr;
    std::size_t hidden_ = 0;  // lines of the strip, of this version:
    std::uint64_t hiddenOf_ = 0;
    WarningStrip* strip_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    StartPage* start_ = nullptr;
    QSplitter* body_ = nullptr;
    QSplitter* whole_ = nullptr;
    PointsPanel* points_ = nullptr;
    PlanWidget* plan_ = nullptr;
    FindingsTabs* tabs_ = nullptr;
    QLabel* place_ = nullptr;
    QLabel* figures_ = nullptr;
    QLabel* outside_ = nullptr;
    ParametersWindow* parameters_ = nullptr;
    std::uint64_t planned_ = 0;  // the version that the plan shows
    QTimer autosave_;
    Subscription benchChanged_;
    Subscription formChanged_;
};

}  // namespace kv_tr::desktop
