// The table of points with what chooses its rows.
#pragma once

#include <QTableView>
#include <QWidget>

#include "desktop/points_model.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace kv_tr::desktop {

/// The points as a view of them has its rows and columns. The selection is that of the view; who
/// changes it elsewhere calls ShowSelection.
class PointsTable : public QTableView {
    Q_OBJECT

public:
    PointsTable(workbench::Workbench& bench, workbench::PointsView& view, QWidget* parent);

    /// Shows points, fit and language as they are now.
    void Redraw();
    /// Shows other rows, or rows in another order.
    void Rearrange();
    void ShowSelection();
    /// Scrolls to a point; false when the filter hides that.
    bool ShowPlace(std::size_t place);
    void CopySelected();

signals:
    /// The user has selected other points.
    void PointsSelected();
    /// The user looks at other columns.
    void ColumnsChanged();

protected:
    void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;

private:
    void ShowColumns();
    void WidenColumns();
    void ChooseColumns(QPoint place);

    workbench::Workbench& bench_;
    workbench::PointsView& view_;
    PointsModel* model_;
    bool isFollowing_ = false;  // the selection is being shown, not made
    std::size_t measured_ = 0;  // the points that the columns are wide enough for
};

/// The table below a filter.
class PointsPanel : public QWidget {
    Q_OBJECT

public:
    PointsPanel(workbench::Workbench& bench, workbench::PointsView& view, QWidget* parent);

    PointsTable& Table() { return *table_; }
    void Redraw();
    /// Moves the keyboard to the filter.
    void EnterFilter();
    /// Shows all points again.
    void ClearFilter();

private:
    void Rearrange();
    void ShowCounts();

    workbench::Workbench& bench_;
    workbench::PointsView& view_;
    QLineEdit* filter_;
    QCheckBox* suspects_;
    QLabel* counts_;
    PointsTable* table_;
};

}  // namespace kv_tr::desktop
