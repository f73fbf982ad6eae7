// The tabs below table and plan: fit, types, points, distortion, history.
#pragma once

#include <QTabWidget>
#include <QTimer>

#include "workbench/points_view.h"
#include "workbench/workbench.h"

class QCheckBox;
class QLabel;
class QSplitter;

namespace kv_tr {
class FindingsView;
}

namespace kv_tr::desktop {

/// What the fit is worth, as far as a tab shows it: only the one in front is computed. What takes
/// its time, because the points are very many, is computed when the user rests.
class FindingsTabs : public QTabWidget {
    Q_OBJECT

public:
    FindingsTabs(workbench::Workbench& bench, workbench::PointsView& view, QWidget* parent);

    void Redraw();
    void SetAngles(AngleUnit unit);
    /// Other points are selected.
    void ShowSelection();

signals:
    /// The assessment has been computed: suspects are known.
    void Assessed();

private:
    enum Tab { kFit, kTypes, kPoints, kDistortion, kHistory };

    QWidget* MakeFit();
    QWidget* MakeTypes();
    void ShowFront();
    void ShowFrontLater();
    bool MustWait();
    void ShowFit();
    void ShowAdvice();
    void ShowPoints();
    void ShowSteps();
    void ChooseType(int row);

    workbench::Workbench& bench_;
    workbench::PointsView& view_;
    AngleUnit angles_ = AngleUnit::kGon;
    QSplitter* fit_ = nullptr;
    FindingsView* figures_ = nullptr;
    FindingsView* parameters_ = nullptr;
    QCheckBox* accurate_ = nullptr;
    FindingsView* types_ = nullptr;
    QLabel* advice_ = nullptr;
    FindingsView* points_ = nullptr;
    FindingsView* distortion_ = nullptr;
    FindingsView* steps_ = nullptr;
    QTimer rest_;
};

}  // namespace kv_tr::desktop
