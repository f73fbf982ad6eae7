// The window that transforms a coordinate file.
#include "desktop/transform_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <memory>

#include "desktop/ui_text.h"
#include "kv_tr/qt/cursor_scope.h"

namespace kv_tr::desktop {
namespace {

/// A bar above the window while a transformation goes on that takes longer than the user's
/// patience. Before and after, when questions are asked and the outcome is told, there is none.
class ProgressBar {
public:
    ProgressBar(QWidget& window, std::chrono::milliseconds patience)
        : window_(window), patience_(patience) {}

    /// Shows how much is done, 0 to 1; false when the user has cancelled the rest.
    bool Show(double done) {
        constexpr std::chrono::milliseconds kInterval{100};
        if (!sinceDrawn_.isValid()) sinceDrawn_.start();
        if (done >= 1.0) bar_.reset();
        if (done >= 1.0 ||
            std::chrono::milliseconds(sinceDrawn_.elapsed()) < (bar_ ? kInterval : patience_)) {
            return true;
        }
        if (bar_ == nullptr) Open();
        bar_->setValue(static_cast<int>(done * kSteps));
        QApplication::processEvents();
        sinceDrawn_.start();
        return !bar_->wasCanceled();
    }

private:
    static constexpr int kSteps = 1000;

    void Open() {
        bar_ = std::make_unique<QProgressDialog>(window_.windowTitle(), UiText(Text::kCancel), 0,
                                                 kSteps, &window_);
        bar_->setWindowTitle(window_.windowTitle());
        bar_->setWindowModality(Qt::WindowModal);
        bar_->setAutoReset(false);
        bar_->show();  // before any event could start a second run
    }

    QWidget& window_;
    const std::chrono::milliseconds patience_;
    QElapsedTimer sinceDrawn_;
    const OwnCursors cursors_;  // work can be cancelled
    std::unique_ptr<QProgressDialog> bar_;
};

}  // namespace

TransformWindow::TransformWindow(TransformForm& form, QWidget* parent,
                                 std::chrono::milliseconds patience)
    : FormWindow(form, "Transform", {640, 420}, parent), form_(form), patience_(patience) {
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeSettings());
    layout->addWidget(MakeOption("chkNoId", &app::CoordinateOptions::noId));
    layout->addWidget(MakeOption("chkDecimalComma", &app::CoordinateOptions::decimalComma));
    layout->addWidget(MakeOption("chkKeepGoing", &app::CoordinateOptions::keepGoing));
    layout->addWidget(MakePreview(), 1);
    run_ = MakeButton("cmdRun", [this] { Run(); });
    run_->setDefault(true);
    layout->addWidget(MakeEnds(run_, MakeCancelButton("cmdNok")));
    Follow();
}

QLayout* TransformWindow::MakeSettings() {
    auto* grid = new QGridLayout;
    input_ = AddFileRow(*grid, "Input", &TransformForm::BrowseInput);
    output_ = AddFileRow(*grid, "Output", &TransformForm::BrowseOutput);
    connect(input_, &QLineEdit::textEdited,
            [this](const QString& text) { form_.Input(text.toStdString()); });
    connect(output_, &QLineEdit::textEdited,
            [this](const QString& text) { form_.Output(text.toStdString()); });
    auto* decimals = new QSpinBox(this);
    decimals->setRange(0, 15);
    decimals->setValue(form_.Options().decimals);
    connect(decimals, &QSpinBox::valueChanged, [this](int value) {
        app::CoordinateOptions options = form_.Options();
        options.decimals = value;
        form_.Options(options);
    });
    auto* label = Bind("lblDecimals", new QLabel(this));
    label->setBuddy(decimals);
    grid->addWidget(label, grid->rowCount(), 0);
    grid->addWidget(decimals, grid->rowCount() - 1, 1, Qt::AlignLeft);
    return grid;
}

QLineEdit* TransformWindow::AddFileRow(QGridLayout& grid, const char* name,
                                       void (TransformForm::*browse)()) {
    const int row = grid.rowCount();
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString("txt") + name);
    auto* label = Bind(QString("lbl") + name, new QLabel(this));
    label->setBuddy(edit);
    grid.addWidget(label, row, 0);
    grid.addWidget(edit, row, 1);
    grid.addWidget(MakeButton(QString("cmdBrowse") + name, [this, browse] { (form_.*browse)(); }),
                   row, 2);
    return edit;
}

QWidget* TransformWindow::MakeOption(const char* name, bool app::CoordinateOptions::*option) {
    auto* box = MakeCheckBox(name, [this, option] {
        app::CoordinateOptions options = form_.Options();
        options.*option = !(options.*option);
        form_.Options(options);
    });
    box->setChecked(form_.Options().*option);
    return box;
}

QWidget* TransformWindow::MakePreview() {
    auto* frame = Bind("frmPreview", new QGroupBox(this));
    preview_ = new QTreeWidget(frame);
    preview_->setHeaderHidden(true);
    preview_->setColumnCount(2);
    preview_->setRootIsDecorated(false);
    preview_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    preview_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    (new QVBoxLayout(frame))->addWidget(preview_);
    return frame;
}

void TransformWindow::Redraw() {
    FormWindow::Redraw();
    const auto show = [](QLineEdit* edit, const std::string& text) {
        if (edit->text().toStdString() != text) edit->setText(QString::fromStdString(text));
    };
    show(input_, form_.Input());
    show(output_, form_.Output());
    RedrawPreview();
}

void TransformWindow::RedrawPreview() {
    const auto lines = form_.Preview();
    preview_->clear();
    for (const auto& line : lines) {
        const QString image = QString::fromStdString(line.image);
        new QTreeWidgetItem(preview_, {QString::fromStdString(line.source),
                                       image.isEmpty() ? image : "→ " + image});
    }
    run_->setEnabled(!lines.empty());
}

void TransformWindow::Run() {
    ProgressBar bar(*this, patience_);
    if (form_.Run([&bar](double done) { return bar.Show(done); })) accept();
}

}  // namespace kv_tr::desktop
