// The rows of the table of points as a model for views.
#include "desktop/points_model.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

#include "kv_tr/forms/plan_picture.h"

namespace kv_tr::desktop {
namespace {

using workbench::Column;
using Mark = workbench::PointsView::Mark;

Column ColumnOf(int section) { return static_cast<Column>(section); }

bool IsText(Column column) { return column == Column::kIdentifier || column == Column::kNote; }

QVariant Alignment(Column column) {
    return int((IsText(column) ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
}

/// The colour of a mark is that of the plan.
QVariant ColourOf(Mark mark, Column column) {
    const QPalette palette = QApplication::palette();
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    const auto colour = [isDark](PlanInk ink) {
        const Colour of = kv_tr::ColourOf(ink, isDark ? PlanPaper::kDark : PlanPaper::kLight);
        return QColor(of.red, of.green, of.blue);
    };
    switch (mark) {
        case Mark::kExcluded: return palette.color(QPalette::Disabled, QPalette::Text);
        case Mark::kSuspect: return colour(PlanInk::kSuspect);
        case Mark::kBeyondLimit:
            if (workbench::IsComputed(column)) return colour(PlanInk::kOverLimit);
            break;
        case Mark::kGood: break;
    }
    return {};
}

/// What marks a row without a colour.
QVariant FontOf(Mark mark) {
    if (mark == Mark::kGood || mark == Mark::kBeyondLimit) return {};
    QFont font = QApplication::font();
    font.setItalic(mark == Mark::kExcluded);
    font.setBold(mark == Mark::kSuspect);
    return font;
}

}  // namespace

PointsModel::PointsModel(workbench::Workbench& bench, workbench::PointsView& view, QObject* parent)
    : QAbstractTableModel(parent), bench_(bench), view_(view) {}

void PointsModel::Update() {
    if (static_cast<int>(view_.RowCount()) != rows_) {
        Rearrange();
    } else if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
    }
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void PointsModel::Rearrange() {
    beginResetModel();
    rows_ = static_cast<int>(view_.RowCount());
    endResetModel();
}

int PointsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int PointsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(workbench::kColumnCount);
}

QVariant PointsModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= view_.RowCount()) return {};
    const Column column = ColumnOf(index.column());
    switch (role) {
        case Qt::DisplayRole:
            if (column == Column::kUse) return {};
            return QString::fromStdString(view_.CellText(row, column));
        case Qt::EditRole: return QString::fromStdString(view_.EditText(row, column));
        case Qt::CheckStateRole:
            if (column != Column::kUse) return {};
            return view_.MarkOf(row) == Mark::kExcluded ? Qt::Unchecked : Qt::Checked;
        case Qt::ForegroundRole: return ColourOf(view_.MarkOf(row), column);
        case Qt::FontRole: return FontOf(view_.MarkOf(row));
        case Qt::TextAlignmentRole: return Alignment(column);
        case Qt::ToolTipRole: {
            const std::string& note = bench_.Project().NoteAt(view_.PlaceOf(row));
            return note.empty() ? QVariant() : QString::fromStdString(note);
        }
        default: return {};
    }
}

QVariant PointsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return {};
    const Column column = ColumnOf(section);
    if (role == Qt::DisplayRole) return QString::fromStdString(view_.Heading(column));
    if (role == Qt::TextAlignmentRole) return Alignment(column);
    if (role == Qt::ToolTipRole) return QString::fromStdString(view_.HeadingTip(column));
    return {};
}

Qt::ItemFlags PointsModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const Column column = ColumnOf(index.column());
    if (column == Column::kUse) flags |= Qt::ItemIsUserCheckable;
    if (workbench::IsEditable(column)) flags |= Qt::ItemIsEditable;
    return flags;
}

bool PointsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= view_.RowCount()) return false;
    const std::size_t place = view_.PlaceOf(row);
    bool changed = false;
    RunAction([&] {
        changed = role == Qt::CheckStateRole ? bench_.Toggle(place)
                                             : bench_.SetCell(place, ColumnOf(index.column()),
                                                              value.toString().toStdString());
    });
    return changed;
}

}  // namespace kv_tr::desktop
