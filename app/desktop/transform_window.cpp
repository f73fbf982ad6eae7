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
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr::desktop {
namespace {

constexpr const char* kName = "Transform";

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
        bar_ = std::make_unique<QProgressDialog>(window_.windowTitle(), UiText(18), 0, kSteps,
                                                 &window_);
        bar_->setWindowTitle(window_.windowTitle());
        bar_->setWindowModality(Qt::WindowModal);
        bar_->setAutoReset(false);
        bar_->show();  // before any event could start a second run
    }

    QWidget& window_;
    const std::chrono::milliseconds patience_;
    QElapsedTimer sinceDrawn_;
    std::unique_ptr<QProgressDialog> bar_;
};

}  // namespace

TransformWindow::TransformWindow(TransformForm& form, QWidget* parent,
                                 std::chrono::milliseconds patience)
    : QDialog(parent), form_(form), patience_(patience) {
    setWindowTitle(WithoutDots(UiText(1173)));
    resize(RememberedSize(kName, {640, 420}));
    auto* grid = new QGridLayout;
    input_ = AddFileRow(*grid, 1186, [this] { form_.BrowseInput(); });
    input_->setObjectName("input");
    output_ = AddFileRow(*grid, 1187, [this] { form_.BrowseOutput(); });
    output_->setObjectName("output");
    connect(input_, &QLineEdit::textEdited, [this](const QString& text) {
        form_.Input(text.toStdString());
        Redraw();
    });
    connect(output_, &QLineEdit::textEdited,
            [this](const QString& text) { form_.output = text.toStdString(); });

    auto* decimals = new QSpinBox(this);
    decimals->setRange(0, 15);
    decimals->setValue(form.options.decimals);
    connect(decimals, &QSpinBox::valueChanged, [this](int value) {
        form_.options.decimals = value;
        RedrawPreview();
    });
    grid->addWidget(new QLabel(UiText(1188), this), 2, 0);
    grid->addWidget(decimals, 2, 1, Qt::AlignLeft);

    auto* frame = new QGroupBox(UiText(1189), this);
    preview_ = new QTreeWidget(frame);
    preview_->setHeaderHidden(true);
    preview_->setColumnCount(2);
    preview_->setRootIsDecorated(false);
    preview_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    preview_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    (new QVBoxLayout(frame))->addWidget(preview_);

    run_ = new QPushButton(UiText(1190), this);
    run_->setObjectName("run");
    connect(run_, &QPushButton::clicked, [this] { Run(); });
    auto* cancel = new QPushButton(UiText(18), this);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* ends = new QHBoxLayout;
    ends->addStretch();
    ends->addWidget(run_);
    ends->addWidget(cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(MakeCheckBox(1019, &app::CoordinateOptions::noId));
    layout->addWidget(MakeCheckBox(1071, &app::CoordinateOptions::decimalComma));
    layout->addWidget(MakeCheckBox(1020, &app::CoordinateOptions::keepGoing));
    layout->addWidget(frame, 1);
    layout->addLayout(ends);
    run_->setDefault(true);
    Redraw();
}

QLineEdit* TransformWindow::AddFileRow(QGridLayout& grid, int labelId,
                                       const std::function<void()>& browse) {
    const int row = grid.rowCount() == 1 && grid.count() == 0 ? 0 : grid.rowCount();
    auto* edit = new QLineEdit(this);
    auto* label = new QLabel(UiText(labelId), this);
    label->setBuddy(edit);
    auto* button = new QPushButton(UiText(17), this);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, [this, browse] {
        browse();
        Redraw();
    });
    grid.addWidget(label, row, 0);
    grid.addWidget(edit, row, 1);
    grid.addWidget(button, row, 2);
    return edit;
}

QCheckBox* TransformWindow::MakeCheckBox(int textId, bool app::CoordinateOptions::*option) {
    auto* box = new QCheckBox(UiText(textId), this);
    connect(box, &QCheckBox::toggled, [this, option](bool checked) {
        form_.options.*option = checked;
        RedrawPreview();
    });
    return box;
}

void TransformWindow::Redraw() {
    const auto show = [](QLineEdit* edit, const std::string& text) {
        if (edit->text().toStdString() != text) edit->setText(QString::fromStdString(text));
    };
    show(input_, form_.Input());
    show(output_, form_.output);
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
    try {
        ProgressBar bar(*this, patience_);
        if (form_.Run([&bar](double done) { return bar.Show(done); })) accept();
    } catch (const RuntimeError& error) {
        ShowMessage(error.what(), Icon::kExclamation);
    }
}

void TransformWindow::done(int result) {
    RememberSize(kName, size());
    QDialog::done(result);
}

}  // namespace kv_tr::desktop
