// The window that shows how points are understood before they are taken.
#include "desktop/preview_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>

#include "desktop/ui_text.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"

namespace kv_tr::desktop {
namespace {

using workbench::Phrase;
using workbench::PreviewChoice;

constexpr const char* kPreview = "Preview";
constexpr std::size_t kRows = 50;

bool LooksLikeNumber(const QString& text) {
    return !text.isEmpty() && (text.front().isDigit() || text.front() == '-');
}

}  // namespace

PreviewDialog::PreviewDialog(workbench::OpenPreview& preview, QWidget* owner)
    : QDialog(owner), preview_(preview), form_(preview) {
    setWindowTitle(UiText(Phrase::kPreviewTitle));
    understood_ = new QLabel(this);
    understood_->setObjectName("understood");
    understood_->setWordWrap(true);
    understood_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    table_ = new QTableWidget(this);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setAlternatingRowColors(true);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    table_->setTabKeyNavigation(false);
    sentences_ = new QPlainTextEdit(this);
    sentences_->setObjectName("sentences");
    sentences_->setReadOnly(true);
    sentences_->setTabChangesFocus(true);
    sentences_->setMaximumHeight(5 * fontMetrics().lineSpacing());
    take_ = new QPushButton(this);
    take_->setObjectName("take");
    take_->setDefault(true);
    auto* cancel = new QPushButton(this);
    const QStringList ends = WithMnemonics({UiText(Text::kCancel), UiText(Phrase::kSwapLists)});
    cancel->setText(ends[0]);
    swap_ = new QPushButton(ends[1], this);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(take_, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    buttons->addButton(swap_, QDialogButtonBox::ActionRole);
    swap_->setVisible(preview_.IsOfLists());
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(swap_, &QPushButton::clicked, [this] {
        preview_.SwapLists();
        Redraw();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeChoices());
    layout->addWidget(understood_);
    layout->addWidget(table_, 1);
    layout->addWidget(sentences_);
    layout->addWidget(buttons);
    resize(RememberedSize(kPreview, {860, 560}));
    Redraw();
    take_->setFocus();
}

QWidget* PreviewDialog::MakeChoices() {
    auto* choices = new QWidget(this);
    auto* row = new QHBoxLayout(choices);
    row->setContentsMargins({});
    auto* left = new QFormLayout;
    auto* right = new QFormLayout;
    for (const PreviewChoice choice : workbench::kPreviewChoices)
        AddChoice(choices_.size() < 4 ? *left : *right, choice);
    sigmas_ = new QCheckBox(UiText(Phrase::kSigmasFollow), this);
    right->addRow(sigmas_);
    connect(sigmas_, &QCheckBox::clicked, [this](bool checked) {
        form_.HasSigmas(checked);
        Redraw();
    });
    row->addLayout(left, 1);
    row->addSpacing(16);
    row->addLayout(right, 1);
    return choices;
}

void PreviewDialog::AddChoice(QFormLayout& column, PreviewChoice choice) {
    auto* label = new QLabel(this);
    auto* list = new QComboBox(this);
    list->setObjectName(QString("choice%1").arg(choices_.size()));
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(18);
    label->setBuddy(list);
    column.addRow(label, list);
    choices_.push_back({choice, label, list});
    connect(list, &QComboBox::activated, [this, choice](int entry) {
        form_.Choose(choice, static_cast<std::size_t>(entry));
        Redraw();
    });
}

void PreviewDialog::Redraw() {
    RedrawChoices();
    RedrawTable();
    RedrawSentences();
    take_->setEnabled(preview_.CanTake());
    take_->setText(preview_.CanTake()
                       ? UiText(Phrase::kTakePoints, {std::to_string(preview_.Count())})
                       : UiText(Phrase::kNothingToTake));
}

void PreviewDialog::RedrawChoices() {
    QStringList labels;
    for (const Choice& choice : choices_) {
        const auto shown = form_.ListOf(choice.what);
        QStringList entries;
        for (const std::string& entry : shown.entries) entries << QString::fromStdString(entry);
        choice.list->clear();
        choice.list->addItems(entries);
        choice.list->setCurrentIndex(static_cast<int>(shown.current));
        choice.list->setEnabled(shown.matters);
        labels << QString::fromStdString(shown.label) + ":";
    }
    labels << sigmas_->text().remove('&');
    const QStringList marked = WithMnemonics(labels);
    for (std::size_t i = 0; i < choices_.size(); ++i)
        choices_[i].label->setText(marked[static_cast<qsizetype>(i)]);
    sigmas_->setText(marked.back());
    sigmas_->setChecked(form_.HasSigmas());
    QString understood;
    for (const auto& [name, value] : preview_.Understood()) {
        understood += (understood.isEmpty() ? "" : " · ") + QString::fromStdString(name) + ": <b>" +
                      QString::fromStdString(value).toHtmlEscaped() + "</b>";
    }
    understood_->setText(understood);
}

void PreviewDialog::RedrawTable() {
    const auto shown = preview_.FirstRows(kRows);
    std::size_t columns = shown.headings.size();
    for (const auto& row : shown.rows) columns = std::max(columns, row.size());
    const int choiceRows = form_.ColumnCount() > 0 ? 1 : 0;
    table_->clear();
    table_->setColumnCount(static_cast<int>(columns));
    table_->setRowCount(static_cast<int>(shown.rows.size()) + choiceRows);
    QStringList headings;
    for (const std::string& heading : choiceRows > 0 ? shown.names : shown.headings)
        headings << QString::fromStdString(heading);
    while (headings.size() < static_cast<qsizetype>(columns)) headings << "";
    table_->setHorizontalHeaderLabels(headings);
    for (std::size_t i = 0; i < shown.rows.size(); ++i) {
        for (std::size_t j = 0; j < shown.rows[i].size(); ++j) {
            const QString text = QString::fromStdString(shown.rows[i][j]);
            auto* item = new QTableWidgetItem(text);
            if (LooksLikeNumber(text)) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table_->setItem(static_cast<int>(i) + choiceRows, static_cast<int>(j), item);
        }
    }
    table_->horizontalHeader()->setVisible(choiceRows == 0 || !shown.names.empty());
    if (choiceRows > 0) RedrawColumnChoices(static_cast<int>(form_.ColumnCount()));
    table_->resizeColumnsToContents();
}

/// The first row of the table has a list over each column.
void PreviewDialog::RedrawColumnChoices(int columns) {
    QStringList titles;
    for (const std::string& word : workbench::OpenPreview::ColumnWords())
        titles << QString::fromStdString(workbench::OpenPreview::ColumnTitle(word));
    for (int i = 0; i < columns; ++i) {
        auto* list = new QComboBox(table_);
        list->setObjectName(QString("column%1").arg(i));
        list->addItems(titles);
        list->setCurrentIndex(static_cast<int>(form_.ColumnEntry(static_cast<std::size_t>(i))));
        table_->setCellWidget(0, i, list);
        // Later: the choice makes all lists anew, and the one that raised the signal is still at
        // it.
        connect(
            list, &QComboBox::activated, this,
            [this, i](int entry) {
                form_.ChooseColumn(static_cast<std::size_t>(i), static_cast<std::size_t>(entry));
                Redraw();
                table_->cellWidget(0, i)->setFocus();
            },
            Qt::QueuedConnection);
    }
}

void PreviewDialog::RedrawSentences() {
    QStringList sentences;
    for (const std::string& problem : preview_.Problems())
        sentences << "✗ " + QString::fromStdString(problem);
    for (const std::string& note : preview_.Notes())
        sentences << "• " + QString::fromStdString(note);
    sentences_->setPlainText(sentences.join('\n'));
    sentences_->setVisible(!sentences.isEmpty());
}

void PreviewDialog::done(int result) {
    RememberSize(kPreview, size());
    QDialog::done(result);
}

}  // namespace kv_tr::desktop
