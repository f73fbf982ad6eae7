// The rows of the table of points as a model for views.
#pragma once

#include <QAbstractTableModel>

#include "kv_tr/qt/form_window.h"
#include "workbench/points_view.h"
#include "workbench/workbench.h"

namespace kv_tr::desktop {

/// The rows that a view of the points has, in its order, with all columns; nothing is copied. What
/// is put into a cell goes to the workbench.
class PointsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    PointsModel(workbench::Workbench& bench, workbench::PointsView& view, QObject* parent);

    /// Tells the views that any cell may have changed.
    void Update();
    /// Tells them that the rows are others, or in another order.
    void Rearrange();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    workbench::Workbench& bench_;
    workbench::PointsView& view_;
    int rows_ = 0;
};

}  // namespace kv_tr::desktop
