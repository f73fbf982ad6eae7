// Projects, files and what is given to others, from the main window.
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <optional>

#include "desktop/parameters_window.h"
#include "desktop/preview_dialog.h"
#include "desktop/transform_files_dialog.h"
#include "desktop/workbench_window.h"
#include "kv_tr/forms/save_report.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/file_name.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/plan_output.h"
#include "kv_tr/qt/plan_widget.h"

namespace kv_tr::desktop {

using workbench::Phrase;
using workbench::Said;

namespace {

void Complain(const std::string& text) {
    if (!text.empty()) ShowMessage(text, Icon::kExclamation);
}

Answer AskYesNo(const std::string& question, Buttons buttons = Buttons::kYesNo) {
    return Ask({.text = question,
                .title = Translated(Text::kWarningTitle),
                .icon = Icon::kExclamation,
                .buttons = buttons,
                .defaultAnswer = buttons == Buttons::kYesNo ? Answer::kNo : Answer::kCancel});
}

std::string WithoutDots(std::string words) {
    for (const std::string_view dots : {"…", "..."}) {
        if (words.ends_with(dots)) words.resize(words.size() - dots.size());
    }
    return words;
}

/// The file that the user chooses to open, whose folder is remembered.
std::optional<std::string> ChosenToOpen(const std::string& title, const std::string& filter = {}) {
    FileDialogArguments arguments{.Filter = filter + Translated(Text::kAllFilesFilter).substr(1),
                                  .InitDir = InitDir(),
                                  .DlgTitle = WithoutDots(title)};
    if (!GCommonDialog().VBGetOpenFileName(arguments)) return std::nullopt;
    RememberFolderOf(arguments.Filename);
    return arguments.Filename;
}

/// The name that the user chooses for a file.
std::optional<std::string> ChosenToSave(const std::string& title, const std::string& filter,
                                        const std::string& ending, const std::string& name = {}) {
    FileDialogArguments arguments{.Filename = name,
                                  .Filter = filter,
                                  .InitDir = InitDir(),
                                  .DlgTitle = WithoutDots(title),
                                  .DefaultExt = ending};
    if (!GCommonDialog().VBGetSaveFileName(arguments)) return std::nullopt;
    RememberFolderOf(arguments.Filename);
    return arguments.Filename;
}

std::string FilterOf(const std::string& name, const std::string& ending) {
    return name + "|*." + ending;
}

}  // namespace

void WorkbenchWindow::OpenFiles(const std::vector<std::string>& fileNames) {
    RunAction([&] {
        if (fileNames.size() == 2) {
            workbench::OpenPreview lists;
            lists.TakeLists(fileNames[0], fileNames[1]);
            const auto isList = [&](std::size_t i) {
                return form_.OpenFile(fileNames[i]) == DesktopForm::FileKind::kCoordinates;
            };
            if (lists.CanTake() && isList(0) && isList(1)) {
                if (MayLose()) Take(lists, fileNames[1]);
                return;
            }
        }
        for (const std::string& name : fileNames) OpenOne(name);
    });
}

void WorkbenchWindow::OpenOne(const std::string& fileName) {
    using Kind = DesktopForm::FileKind;
    switch (form_.OpenFile(fileName)) {
        case Kind::kProject: return OpenProject(fileName);
        case Kind::kParameters:
            if (form_.HasParameters()) ShowParameters();
            return;
        case Kind::kControlPoints: {
            if (!MayLose()) return;
            workbench::OpenPreview preview;
            preview.TakeFile(fileName);
            return Take(preview, fileName);
        }
        case Kind::kCoordinates: {
            RememberFolderOf(fileName);
            Transform({fileName});
            return;
        }
        case Kind::kUnwanted: return;
    }
}

void WorkbenchWindow::OpenProject(const std::string& fileName) {
    if (!MayLose()) return;
    const std::string complaint = session_.Open(fileName);
    if (!complaint.empty()) return Complain(complaint);
    Opened(fileName);
}

/// Begins a project of what the user takes.
void WorkbenchWindow::Take(workbench::OpenPreview& preview, const std::string& fileName) {
    const OwnCursors cursors;
    if (PreviewDialog(preview, this).exec() != QDialog::Accepted) return;
    session_.Begin(preview);
    plan_->ShowAll();
    if (fileName.empty()) return;
    RememberFolderOf(fileName);
    if (!preview.IsOfLists()) form_.AddRecent(fileName);
}

void WorkbenchWindow::Opened(const std::string& fileName) {
    RememberFolderOf(fileName);
    recent_.Add(bench_.Project(), fileName);
    plan_->ShowAll();
    Redraw();  // the name was not known when the project began
}

void WorkbenchWindow::NewProject() {
    if (MayLose()) session_.Begin();
}

void WorkbenchWindow::ChooseFile() {
    if (const auto name = ChosenToOpen(Said(Phrase::kOpen))) OpenOne(*name);
}

void WorkbenchWindow::ChooseLists() {
    const auto source = ChosenToOpen(Said(Phrase::kSourceList));
    if (!source) return;
    const auto destination = ChosenToOpen(Said(Phrase::kDestinationList));
    if (!destination || !MayLose()) return;
    workbench::OpenPreview preview;
    preview.TakeLists(*source, *destination);
    Take(preview, *destination);
}

void WorkbenchWindow::OpenClipboard() {
    const QString text = QApplication::clipboard()->text();
    if (text.trimmed().isEmpty()) return Tell(UiText(Phrase::kNothingToPaste));
    if (!MayLose()) return;
    workbench::OpenPreview preview;
    preview.TakeText(text.toStdString());
    Take(preview, {});
}

bool WorkbenchWindow::Save() {
    if (session_.FileName().empty()) return SaveAs();
    if (session_.IsFileChanged() &&
        AskYesNo(Said(Phrase::kChangedQuestion, {session_.FileName()})) != Answer::kYes)
        return false;
    const std::string complaint = session_.Save();
    Complain(complaint);
    if (!complaint.empty()) return false;
    recent_.Add(bench_.Project(), session_.FileName());
    Tell(UiText(Phrase::kSaved, {session_.FileName()}));
    return true;
}

bool WorkbenchWindow::SaveAs() {
    const auto name = ChosenToSave(Said(Phrase::kSaveProjectAs), Said(Phrase::kProjectFilter),
                                   "kvtr", session_.FileName());
    if (!name) return false;
    const std::string complaint = session_.SaveAs(*name);
    Complain(complaint);
    if (!complaint.empty()) return false;
    recent_.Add(bench_.Project(), session_.FileName());
    Tell(UiText(Phrase::kSaved, {session_.FileName()}));
    return true;
}

/// Whether the project that is open may go: it is saved, or the user does not want that.
bool WorkbenchWindow::MayLose() {
    if (!bench_.IsDirty()) return true;
    std::string name = session_.Title();
    if (name.ends_with('*')) name.pop_back();
    switch (AskYesNo(Said(Phrase::kSaveQuestion, {name}), Buttons::kYesNoCancel)) {
        case Answer::kYes: return Save();
        case Answer::kNo: return true;
        default: return false;
    }
}

void WorkbenchWindow::OfferLeftovers() {
    RunAction([&] {
        for (const workbench::Leftover& leftover : session_.Leftovers()) {
            const std::string name =
                leftover.fileName.empty() ? Said(Phrase::kUntitled) : leftover.fileName;
            switch (AskYesNo(Said(Phrase::kRecoverQuestion, {name}), Buttons::kYesNoCancel)) {
                case Answer::kYes: Complain(session_.Recover(leftover)); return Redraw();
                case Answer::kNo: workbench::RecoveryCopy::Discard(leftover); break;
                default: return;
            }
        }
    });
}

/// Asks whether a fit with severe trouble is to be used all the same.
bool WorkbenchWindow::MayGiveAway() {
    const std::string objection = workbench::Objection(bench_.Project());
    return objection.empty() ||
           AskYesNo(Said(Phrase::kObjectionQuestion, {objection})) == Answer::kYes;
}

void WorkbenchWindow::Report() {
    std::string filter = "HTML (*.html)|*.html";
    if (MakerOfPdf()) filter = "PDF (*.pdf)|*.pdf|" + filter;
    const auto name =
        ChosenToSave(Translated(Text::kReportTitle), filter, MakerOfPdf() ? "pdf" : "html");
    if (!name) return;
    const std::string day = DayOfReportOrMessage();
    if (day.empty()) return;
    if (SaveReport(workbench::ReportOn(bench_.Project(), day), *name, MakerOfPdf()))
        Tell(UiText(Phrase::kSaved, {*name}));
}

void WorkbenchWindow::GiveOut(const workbench::Offered& offered, bool toClipboard) {
    RunAction([&] {
        if (!MayGiveAway()) return;
        if (!toClipboard) return SaveOffered(offered);
        QApplication::clipboard()->setText(QString::fromStdString(offered.text));
        Tell(UiText(Phrase::kCopied, {offered.name}));
    });
}

void WorkbenchWindow::SaveOffered(const workbench::Offered& offered) {
    if (!offered.IsAvailable()) return Complain(offered.reason);
    const auto name =
        ChosenToSave(offered.name, FilterOf(offered.name, offered.ending), offered.ending);
    if (!name) return;
    const std::string complaint = workbench::Save(offered, *name);
    if (!complaint.empty()) return Complain(complaint);
    std::string losses;
    for (const std::string& loss : offered.losses) losses += loss + "\r\n";
    if (!losses.empty()) ShowMessage(losses, Icon::kInformation);
    Tell(UiText(Phrase::kSaved, {*name}));
}

void WorkbenchWindow::SavePlanAs() {
    const auto name = ChosenToSave(Said(Phrase::kSavePlan),
                                   "PDF (*.pdf)|*.pdf|SVG (*.svg)|*.svg|PNG (*.png)|*.png", "pdf");
    if (!name) return;
    if (const auto complaint = SavePlan(*name, plan_->Index(), plan_->Words(), plan_->Options()))
        return Complain(*complaint);
    Tell(UiText(Phrase::kSaved, {*name}));
}

void WorkbenchWindow::ChooseBackground() {
    const auto name = ChosenToOpen(Said(Phrase::kBackground),
                                   Said(Phrase::kPictureFilter) + "|*.png;*.jpg;*.jpeg;*.tif|");
    if (!name) return;
    auto background = ReadBackground(*name);
    if (!background) return Complain(Said(Phrase::kBackgroundNeeds, {*name}));
    plan_->SetBackground(std::move(background));
}

/// With the fit; without one, with the parameters in use.
void WorkbenchWindow::Transform(const std::vector<std::string>& fileNames) {
    workbench::Document& document = bench_.Project();
    if (!document.HasFit()) return TransformByParameters(fileNames);
    if (!MayGiveAway()) return;
    const workbench::Settings& settings = document.Current();
    workbench::AppliedTransformation applied{.transformation = document.Adjusted().Result(),
                                             .sourceAxes = settings.source.axes,
                                             .destinationAxes = settings.destination.axes};
    for (const ControlPoint& point : document.Points()) {
        if (!point.used) continue;
        applied.sources.push_back(point.source);
        applied.destinations.push_back(point.destination);
    }
    TransformFilesWith(this, std::move(applied), fileNames);
}

void WorkbenchWindow::TransformByParameters(const std::vector<std::string>& fileNames) {
    if (!form_.HasParameters())
        return ShowMessage(Translated(Text::kNoParametersYet), Icon::kInformation);
    TransformFilesWith(this, {.transformation = TransformationOf(form_.Record())}, fileNames);
}

void WorkbenchWindow::ShowParameters() {
    if (parameters_ == nullptr) {
        parameters_ = new ParametersWindow(
            form_, [this] { TransformByParameters({}); }, this);
    }
    parameters_->show();
    parameters_->raise();
    parameters_->activateWindow();
}

void WorkbenchWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void WorkbenchWindow::dropEvent(QDropEvent* event) {
    std::vector<std::string> names;
    for (const QUrl& url : event->mimeData()->urls())
        names.push_back(FileNameOf(url.toLocalFile()));
    event->acceptProposedAction();
    // Later: dialogs must not keep the program that the files come from waiting.
    QMetaObject::invokeMethod(
        this, [this, names] { OpenFiles(names); }, Qt::QueuedConnection);
}

void WorkbenchWindow::closeEvent(QCloseEvent* event) {
    bool mayClose = false;
    RunAction([&] { mayClose = MayLose(); });
    event->setAccepted(mayClose);
    if (mayClose) Remember();
}

}  // namespace kv_tr::desktop
