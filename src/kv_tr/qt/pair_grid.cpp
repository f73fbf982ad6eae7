// The table of pairs as a view.
#include "kv_tr/qt/pair_grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "kv_tr/published/ml_strings.h"
#include "kv_tr/qt/cell_delegate.h"
#include "kv_tr/qt/pair_model.h"

namespace kv_tr {

PairGrid::PairGrid(PairTable& table, ActFunction act, QWidget* parent)
    : QTableView(parent),
      table_(table),
      act_(std::move(act)),
      model_(new PairModel(table, act_, this)) {
    setModel(model_);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(ContiguousSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setItemDelegate(new CellDelegate(table, act_, this));
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    for (int column = 0; column < PairTable::kAllColumns; ++column) setColumnWidth(column, 0);
    ShowColumns();
    horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(horizontalHeader(), &QWidget::customContextMenuRequested, this,
            &PairGrid::ChooseColumns);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, [this](int column) {
        if (!table_.Editable()) return;
        selectionModel()->clear();
        table_.Grid1Click(0, column);
    });
}

void PairGrid::Redraw() {
    CloseEditorUnlessWanted();  // the view warns of one that has gone with its row
    model_->Update();
    ShowColumns();
    WidenColumns();
    ShowMode();
    ShowCurrentCell();
    OpenEditorIfWanted();
}

void PairGrid::ShowColumns() {
    for (int column = PairTable::kColumns; column < PairTable::kAllColumns; ++column) {
        const bool hidden = !table_.IsColumnShown(column);
        if (isColumnHidden(column) != hidden) setColumnHidden(column, hidden);
    }
}

/// The menu of the headings: which columns of the statistics are shown.
void PairGrid::ChooseColumns(QPoint place) {
    QMenu menu(this);
    for (std::size_t group = 0; group < PairTable::kFigureGroups.size(); ++group) {
        const std::string name = Translated(PairTable::kFigureGroups[group]);
        QAction* shown = menu.addAction(QString::fromStdString(name));
        shown->setCheckable(true);
        shown->setChecked(table_.IsGroupShown(group));
        connect(shown, &QAction::triggered, this,
                [this, group] { act_([this, group] { table_.ToggleGroup(group); }); });
    }
    menu.exec(horizontalHeader()->mapToGlobal(place));
}

/// Columns grow to what is in them, and are never made narrower than the user has them.
void PairGrid::WidenColumns() {
    constexpr int kMargin = 14;
    const int least = fontMetrics().averageCharWidth() * 8;
    for (int column = 0; column < PairTable::kAllColumns; ++column) {
        if (!table_.IsColumnShown(column)) continue;
        const auto widthOf = [this](const std::string& text) {
            return fontMetrics().horizontalAdvance(QString::fromStdString(text)) + kMargin;
        };
        const int width = std::max({column == 0 ? 0 : least, widthOf(table_.CellText(0, column)),
                                    widthOf(table_.WidestText(column))});
        if (columnWidth(column) < width) setColumnWidth(column, width);
    }
}

void PairGrid::ShowMode() {
    const auto behavior = table_.Editable() ? SelectItems : SelectRows;
    if (selectionBehavior() == behavior) return;
    clearSelection();
    setSelectionBehavior(behavior);
}

/// Follows the table's current cell when that has moved: while the user moves the view's own one,
/// the table is still to learn of it.
void PairGrid::ShowCurrentCell() {
    const QModelIndex current = CurrentCell();
    const bool shown = currentIndex().isValid() || !current.isValid();
    if (std::exchange(current_, current) == current && shown) return;
    if (!current.isValid()) return;
    selectionModel()->setCurrentIndex(current, table_.Editable()
                                                   ? QItemSelectionModel::ClearAndSelect
                                                   : QItemSelectionModel::NoUpdate);
}

QModelIndex PairGrid::CurrentCell() const {
    return model_->index(table_.CurrentRow() - 1, table_.CurrentColumn());
}

void PairGrid::CloseEditorUnlessWanted() {
    if (edit_ == nullptr) return;
    if (table_.CellEditor().visible && indexWidget(CurrentCell()) == edit_) return;
    closeEditor(edit_, QAbstractItemDelegate::NoHint);
}

void PairGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    edit_ = nullptr;
    QTableView::closeEditor(editor, hint);
}

void PairGrid::OpenEditorIfWanted() {
    const QModelIndex cell = CurrentCell();
    if (!table_.CellEditor().visible || !cell.isValid() || indexWidget(cell) != nullptr) return;
    edit(cell);
    edit_ = qobject_cast<QLineEdit*>(indexWidget(cell));
    if (edit_ == nullptr) return;
    edit_->deselect();  // a view selects everything, and the next character would replace it
    edit_->setCursorPosition(table_.CellEditor().caret);
}

PairGrid::Rows PairGrid::SelectedRows() const {
    Rows rows{model_->rowCount(), -1};
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        rows = {std::min(rows.first, range.top()), std::max(rows.last, range.bottom())};
    }
    return rows;
}

void PairGrid::Copy() const {
    Rows rows = SelectedRows();
    if (rows.first > rows.last) rows = {0, model_->rowCount() - 1};
    std::vector<int> numbers(static_cast<std::size_t>(rows.last - rows.first + 1));
    std::iota(numbers.begin(), numbers.end(), rows.first + 1);
    QApplication::clipboard()->setText(QString::fromStdString(table_.TableText(numbers)));
}

void PairGrid::ToggleSelected() {
    const Rows rows = SelectedRows();
    if (rows.first > rows.last) return;
    emit RowsToggled(rows.first + 1, rows.last + 1);
}

/// The view puts what is being edited into its cell before it leaves that.
void PairGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    const ChangeEvent::Action action(table_.Changed());
    QTableView::currentChanged(current, previous);
    if (current.isValid()) table_.Grid1EnterCell(current.row() + 1, current.column());
}

void PairGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid() || event->button() != Qt::LeftButton) return;
    emit PairDoubleClicked(cell.row() + 1, cell.column());
    if (table_.CurrentRow() == 0) clearSelection();
}

void PairGrid::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid()) return;
    if (event->button() == Qt::RightButton) ToggleSelected();
    if (event->button() == Qt::LeftButton && table_.Editable()) {
        table_.Grid1Click(cell.row() + 1, cell.column());
    }
}

/// The keyboard's way to what the right button does; that button itself acts on its release.
void PairGrid::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) ToggleSelected();
}

void PairGrid::keyPressEvent(QKeyEvent* event) {
    const bool command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
    const QString text = event->text();
    const bool printable = !text.isEmpty() && text[0].isPrint() && !command;
    const bool opens = printable || event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return ||
                       event->key() == Qt::Key_Enter || event->key() == Qt::Key_Backspace ||
                       event->key() == Qt::Key_Delete;
    if (table_.Editable() && opens) {
        table_.Grid1KeyPress(printable ? text.toStdString() : std::string());
    } else if (!table_.Editable() && event->key() == Qt::Key_Space) {
        ToggleSelected();
    } else {
        QTableView::keyPressEvent(event);
    }
}

}  // namespace kv_tr
