// The panel below the table: the statistics of the fit, or the types to choose from.
#pragma once

#include <QWidget>

#include "kv_tr/forms/frmTr.h"

class QCheckBox;
class QLabel;
class QSplitter;

namespace kv_tr {

class FindingsView;

/// Shows what the form says of its fit, or nothing while no panel is wanted.
class FindingsPanel : public QWidget {
    Q_OBJECT

public:
    /// The box belongs to the window, which names it and acts.
    FindingsPanel(frmTr& form, QCheckBox* accurate, QWidget* parent);

    void Redraw();
    /// Moves the keyboard to the types.
    void EnterTypes();

signals:
    /// The user wants to fit the type of a row.
    void TypeChosen(int row);

private:
    void ShowStatistics();
    void ShowTypes();

    frmTr& form_;
    QCheckBox* accurate_;
    QSplitter* statistics_;
    bool sized_ = false;  // the statistics have been as wide as their columns once
    FindingsView* figures_;
    FindingsView* parameters_;
    FindingsView* types_;
    QLabel* advice_;
};

}  // namespace kv_tr
