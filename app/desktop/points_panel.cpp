// The table of points with what chooses its rows.
#include "desktop/points_panel.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <numeric>
#include <utility>

#include "desktop/ui_text.h"

namespace kv_tr::desktop {

using workbench::Column;
using workbench::kColumnCount;
using workbench::Phrase;

PointsTable::PointsTable(workbench::Workbench& bench, workbench::PointsView& view, QWidget* parent)
    : QTableView(parent), bench_(bench), view_(view), model_(new PointsModel(bench, view, this)) {
    setObjectName("points");
    setModel(model_);
    setSelectionBehavior(SelectRows);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    QHeaderView* headings = horizontalHeader();
    headings->setHighlightSections(false);
    headings->setSectionsClickable(true);
    headings->setSortIndicatorShown(true);
    headings->setSortIndicator(static_cast<int>(Column::kNumber), Qt::AscendingOrder);
    headings->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(headings, &QWidget::customContextMenuRequested, this, &PointsTable::ChooseColumns);
    connect(headings, &QHeaderView::sortIndicatorChanged, this,
            [this](int section, Qt::SortOrder order) {
                RunAction([&] {
                    view_.Sort({static_cast<Column>(section), order == Qt::DescendingOrder});
                    Rearrange();
                });
            });
    ShowColumns();
}

void PointsTable::Redraw() {
    if (view_.Sorting().column == Column::kNumber && view_.FilterText().empty() &&
        !view_.IsOnlySuspects()) {
        model_->Update();  // the rows are those of the document
    } else {
        model_->Rearrange();
    }
    ShowSelection();
    if (std::exchange(measured_, bench_.Project().Count()) != bench_.Project().Count())
        WidenColumns();
}

void PointsTable::Rearrange() {
    model_->Rearrange();
    ShowSelection();
}

void PointsTable::ShowColumns() {
    for (std::size_t i = 0; i < kColumnCount; ++i)
        setColumnHidden(static_cast<int>(i), !view_.IsShown(static_cast<Column>(i)));
    WidenColumns();
}

/// Columns are as wide as what is in them.
void PointsTable::WidenColumns() {
    constexpr int kMargin = 16;
    constexpr int kSortSign = 12;
    constexpr int kMostLetters = 24;
    const auto widthOf = [this](const std::string& text) {
        return fontMetrics().horizontalAdvance(QString::fromStdString(text)) + kMargin;
    };
    for (const Column column : view_.ShownColumns()) {
        const int heading = widthOf(view_.Heading(column)) + kSortSign;
        const bool hasTexts = column != Column::kUse;
        const int cells = std::min(hasTexts ? widthOf(view_.WidestText(column)) : 0,
                                   fontMetrics().averageCharWidth() * kMostLetters);
        setColumnWidth(static_cast<int>(column), std::max(heading, cells));
    }
}

/// The menu of the headings: which columns are shown.
void PointsTable::ChooseColumns(QPoint place) {
    QMenu menu(this);
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        const auto column = static_cast<Column>(i);
        const QString tip = QString::fromStdString(view_.HeadingTip(column));
        const QString heading = QString::fromStdString(view_.Heading(column));
        QAction* shown = menu.addAction(tip.isEmpty() ? heading : heading + " – " + tip);
        shown->setCheckable(true);
        shown->setChecked(view_.IsShown(column));
        shown->setEnabled(!view_.IsShown(column) || view_.ShownColumns().size() > 1);
        connect(shown, &QAction::triggered, this, [this, column](bool wanted) {
            view_.Show(column, wanted);
            ShowColumns();
            emit ColumnsChanged();
        });
    }
    menu.exec(horizontalHeader()->mapToGlobal(place));
}

void PointsTable::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
    QTableView::selectionChanged(now, before);
    if (isFollowing_) return;
    std::vector<std::size_t> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(static_cast<std::size_t>(index.row()));
    view_.Select(rows);
    emit PointsSelected();
}

void PointsTable::ShowSelection() {
    QItemSelection selection;
    const auto rows = view_.SelectedRows();
    for (std::size_t i = 0; i < rows.size();) {  // a range for each run of rows
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        selection.append(
            {model_->index(static_cast<int>(rows[i]), 0),
             model_->index(static_cast<int>(rows[end - 1]), model_->columnCount() - 1)});
        i = end;
    }
    isFollowing_ = true;
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    isFollowing_ = false;
}

bool PointsTable::ShowPlace(std::size_t place) {
    const std::size_t row = view_.RowOf(place);
    if (row >= view_.RowCount()) return false;
    const int column = std::max(0, columnAt(0));
    isFollowing_ = true;
    selectionModel()->setCurrentIndex(model_->index(static_cast<int>(row), column),
                                      QItemSelectionModel::NoUpdate);
    isFollowing_ = false;
    scrollTo(model_->index(static_cast<int>(row), column));
    return true;
}

void PointsTable::CopySelected() {
    auto rows = view_.SelectedRows();
    if (rows.empty()) {
        rows.resize(view_.RowCount());
        std::iota(rows.begin(), rows.end(), std::size_t{0});
    }
    QApplication::clipboard()->setText(QString::fromStdString(view_.CopyText(rows)));
}

PointsPanel::PointsPanel(workbench::Workbench& bench, workbench::PointsView& view, QWidget* parent)
    : QWidget(parent),
      bench_(bench),
      view_(view),
      filter_(new QLineEdit(this)),
      suspects_(new QCheckBox(this)),
      counts_(new QLabel(this)),
      table_(new PointsTable(bench, view, this)) {
    filter_->setObjectName("filter");
    filter_->setClearButtonEnabled(true);
    suspects_->setObjectName("onlySuspects");
    connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
        view_.Filter(text.toStdString());
        Rearrange();
    });
    connect(suspects_, &QCheckBox::toggled, this, [this](bool only) {
        RunAction([&] {
            view_.OnlySuspects(only);
            Rearrange();
        });
    });
    auto* choice = new QHBoxLayout;
    choice->addWidget(filter_, 1);
    choice->addWidget(suspects_);
    choice->addWidget(counts_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(choice);
    layout->addWidget(table_, 1);
}

void PointsPanel::Redraw() {
    filter_->setPlaceholderText(UiText(Phrase::kFilterHint));
    suspects_->setText(UiText(Phrase::kOnlySuspects));
    table_->Redraw();
    ShowCounts();
}

void PointsPanel::Rearrange() {
    table_->Rearrange();
    ShowCounts();
}

void PointsPanel::ShowCounts() {
    const workbench::Document& document = bench_.Project();
    const std::string all = std::to_string(document.Count());
    const std::string used = std::to_string(document.UsedCount());
    const std::size_t shown = view_.RowCount();
    counts_->setText(shown == document.Count()
                         ? UiText(Phrase::kPointCounts, {all, used})
                         : UiText(Phrase::kShownCounts, {std::to_string(shown), all, used}));
}

void PointsPanel::EnterFilter() {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

void PointsPanel::ClearFilter() {
    filter_->clear();
    suspects_->setChecked(false);
}

}  // namespace kv_tr::desktop
