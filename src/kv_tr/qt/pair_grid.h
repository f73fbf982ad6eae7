// The table of pairs: a view that reads the form, and the editor over its cells.
#pragma once

#include <QAbstractTableModel>
#include <QLineEdit>
#include <QTableView>

#include "kv_tr/forms/frmTr.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

/// The rows of the form below its headings; nothing is copied.
class PairModel : public QAbstractTableModel {
public:
    explicit PairModel(const frmTr& form, QObject* parent);

    /// Tells the views that any cell may have changed.
    void Update();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const frmTr& form_;
    int rows_ = 0;
};

/// txtEdit: forwards its text and keys to the form.
class CellEdit : public QLineEdit {
public:
    CellEdit(frmTr& form, ActFunction act, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void Press(frmTr::EditKey key);

    frmTr& form_;
    ActFunction act_;
};

/// Grid1: forwards clicks and keys to the form. Actions that fit run through act.
class PairGrid : public QTableView {
public:
    PairGrid(frmTr& form, ActFunction act, QWidget* parent);

    /// Shows the form as it is now.
    void Redraw();
    /// Puts the selected rows, or all, on the clipboard.
    void Copy() const;

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Rows {
        int first = 0;
        int last = -1;  // before the first: none
    };
    Rows SelectedRows() const;
    void ToggleSelected();
    void ShowMode();
    void ShowEditor();
    void WidenColumns();

    frmTr& form_;
    ActFunction act_;
    PairModel* model_;
    CellEdit* edit_;
};

}  // namespace kv_tr
