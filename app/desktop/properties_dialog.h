// The dialog of what belongs to a whole project: its systems, the error limit, the level of the
// tests.
#pragma once

#include <QDialog>

#include "workbench/workbench.h"

class QComboBox;
class QFormLayout;
class QLineEdit;

namespace kv_tr::desktop {

/// Changes nothing before it is accepted; what cannot be taken is told, and the dialog stays.
class PropertiesDialog : public QDialog {
    Q_OBJECT

public:
    PropertiesDialog(workbench::Workbench& bench, QWidget* owner);

    void accept() override;

private:
    struct SystemFields {
        QLineEdit* name;
        QComboBox* axes;
        QLineEdit* crs;
    };

    QLineEdit* AddText(QFormLayout& rows, const QString& label, const std::string& text);
    QComboBox* AddAxes(QFormLayout& rows, const QString& label, AxisMapping axes);
    static workbench::System SystemIn(const SystemFields& fields);
    bool TakeNumbers();

    workbench::Workbench& bench_;
    SystemFields source_{};
    SystemFields destination_{};
    QLineEdit* limit_ = nullptr;
    QLineEdit* alpha_ = nullptr;
};

}  // namespace kv_tr::desktop
