// The table of pairs as a view.
#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QTableView>

#include "kv_tr/forms/pair_table.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

class PairModel;

/// Grid1: shows a table and forwards clicks and keys to it. Actions on cells run through act.
class PairGrid : public QTableView {
    Q_OBJECT

public:
    PairGrid(PairTable& table, ActFunction act, QWidget* parent);

    /// Shows the table as it is now.
    void Redraw();
    /// Puts the selected rows, or all, on the clipboard.
    void Copy() const;

signals:
    // Rows are counted as the table's are.
    void PairDoubleClicked(int row, int column);
    /// The user wants to exclude these rows or to take them back.
    void RowsToggled(int first, int last);

protected:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Rows {
        int first = 0;
        int last = -1;  // before the first: none
    };
    Rows SelectedRows() const;
    void ToggleSelected();
    void ShowMode();
    void ShowCurrentCell();
    QModelIndex CurrentCell() const;
    void CloseEditorUnlessWanted();
    void OpenEditorIfWanted();
    void ShowColumns();
    void WidenColumns();
    void ChooseColumns(QPoint place);

    PairTable& table_;
    ActFunction act_;
    PairModel* model_;
    QPointer<QLineEdit> edit_;  // the open editor
    QModelIndex current_;       // the table's current cell when it was shown last
};

}  // namespace kv_tr
