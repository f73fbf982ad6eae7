// The window that transforms a coordinate file.
#pragma once

#include <QDialog>

#include "desktop/transform_form.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTreeWidget;

namespace kv_tr::desktop {

class TransformWindow : public QDialog {
public:
    TransformWindow(TransformForm& form, QWidget* parent);

private:
    QLineEdit* AddFileRow(QGridLayout& grid, int labelId, const std::function<void()>& browse);
    QCheckBox* MakeCheckBox(int textId, bool host::CoordinateOptions::*option);
    void Redraw();
    void RedrawPreview();
    void Run();

    TransformForm& form_;
    QLineEdit* input_;
    QLineEdit* output_;
    QTreeWidget* preview_;
    QPushButton* run_;
};

}  // namespace kv_tr::desktop
