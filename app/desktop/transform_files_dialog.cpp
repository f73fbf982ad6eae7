// The window that transforms files with a given transformation.
#include "desktop/transform_files_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QTreeWidget>

#include "desktop/ui_text.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/file_name.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"

namespace kv_tr::desktop {
namespace {

using workbench::FileProgress;
using workbench::Phrase;
using State = FileProgress::State;

constexpr const char* kTransformFiles = "TransformFiles";
constexpr std::size_t kPreviewLines = 8;

enum FileColumn { kFile, kState, kDone, kOutside, kResult, kFileColumns };

std::vector<std::string> LocalFiles(const QMimeData& data) {
    std::vector<std::string> names;
    for (const QUrl& url : data.urls()) names.push_back(FileNameOf(url.toLocalFile()));
    return names;
}

QString StateText(const FileProgress& file) {
    switch (file.state) {
        case State::kWaiting: return UiText(Phrase::kStateWaiting);
        case State::kRunning: return QString("%1 %").arg(static_cast<int>(100 * file.done));
        case State::kFailed: return "✗ " + UiText(Phrase::kStateFailed);
        case State::kCancelled: return UiText(Phrase::kStateCancelled);
        case State::kDone: break;
    }
    if (file.badLines == 0) return "✓ " + UiText(Phrase::kStateDone);
    return "! " + UiText(Phrase::kStateBadLines, {std::to_string(file.badLines)});
}

}  // namespace

void TransformFilesWith(QWidget* owner, workbench::AppliedTransformation applied,
                        const std::vector<std::string>& fileNames) {
    TransformFilesDialog dialog(std::move(applied), owner);
    dialog.Add(fileNames);
    const OwnCursors cursors;
    dialog.exec();
}

TransformFilesDialog::TransformFilesDialog(workbench::AppliedTransformation applied, QWidget* owner)
    : QDialog(owner), form_(std::move(applied)) {
    setWindowTitle(UiText(Phrase::kTransformFilesTitle));
    setAcceptDrops(true);
    sentences_ = new QPlainTextEdit(this);
    sentences_->setObjectName("sentences");
    sentences_->setReadOnly(true);
    sentences_->setTabChangesFocus(true);
    sentences_->setMaximumHeight(4 * fontMetrics().lineSpacing());
    run_ = new QPushButton(this);
    run_->setObjectName("run");
    run_->setDefault(true);
    connect(run_, &QPushButton::clicked, [this] { RunAction([this] { RunOrStop(); }); });
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(run_, QDialogButtonBox::ActionRole);
    auto* close = MakeButton(Phrase::kClose, "close", &TransformFilesDialog::reject);
    buttons->addButton(close, QDialogButtonBox::RejectRole);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeFiles(), 3);
    layout->addWidget(settings_ = MakeOptions());
    preview_ = new QTreeWidget(this);
    preview_->setRootIsDecorated(false);
    preview_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    preview_->setHeaderLabels({UiText(Phrase::kBefore), UiText(Phrase::kAfter)});
    layout->addWidget(preview_, 3);
    layout->addWidget(results_ = MakeResults());
    layout->addWidget(sentences_);
    layout->addWidget(buttons);
    connect(&poll_, &QTimer::timeout, this, &TransformFilesDialog::Poll);
    connect(new QShortcut(QKeySequence::Paste, this), &QShortcut::activated, this,
            [this] { Paste(); });
    resize(RememberedSize(kTransformFiles, {900, 600}));
    GiveLetters();
    Redraw();
}

QPushButton* TransformFilesDialog::MakeButton(Phrase phrase, const char* name,
                                              void (TransformFilesDialog::*act)()) {
    auto* button = new QPushButton(UiText(phrase), this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, [this, act] { RunAction([&] { (this->*act)(); }); });
    fileButtons_.push_back(button);
    return button;
}

QLabel* TransformFilesDialog::MakeLabel(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text + (text.endsWith(':') ? "" : ":"), this);
    label->setBuddy(buddy);
    labels_.push_back(label);
    return label;
}

QWidget* TransformFilesDialog::MakeFiles() {
    auto* part = new QWidget(this);
    files_ = new QTreeWidget(part);
    files_->setObjectName("files");
    files_->setRootIsDecorated(false);
    files_->setHeaderLabels({UiText(Text::kReportFile), UiText(Phrase::kStateColumn),
                             UiText(Phrase::kDoneColumn), UiText(Phrase::kOutsideColumn),
                             UiText(Phrase::kResultColumn)});
    files_->headerItem()->setToolTip(kOutside, UiText(Phrase::kOutsideTip));
    connect(files_, &QTreeWidget::currentItemChanged, [this] {
        if (isDrawing_) return;
        RedrawOptions();
        RedrawPreview();
    });
    auto* remove = new QShortcut(QKeySequence::Delete, files_);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, [this] { RemoveFile(); });
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins({});
    row->addWidget(files_, 1);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(MakeButton(Phrase::kAddFiles, "add", &TransformFilesDialog::ChooseFiles));
    buttons->addWidget(MakeButton(Phrase::kPasteText, "paste", &TransformFilesDialog::Paste));
    remove_ = MakeButton(Phrase::kRemoveFiles, "remove", &TransformFilesDialog::RemoveFile);
    buttons->addWidget(remove_);
    buttons->addStretch();
    row->addLayout(buttons);
    return part;
}

QCheckBox* TransformFilesDialog::MakeOption(const QString& text, const char* name,
                                            bool app::CoordinateOptions::*option) {
    auto* box = new QCheckBox(text, this);
    box->setObjectName(name);
    options_.emplace_back(box, option);
    connect(box, &QCheckBox::clicked, [this] { TakeOptions(); });
    return box;
}

QWidget* TransformFilesDialog::MakeOptions() {
    auto* part = new QWidget(this);
    auto* grid = new QGridLayout(part);
    grid->setContentsMargins({});
    headerLines_ = new QSpinBox(part);
    headerLines_->setObjectName("headerLines");
    headerLines_->setRange(0, 1000);
    decimals_ = new QSpinBox(part);
    decimals_->setObjectName("decimals");
    decimals_->setRange(0, 15);
    for (QSpinBox* box : {headerLines_, decimals_})
        connect(box, &QSpinBox::valueChanged, [this] { TakeOptions(); });
    for (QComboBox*& list : columns_) {
        list = new QComboBox(part);
        list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        connect(list, &QComboBox::activated, [this] { TakeOptions(); });
    }
    columns_[0]->setObjectName("firstColumn");
    columns_[1]->setObjectName("secondColumn");
    inverse_ = new QCheckBox(UiText(Phrase::kInverseOption), part);
    inverse_->setObjectName("inverse");
    inverse_->setEnabled(form_.CanInvert());
    if (!form_.CanInvert()) inverse_->setToolTip(UiText(Text::kNoInverse));
    connect(inverse_, &QCheckBox::clicked, [this](bool checked) {
        form_.Inverse(checked);
        outcome_.clear();
        Redraw();
    });
    const std::pair<QString, QWidget*> rows[] = {{UiText(Phrase::kHeaderLines), headerLines_},
                                                 {UiText(Text::kDecimalsLabel), decimals_},
                                                 {UiText(Phrase::kFirstColumn), columns_[0]},
                                                 {UiText(Phrase::kSecondColumn), columns_[1]}};
    for (int i = 0; i < 4; ++i) {
        grid->addWidget(MakeLabel(rows[i].first, rows[i].second), i / 2, 2 * (i % 2));
        grid->addWidget(rows[i].second, i / 2, 2 * (i % 2) + 1, Qt::AlignLeft);
    }
    grid->addWidget(MakeOption(UiText(Text::kHasDecimalCommas), "decimalComma",
                               &app::CoordinateOptions::decimalComma),
                    0, 4);
    grid->addWidget(
        MakeOption(UiText(Text::kKeepGoingOption), "keepGoing", &app::CoordinateOptions::keepGoing),
        1, 4);
    grid->addWidget(inverse_, 2, 4);
    grid->setColumnStretch(4, 1);
    return part;
}

QWidget* TransformFilesDialog::MakeResults() {
    auto* part = new QWidget(this);
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins({});
    folder_ = new QLineEdit(part);
    folder_->setObjectName("folder");
    folder_->setPlaceholderText(UiText(Phrase::kBesideFiles));
    pattern_ = new QLineEdit(QString::fromStdString(form_.Pattern()), part);
    pattern_->setObjectName("pattern");
    pattern_->setToolTip(UiText(Phrase::kPatternTip));
    connect(folder_, &QLineEdit::textChanged, [this](const QString& text) {
        form_.Folder(text.trimmed().toStdString());
        RedrawStates();
    });
    connect(pattern_, &QLineEdit::textChanged, [this](const QString& text) {
        form_.Pattern(text.trimmed().toStdString());
        RedrawStates();
    });
    row->addWidget(MakeLabel(UiText(Phrase::kResultFolder), folder_));
    row->addWidget(folder_, 2);
    auto* browse = new QPushButton(UiText(Text::kBrowse), part);
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, [this] { ChooseFolder(); });
    fileButtons_.push_back(browse);
    row->addWidget(browse);
    row->addWidget(MakeLabel(UiText(Phrase::kResultPattern), pattern_));
    row->addWidget(pattern_, 1);
    return part;
}

void TransformFilesDialog::GiveLetters() {
    QStringList texts{UiText(Text::kTransformButton)};
    for (const QPushButton* button : fileButtons_) texts << button->text();
    for (const QLabel* label : labels_) texts << label->text();
    for (const auto& [box, option] : options_) texts << box->text();
    texts << inverse_->text();
    const QStringList marked = WithMnemonics(texts.replaceInStrings("&", ""));
    auto text = marked.begin();
    run_->setText(*text++);
    for (QPushButton* button : fileButtons_) button->setText(*text++);
    for (QLabel* label : labels_) label->setText(*text++);
    for (const auto& [box, option] : options_) box->setText(*text++);
    inverse_->setText(*text);
}

void TransformFilesDialog::Add(const std::vector<std::string>& fileNames) {
    if (job_ || fileNames.empty()) return;
    form_.Add(fileNames);
    outcome_.clear();
    Redraw();
}

void TransformFilesDialog::ChooseFiles() {
    const OwnCursors cursors;
    QStringList chosen = QFileDialog::getOpenFileNames(this, UiText(Phrase::kTransformFilesTitle),
                                                       QString::fromStdString(InitDir()));
    std::vector<std::string> names;
    for (const QString& name : chosen) names.push_back(FileNameOf(name));
    if (!names.empty()) RememberFolderOf(names.front());
    Add(names);
}

void TransformFilesDialog::Paste() {
    if (job_) return;
    const QMimeData* content = QApplication::clipboard()->mimeData();
    if (content == nullptr) return;
    if (content->hasUrls()) return Add(LocalFiles(*content));
    if (content->text().trimmed().isEmpty()) return;
    form_.AddText(content->text().toStdString());
    outcome_.clear();
    Redraw();
    files_->setCurrentItem(files_->topLevelItem(files_->topLevelItemCount() - 1));
}

void TransformFilesDialog::RemoveFile() {
    if (job_ || form_.Count() == 0) return;
    form_.Remove(Current());
    outcome_.clear();
    Redraw();
}

void TransformFilesDialog::ChooseFolder() {
    const OwnCursors cursors;
    const QString start =
        folder_->text().isEmpty() ? QString::fromStdString(InitDir()) : folder_->text();
    const QString chosen =
        QFileDialog::getExistingDirectory(this, UiText(Phrase::kResultFolder), start);
    if (!chosen.isEmpty()) folder_->setText(QDir::toNativeSeparators(chosen));
}

void TransformFilesDialog::RunOrStop() {
    if (job_) {
        job_->Cancel();
    } else {
        Start();
    }
}

void TransformFilesDialog::Start() {
    const std::vector<std::string> existing = form_.Existing();
    if (!existing.empty()) {
        constexpr std::size_t kNamed = 10;
        std::string names;
        for (std::size_t i = 0; i < std::min(existing.size(), kNamed); ++i)
            names += (i > 0 ? "\n" : "") + existing[i];
        if (existing.size() > kNamed) names += "\n...";
        if (Ask({.text = workbench::Said(Phrase::kReplaceResults, {names}),
                 .title = {},
                 .icon = kv_tr::Icon::kNone,
                 .buttons = Buttons::kYesNo,
                 .defaultAnswer = Answer::kNo}) != Answer::kYes)
            return;
    }
    job_ = std::make_unique<workbench::TransformJob>(form_.Plan(!existing.empty()));
    settings_->setEnabled(false);
    results_->setEnabled(false);
    run_->setText(UiText(Phrase::kStop));
    poll_.start(50);
    Poll();
}

void TransformFilesDialog::Poll() {
    if (!job_) return;
    const bool isOver = job_->IsOver();
    outcome_ = job_->Files();
    RedrawStates();
    if (isOver) Finish();
}

void TransformFilesDialog::Finish() {
    poll_.stop();
    QStringList sentences;
    std::uint64_t outside = 0;
    for (const FileProgress& file : outcome_) {
        outside += file.outside;
        for (const std::string& problem : file.problems)
            sentences << QString::fromStdString(problem);
    }
    const auto done = std::ranges::count(outcome_, State::kDone, &FileProgress::state);
    sentences.prepend(
        UiText(Phrase::kTransformedFiles,
               {std::to_string(done), std::to_string(outcome_.size()), std::to_string(outside)}));
    if (const std::string text = job_->TransformedText(); !text.empty()) {
        QApplication::clipboard()->setText(QString::fromStdString(text));
        sentences << UiText(Phrase::kResultOnClipboard);
    }
    job_.reset();
    settings_->setEnabled(true);
    results_->setEnabled(true);
    GiveLetters();
    RedrawStates();
    sentences_->setPlainText(sentences.join('\n'));
    sentences_->show();
}

std::size_t TransformFilesDialog::Current() const {
    const int row = files_->indexOfTopLevelItem(files_->currentItem());
    return row < 0 ? 0 : static_cast<std::size_t>(row);
}

void TransformFilesDialog::TakeOptions() {
    if (isDrawing_) return;
    app::CoordinateOptions options = form_.Options();
    options.headerLines = static_cast<std::uint64_t>(headerLines_->value());
    options.decimals = decimals_->value();
    for (const auto& [box, option] : options_) options.*option = box->isChecked();
    const int first = columns_[0]->currentIndex();
    const int second = columns_[1]->currentIndex();
    options.columns.reset();
    if (first > 0 || second > 0) {
        // One of both chosen makes the other one its neighbour.
        const int firstColumn = first > 0 ? first : std::max(second - 1, 1);
        const int secondColumn = second > 0 ? second : first + 1;
        options.columns = {{static_cast<std::size_t>(firstColumn - 1),
                            static_cast<std::size_t>(secondColumn - 1)}};
    }
    form_.Options(options);
    outcome_.clear();
    RedrawOptions();
    RedrawPreview();
    RedrawStates();
}

void TransformFilesDialog::Redraw() {
    RedrawFiles();
    RedrawOptions();
    RedrawPreview();
    RedrawStates();
}

void TransformFilesDialog::RedrawFiles() {
    isDrawing_ = true;
    const int current = static_cast<int>(Current());
    files_->clear();
    for (std::size_t i = 0; i < form_.Count(); ++i) {
        auto* item = new QTreeWidgetItem(files_, {QString::fromStdString(form_.NameOf(i))});
        item->setToolTip(kFile, QString::fromStdString(form_.InputOf(i)));
        for (const int column : {kDone, kOutside}) item->setTextAlignment(column, Qt::AlignRight);
    }
    files_->setCurrentItem(
        files_->topLevelItem(std::min(current, files_->topLevelItemCount() - 1)));
    isDrawing_ = false;
}

void TransformFilesDialog::RedrawOptions() {
    isDrawing_ = true;
    const app::CoordinateOptions& options = form_.Options();
    headerLines_->setValue(static_cast<int>(options.headerLines));
    decimals_->setValue(options.decimals);
    for (const auto& [box, option] : options_) box->setChecked(options.*option);
    inverse_->setChecked(form_.Inverse());
    std::size_t fields = form_.Count() > 0 ? form_.FieldCount(Current()) : 0;
    if (options.columns)
        fields = std::max({fields, (*options.columns)[0] + 1, (*options.columns)[1] + 1});
    for (std::size_t i = 0; i < 2; ++i) {
        QStringList entries{UiText(Phrase::kAutomatic)};
        for (std::size_t field = 1; field <= fields; ++field)
            entries << UiText(Phrase::kColumnNumber, {std::to_string(field)});
        columns_[i]->clear();
        columns_[i]->addItems(entries);
        if (options.columns)
            columns_[i]->setCurrentIndex(static_cast<int>((*options.columns)[i]) + 1);
    }
    isDrawing_ = false;
}

void TransformFilesDialog::RedrawPreview() {
    preview_->clear();
    if (form_.Count() == 0) return;
    for (const auto& line : form_.Preview(Current(), kPreviewLines)) {
        const bool bad = line.after.empty() && !line.before.empty();
        auto* item = new QTreeWidgetItem(preview_, {QString::fromStdString(line.before),
                                                    bad ? "✗ " + UiText(Phrase::kNotTransformed)
                                                        : QString::fromStdString(line.after)});
        item->setDisabled(line.isHeader);
    }
    preview_->resizeColumnToContents(0);
}

void TransformFilesDialog::RedrawStates() {
    for (std::size_t i = 0; i < form_.Count(); ++i) {
        QTreeWidgetItem* item = files_->topLevelItem(static_cast<int>(i));
        const std::string result = form_.ResultOf(i);
        item->setText(kResult,
                      result.empty() ? UiText(Phrase::kClipboard) : QString::fromStdString(result));
        const bool isKnown = i < outcome_.size();
        const FileProgress file = isKnown ? outcome_[i] : FileProgress{};
        const bool isCounted = file.state == State::kDone;
        item->setText(kState, isKnown ? StateText(file) : QString());
        item->setText(kDone, isCounted ? QString::number(file.count) : QString());
        item->setText(kOutside, isCounted ? QString::number(file.outside) : QString());
        item->setToolTip(kResult, item->text(kResult));
    }
    for (int column = 0; column < kFileColumns; ++column) files_->resizeColumnToContents(column);
    const bool isRunning = job_ != nullptr;
    for (QPushButton* button : fileButtons_)
        button->setEnabled(!isRunning || button->objectName() == "close");
    remove_->setEnabled(!isRunning && form_.Count() > 0);
    const std::vector<std::string> obstacles = form_.Obstacles();
    run_->setEnabled(isRunning || obstacles.empty());
    QStringList sentences;
    if (!isRunning && outcome_.empty()) {
        for (const std::string& obstacle : obstacles) sentences << QString::fromStdString(obstacle);
    }
    sentences_->setPlainText(sentences.join('\n'));
    sentences_->setVisible(!sentences.isEmpty());
}

void TransformFilesDialog::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && !job_) event->acceptProposedAction();
}

void TransformFilesDialog::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    Add(LocalFiles(*event->mimeData()));
}

void TransformFilesDialog::reject() {
    if (job_) return job_->Cancel();
    QDialog::reject();
}

void TransformFilesDialog::done(int result) {
    RememberSize(kTransformFiles, size());
    QDialog::done(result);
}

}  // namespace kv_tr::desktop
