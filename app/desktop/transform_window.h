// The window that transforms a coordinate file.
#pragma once

#include <chrono>

#include "desktop/transform_form.h"
#include "kv_tr/qt/form_window.h"

class QGridLayout;
class QLineEdit;
class QSpinBox;
class QTreeWidget;

namespace kv_tr::desktop {

class TransformWindow : public FormWindow {
public:
    /// What takes longer than the patience shows how far it is and can be cancelled.
    TransformWindow(TransformForm& form, QWidget* parent,
                    std::chrono::milliseconds patience = std::chrono::milliseconds(500));

protected:
    void Redraw() override;

private:
    QLayout* MakeSettings();
    QLineEdit* AddFileRow(QGridLayout& grid, const char* name, void (TransformForm::*browse)());
    QWidget* MakeOption(const char* name, bool app::CoordinateOptions::*option);
    QWidget* MakePreview();
    void RedrawPreview();
    void Run();

    TransformForm& form_;
    const std::chrono::milliseconds patience_;
    QLineEdit* input_ = nullptr;
    QLineEdit* output_ = nullptr;
    QTreeWidget* preview_ = nullptr;
    QPushButton* run_ = nullptr;
};

}  // namespace kv_tr::desktop
