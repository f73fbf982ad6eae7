// The window that transforms a coordinate file.
#pragma once

#include <QDialog>
#include <chrono>

#include "desktop/transform_form.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTreeWidget;

namespace kv_tr::desktop {

/// Comes back in the size it was left with.
class TransformWindow : public QDialog {
public:
    /// What takes longer than the patience shows how far it is and can be cancelled.
    TransformWindow(TransformForm& form, QWidget* parent,
                    std::chrono::milliseconds patience = std::chrono::milliseconds(500));

protected:
    void done(int result) override;

private:
    QLineEdit* AddFileRow(QGridLayout& grid, int labelId, const std::function<void()>& browse);
    QCheckBox* MakeCheckBox(int textId, bool app::CoordinateOptions::*option);
    void Redraw();
    void RedrawPreview();
    void Run();

    TransformForm& form_;
    const std::chrono::milliseconds patience_;
    QLineEdit* input_;
    QLineEdit* output_;
    QTreeWidget* preview_;
    QPushButton* run_;
};

}  // namespace kv_tr::desktop
