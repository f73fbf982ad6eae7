// The look of the table's cells, and the box in which one is edited.
#pragma once

#include <QStyledItemDelegate>

#include "kv_tr/forms/pair_table.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

/// Leaves the colours of marked cells visible in a selection. The editor, txtEdit, shows what the
/// table has for it and tells the table, through act, of its keys; the view opens and closes the
/// editor as the table has it.
class CellDelegate : public QStyledItemDelegate {
public:
    CellDelegate(PairTable& table, ActFunction act, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PairTable& table_;
    ActFunction act_;
};

}  // namespace kv_tr
