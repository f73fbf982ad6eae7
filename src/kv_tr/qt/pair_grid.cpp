// The table of pairs: a view that reads the form, and the editor over its cells.
#include "kv_tr/qt/pair_grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <numeric>
#include <utility>

#include "kv_tr/qt/graph_area.h"

namespace kv_tr {
namespace {

QBrush Brush(Colour colour) { return QColor(colour.red, colour.green, colour.blue); }

QVariant ColourOf(const frmTr& form, int row, int column, int role) {
    const QPalette palette = QApplication::palette();
    if (column == 0) {  // the fixed column looks as the headings do
        return palette.brush(role == Qt::BackgroundRole ? QPalette::Button : QPalette::ButtonText);
    }
    const auto colours = form.ColoursOf(row, column);
    if (!colours) return {};
    if (role == Qt::BackgroundRole) {
        return colours->background ? Brush(*colours->background) : QVariant();
    }
    return colours->background ? Brush(colours->text)
                               : ReadableOn(palette.color(QPalette::Base), colours->text);
}

/// Leaves the colours of marked cells visible in a selection.
class MarkedCells : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!index.data(Qt::ForegroundRole).isValid()) return;
        option->state &= ~QStyle::State_Selected;
        if (option->backgroundBrush == Qt::NoBrush)
            option->backgroundBrush = option->palette.base();
    }
};

QVariant Alignment(int column) {
    return int((column == 1 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
}

}  // namespace

PairModel::PairModel(const frmTr& form, QObject* parent)
    : QAbstractTableModel(parent), form_(form) {}

void PairModel::Update() {
    const int rows = form_.RowCount() - 1;
    if (rows != rows_) {
        beginResetModel();
        rows_ = rows;
        endResetModel();
    } else if (rows > 0) {
        emit dataChanged(index(0, 0), index(rows - 1, frmTr::kColumns - 1));
    }
    emit headerDataChanged(Qt::Horizontal, 0, frmTr::kColumns - 1);
}

int PairModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int PairModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : frmTr::kColumns;
}

QVariant PairModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return QString::fromStdString(form_.CellText(index.row() + 1, index.column()));
        case Qt::ForegroundRole:
        case Qt::BackgroundRole: return ColourOf(form_, index.row() + 1, index.column(), role);
        case Qt::TextAlignmentRole: return Alignment(index.column());
        case Qt::ToolTipRole: return QString::fromStdString(form_.ControlTexts().ToolTip("Grid1"));
        default: return {};
    }
}

QVariant PairModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return {};
    if (role == Qt::DisplayRole) return QString::fromStdString(form_.CellText(0, section));
    if (role == Qt::TextAlignmentRole) return Alignment(section);
    return {};
}

CellEdit::CellEdit(frmTr& form, ActFunction act, QWidget* parent)
    : QLineEdit(parent), form_(form), act_(std::move(act)) {
    setObjectName("txtEdit");
    setFrame(false);
    hide();
    connect(this, &QLineEdit::textChanged,
            [this](const QString& text) { form_.txtEditChange(text.toStdString()); });
}

void CellEdit::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: return Press(frmTr::EditKey::kEnter);
        case Qt::Key_Escape: return Press(frmTr::EditKey::kEscape);
        case Qt::Key_Up: return Press(frmTr::EditKey::kUp);
        case Qt::Key_Down: return Press(frmTr::EditKey::kDown);
        default: QLineEdit::keyPressEvent(event);
    }
}

void CellEdit::Press(frmTr::EditKey key) {
    act_([&] { form_.txtEditKeyDown(key); });
}

void CellEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const bool stays =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (stays || !form_.CellEditor().visible) return;
    act_([this] {
        form_.Grid1GotFocus();
    });  // what was typed is not lost on the way to another control
}

PairGrid::PairGrid(frmTr& form, ActFunction act, QWidget* parent)
    : QTableView(parent),
      form_(form),
      act_(std::move(act)),
      model_(new PairModel(form, this)),
      edit_(new CellEdit(form, act_, viewport())) {
    setObjectName("Grid1");
    setModel(model_);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(ContiguousSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setItemDelegate(new MarkedCells(this));
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    for (int column = 0; column < frmTr::kColumns; ++column) setColumnWidth(column, 0);
    connect(horizontalHeader(), &QHeaderView::sectionResized, [this] { ShowEditor(); });
    connect(horizontalHeader(), &QHeaderView::sectionClicked, [this](int column) {
        if (form_.DisplayMode() != frmTr::Mode::kEdit) return;
        selectionModel()->clear();
        form_.Grid1Click(0, column);
    });
}

void PairGrid::Redraw() {
    model_->Update();
    WidenColumns();
    ShowMode();
    ShowEditor();
}

/// Columns grow to what is in them, and are never made narrower than the user has them.
void PairGrid::WidenColumns() {
    constexpr int kMargin = 14;
    const int least = fontMetrics().averageCharWidth() * 8;
    for (int column = 0; column < frmTr::kColumns; ++column) {
        const auto widthOf = [this](const std::string& text) {
            return fontMetrics().horizontalAdvance(QString::fromStdString(text)) + kMargin;
        };
        const int width = std::max({column == 0 ? 0 : least, widthOf(form_.CellText(0, column)),
                                    widthOf(form_.WidestText(column))});
        if (columnWidth(column) < width) setColumnWidth(column, width);
    }
}

void PairGrid::ShowMode() {
    const bool cells = form_.DisplayMode() == frmTr::Mode::kEdit;
    const auto behavior = cells ? SelectItems : SelectRows;
    if (selectionBehavior() == behavior) return;
    clearSelection();
    setSelectionBehavior(behavior);
}

void PairGrid::ShowEditor() {
    const frmTr::Editor& editor = form_.CellEditor();
    if (!editor.visible) {
        const bool hadFocus = edit_->hasFocus();
        edit_->hide();
        if (hadFocus) setFocus();
    }
    const QModelIndex current = model_->index(form_.CurrentRow() - 1, form_.CurrentColumn());
    if (form_.DisplayMode() != frmTr::Mode::kEdit || !current.isValid()) return;
    if (current != currentIndex()) setCurrentIndex(current);
    if (!editor.visible) return;
    edit_->setGeometry(visualRect(current).adjusted(1, 1, -2, -2));
    if (edit_->isVisible()) return;
    edit_->setText(QString::fromStdString(editor.text));
    edit_->setCursorPosition(editor.caret);
    edit_->show();
    edit_->setFocus();
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
    QApplication::clipboard()->setText(QString::fromStdString(form_.TableText(numbers)));
}

void PairGrid::ToggleSelected() {
    const Rows rows = SelectedRows();
    if (rows.first > rows.last) return;
    act_([&] { form_.Grid1MouseUp(rows.first + 1, rows.last + 1); });
}

void PairGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (current.isValid()) form_.Grid1EnterCell(current.row() + 1, current.column());
}

void PairGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid() || event->button() != Qt::LeftButton) return;
    act_([&] { form_.Grid1DblClick(cell.row() + 1, cell.column()); });
    if (form_.CurrentRow() == 0) clearSelection();
}

void PairGrid::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid()) return;
    if (event->button() == Qt::RightButton) ToggleSelected();
    if (event->button() == Qt::LeftButton && form_.DisplayMode() == frmTr::Mode::kEdit) {
        form_.Grid1Click(cell.row() + 1, cell.column());
    }
}

/// The keyboard's way to what the right button does; that button itself acts on its release.
void PairGrid::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) ToggleSelected();
}

void PairGrid::keyPressEvent(QKeyEvent* event) {
    const bool edit = form_.DisplayMode() == frmTr::Mode::kEdit;
    const bool command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
    const QString text = event->text();
    const bool opens = event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return ||
                       event->key() == Qt::Key_Enter || event->key() == Qt::Key_Backspace ||
                       event->key() == Qt::Key_Delete ||
                       (!text.isEmpty() && text[0].isPrint() && !command);
    if (edit && opens) {
        const bool printable = text.isEmpty() ? false : text[0].isPrint();
        form_.Grid1KeyPress(printable ? text.toStdString() : std::string());
    } else if (!edit && event->key() == Qt::Key_Space) {
        ToggleSelected();
    } else {
        QTableView::keyPressEvent(event);
    }
}

void PairGrid::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    form_.Grid1GotFocus();
}

void PairGrid::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    ShowEditor();
}

}  // namespace kv_tr
