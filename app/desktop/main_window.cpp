// The main window of the desktop program: what it does.
#include "desktop/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStackedWidget>

#include "common/languages.h"
#include "desktop/transform_window.h"
#include "desktop/ui_text.h"
#include "kv_tr/published/message.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"

namespace kv_tr::desktop {
namespace {

constexpr const char* kName = "Desktop";

}  // namespace

MainWindow::MainWindow(DesktopForm& form, std::string version)
    : form_(form), version_(std::move(version)) {
    setWindowTitle("KV_Tr");
    setAcceptDrops(true);
    MakeMenus();
    pages_ = new QStackedWidget(this);
    pages_->addWidget(MakeStartPage());
    pages_->addWidget(MakeWorkPage());
    setCentralWidget(pages_);
    resize(RememberedSize(kName, {960, 600}));
    changed_ = form_.Changed.Subscribe([this] { Redraw(); });
    Redraw();
}

void MainWindow::MakeMenus() {
    QMenu* file = AddMenu(Text::kFileMenu);
    AddAction(file, Text::kChooseParameters, [this] { form_.ChooseParameters(); });
    AddAction(file, Text::kOpenPoints, [this] {
        form_.OpenControlPoints();
    })->setShortcut(QKeySequence::Open);
    AddAction(file, Text::kOpenParameters, [this] { form_.OpenParameters(); });
    recentMenu_ = file->addMenu("");
    captions_.emplace_back([this] { recentMenu_->setTitle(UiText(Text::kRecentFiles)); });
    file->addSeparator();
    QAction* save = AddAction(file, Text::kSaveParametersAs, [this] { form_.SaveParameters(); });
    save->setShortcut(QKeySequence::Save);
    QAction* transform = AddAction(file, Text::kTransformFile, [this] { TransformFile({}); });
    transform->setShortcut(Qt::CTRL | Qt::Key_T);
    file->addSeparator();
    startPage_ =
        AddAction(file, Text::kStartPage, [this] { form_.ShowStartPage(startPage_->isChecked()); });
    startPage_->setCheckable(true);
    AddAction(file, Text::kQuit, [this] { close(); })->setShortcut(QKeySequence::Quit);
    needParameters_ = {save, transform};

    QMenu* parameters = AddMenu(Text::kParametersMenu);
    AddAction(parameters, Text::kSixParameters, [this] { form_.EditAffine(); });
    AddAction(parameters, Text::kPolynomial, [this] { form_.ViewPolynomial(); });
    AddAction(parameters, Text::kNationalTransformation, [this] { form_.ChooseNational(); });
    adjust_ = AddAction(parameters, Text::kFitToPoints, [this] { form_.Adjust(); });
    invert_ = AddAction(parameters, Text::kInvert, [this] { form_.Invert(); });

    QMenu* languages = AddMenu(Text::kLanguageMenu);
    auto* group = new QActionGroup(languages);
    for (const app::Language& language : app::Languages()) {
        QAction* action = languages->addAction(language.name, this, [this, &language] {
            RunAction([&] { form_.SwitchLanguage(language.id); });
        });
        action->setCheckable(true);
        action->setActionGroup(group);
        captions_.emplace_back(
            [action, &language] { action->setChecked(language.id == CurrentMlLanguage()); });
    }
    AddAction(AddMenu(Text::kHelpMenu), Text::kAbout,
              [this] { form_.ShowAbout(version_, qVersion()); });
}

QMenu* MainWindow::AddMenu(Text text) {
    QMenu* menu = menuBar()->addMenu("");
    lettered_.push_back({text, [menu](const QString& caption) { menu->setTitle(caption); }});
    return menu;
}

QAction* MainWindow::AddAction(QMenu* menu, Text text, const Action& action) {
    QAction* added = menu->addAction("", this, [action] { RunAction(action); });
    captions_.emplace_back([added, text] { added->setText(UiText(text)); });
    return added;
}

void MainWindow::Open(const std::string& fileName) {
    RunAction([&] {
        if (form_.OpenFile(fileName) == DesktopForm::FileKind::kCoordinates) {
            TransformFile(fileName);
        }
    });
}

void MainWindow::TransformFile(const std::string& fileName) {
    if (!form_.HasParameters()) {
        ShowMessage(Translated(Text::kNoParametersYet), Icon::kInformation);
        return;
    }
    TransformForm form(form_.Record());
    if (!fileName.empty()) form.Input(fileName);
    TransformWindow(form, this).exec();
}

void MainWindow::Redraw() {
    for (const auto& set : captions_) set();
    QStringList texts;
    for (const Lettered& control : lettered_) texts << UiText(control.text);
    const QStringList marked = WithMnemonics(texts);
    auto caption = marked.begin();
    for (const Lettered& control : lettered_) control.setCaption(*caption++);
    for (QAction* action : needParameters_) action->setEnabled(form_.HasParameters());
    adjust_->setEnabled(form_.HasControlPoints());
    invert_->setEnabled(form_.CanInvert());
    startPage_->setEnabled(form_.HasParameters());
    startPage_->setChecked(form_.OnStartPage());
    pages_->setCurrentIndex(form_.OnStartPage() ? 0 : 1);
    RedrawRecent();
    type_->setText(QString::fromStdString(form_.TypeText()));
    listing_->setPlainText(
        QString::fromStdString(form_.ListingText()).remove('\r').remove('\t').trimmed());
    formula_->setText(QString::fromStdString(form_.FormulaText()).remove('\r').trimmed());
    formula_->setVisible(!formula_->text().isEmpty());
    RedrawResults();
}

void MainWindow::RedrawRecent() {
    recent_->clear();
    recentMenu_->clear();
    for (const std::string& name : form_.Recent()) {
        const QFileInfo info(QString::fromStdString(name));
        auto* item = new QListWidgetItem(info.fileName() + "   (" + info.path() + ")", recent_);
        item->setData(Qt::UserRole, info.filePath());
        recentMenu_->addAction(info.filePath(), this, [this, name] { Open(name); });
    }
    recentMenu_->setEnabled(!form_.Recent().empty());
}

void MainWindow::RedrawResults() {
    const DesktopForm::PointTexts point{point_[0]->text().toStdString(),
                                        point_[1]->text().toStdString()};
    const auto image = form_.Image(point);
    image_[0]->setText(QString::fromStdString(image.first));
    image_[1]->setText(QString::fromStdString(image.second));
    const auto& unit = app::AngleUnits()[static_cast<std::size_t>(unit_->currentIndex())];
    const auto direction = form_.ImageOfDirection(direction_->text().toStdString(), unit,
                                                  length_->text().toStdString(), point);
    directionImage_->setText(QString::fromStdString(direction.image));
    uncertainty_->setText(
        direction.image.empty() ? QString() : "± " + QString::fromStdString(direction.uncertainty));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList names;
    for (const QUrl& url : event->mimeData()->urls()) names << url.toLocalFile();
    event->acceptProposedAction();
    // Later: dialogs must not keep the program that the files come from waiting.
    QMetaObject::invokeMethod(
        this,
        [this, names] {
            for (const QString& name : names) Open(name.toStdString());
        },
        Qt::QueuedConnection);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    RememberSize(kName, size());
    QMainWindow::closeEvent(event);
}

}  // namespace kv_tr::desktop
