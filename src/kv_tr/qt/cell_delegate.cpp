// The look of the table's cells, and the box in which one is edited.
#include "kv_tr/qt/cell_delegate.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <optional>
#include <utility>

namespace kv_tr {
namespace {

using EditKey = PairTable::EditKey;

std::optional<EditKey> EditKeyOf(int key) {
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter: return EditKey::kEnter;
        case Qt::Key_Escape: return EditKey::kEscape;
        case Qt::Key_Up: return EditKey::kUp;
        case Qt::Key_Down: return EditKey::kDown;
        case Qt::Key_Tab: return EditKey::kNext;
        case Qt::Key_Backtab: return EditKey::kPrevious;
        default: return std::nullopt;
    }
}

/// Whether the focus goes to another control, rather than to another window for a while.
bool IsLeft(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

}  // namespace

CellDelegate::CellDelegate(PairTable& table, ActFunction act, QObject* parent)
    : QStyledItemDelegate(parent), table_(table), act_(std::move(act)) {}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex&) const {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName("txtEdit");
    edit->setFrame(false);
    connect(edit, &QLineEdit::textChanged,
            [this](const QString& text) { table_.txtEditChange(text.toStdString()); });
    return edit;
}

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex&) const {
    auto* edit = static_cast<QLineEdit*>(editor);
    const QString text = QString::fromStdString(table_.CellEditor().text);
    if (edit->text() != text) edit->setText(text);  // setting it moves the caret
}

void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                const QModelIndex& index) const {
    if (!table_.CellEditor().visible) return;  // what was typed has been taken or abandoned
    model->setData(index, static_cast<QLineEdit*>(editor)->text(), Qt::EditRole);
}

void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
    editor->setGeometry(option.rect.adjusted(1, 1, -2, -2));
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (!index.data(Qt::ForegroundRole).isValid()) return;
    option->state &= ~QStyle::State_Selected;
    if (option->backgroundBrush == Qt::NoBrush) option->backgroundBrush = option->palette.base();
}

bool CellDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto key = EditKeyOf(static_cast<QKeyEvent*>(event)->key());
        if (key) act_([&] { table_.txtEditKeyDown(*key); });
        return key.has_value();
    }
    if (event->type() == QEvent::FocusOut) {
        // What was typed is not lost on the way to another control.
        if (IsLeft(*static_cast<QFocusEvent*>(event)))
            emit commitData(static_cast<QWidget*>(watched));
        return false;
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

}  // namespace kv_tr
