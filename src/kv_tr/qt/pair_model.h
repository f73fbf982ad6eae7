// The rows of the table of pairs as a model for views.
#pragma once

#include <QAbstractTableModel>

#include "kv_tr/forms/pair_table.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

/// The rows of a table below its headings; nothing is copied. What is put into a cell goes to the
/// table through act.
class PairModel : public QAbstractTableModel {
public:
    PairModel(PairTable& table, ActFunction act, QObject* parent);

    /// Tells the views that any cell may have changed.
    void Update();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    PairTable& table_;
    ActFunction act_;
    int rows_ = 0;
};

}  // namespace kv_tr
