// The rows of the table of pairs as a model for views.
#include "kv_tr/qt/pair_model.h"

#include <QApplication>
#include <QBrush>
#include <QPalette>
#include <utility>

#include "kv_tr/qt/graph_area.h"

namespace kv_tr {
namespace {

QBrush Brush(Colour colour) { return QColor(colour.red, colour.green, colour.blue); }

QVariant ColourOf(const PairTable& table, int row, int column, int role) {
    const QPalette palette = QApplication::palette();
    if (column == 0) {  // the fixed column looks as the headings do
        return palette.brush(role == Qt::BackgroundRole ? QPalette::Button : QPalette::ButtonText);
    }
    const auto colours = table.ColoursOf(row, column);
    if (!colours) return {};
    if (role == Qt::BackgroundRole) {
        return colours->background ? Brush(*colours->background) : QVariant();
    }
    return colours->background ? Brush(colours->text)
                               : ReadableOn(palette.color(QPalette::Base), colours->text);
}

QVariant Alignment(int column) {
    return int((column == 1 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
}

}  // namespace

PairModel::PairModel(PairTable& table, ActFunction act, QObject* parent)
    : QAbstractTableModel(parent), table_(table), act_(std::move(act)) {}

void PairModel::Update() {
    const int rows = table_.RowCount() - 1;
    if (rows != rows_) {
        beginResetModel();
        rows_ = rows;
        endResetModel();
    } else if (rows > 0) {
        emit dataChanged(index(0, 0), index(rows - 1, PairTable::kAllColumns - 1));
    }
    emit headerDataChanged(Qt::Horizontal, 0, PairTable::kAllColumns - 1);
}

int PairModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int PairModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : PairTable::kAllColumns;
}

QVariant PairModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return QString::fromStdString(table_.CellText(index.row() + 1, index.column()));
        case Qt::ForegroundRole:
        case Qt::BackgroundRole: return ColourOf(table_, index.row() + 1, index.column(), role);
        case Qt::TextAlignmentRole: return Alignment(index.column());
        default: return {};
    }
}

QVariant PairModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return {};
    if (role == Qt::DisplayRole) return QString::fromStdString(table_.CellText(0, section));
    if (role == Qt::TextAlignmentRole) return Alignment(section);
    if (role == Qt::ToolTipRole) return QString::fromStdString(table_.HeadingTip(section));
    return {};
}

Qt::ItemFlags PairModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return table_.Editable() ? flags | Qt::ItemIsEditable : flags;
}

bool PairModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole) return false;
    bool changed = false;
    act_([&] {
        changed = table_.SetCell(index.row() + 1, index.column(), value.toString().toStdString());
    });
    return changed;
}

}  // namespace kv_tr
