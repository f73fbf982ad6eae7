// A table of figures to read.
#include "kv_tr/qt/findings_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

namespace kv_tr {
namespace {

Qt::Alignment AlignmentOf(int column) {
    return (column == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
}

}  // namespace

FindingsView::FindingsView(const QString& name, QWidget* parent) : QTableWidget(parent) {
    setObjectName(name);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    horizontalHeader()->setHighlightSections(false);
    setMinimumHeight(3 * verticalHeader()->defaultSectionSize());
    horizontalHeader()->setMinimumSectionSize(fontMetrics().averageCharWidth() * 6);
    connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row) { emit RowChosen(row); });
}

void FindingsView::Show(const FindingsTable& table) {
    const int columns = static_cast<int>(table.headings.size());
    setColumnCount(columns);
    setRowCount(static_cast<int>(table.rows.size()));
    for (int column = 0; column < columns; ++column) {
        const auto place = static_cast<std::size_t>(column);
        auto* heading = new QTableWidgetItem(QString::fromStdString(table.headings[place]));
        heading->setTextAlignment(AlignmentOf(column));
        setHorizontalHeaderItem(column, heading);
        for (int row = 0; row < rowCount(); ++row) {
            const auto& [cells, isMarked] = table.rows[static_cast<std::size_t>(row)];
            auto* cell = new QTableWidgetItem(QString::fromStdString(cells[place]));
            cell->setTextAlignment(AlignmentOf(column));
            QFont font = cell->font();
            font.setBold(isMarked);
            cell->setFont(font);
            setItem(row, column, cell);
        }
    }
    resizeColumnsToContents();
    updateGeometry();
}

void FindingsView::Copy() const {
    QStringList lines;
    for (int row = -1; row < rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column) {
            cells << (row < 0 ? horizontalHeaderItem(column) : item(row, column))->text();
        }
        lines << cells.join('\t') + '\n';
    }
    QApplication::clipboard()->setText(lines.join(QString()));
}

/// As wide as the columns, and no higher than some rows need.
QSize FindingsView::sizeHint() const {
    constexpr int kRows = 9;
    const int rows = std::min(kRows, rowCount());
    const int frame = 2 * frameWidth();
    return {horizontalHeader()->length() + verticalScrollBar()->sizeHint().width() + frame,
            horizontalHeader()->sizeHint().height() +
                rows * verticalHeader()->defaultSectionSize() + frame};
}

void FindingsView::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter) return QTableWidget::keyPressEvent(event);
    if (currentRow() >= 0) emit RowChosen(currentRow());
}

}  // namespace kv_tr
