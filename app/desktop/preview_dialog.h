// The window that shows how points are understood before they are taken.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <vector>

#include "workbench/preview_form.h"

class QCheckBox;
class QFormLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace kv_tr::desktop {

/// A preview in which everything may be chosen otherwise; accepted when the user takes the points.
class PreviewDialog : public QDialog {
    Q_OBJECT

public:
    PreviewDialog(workbench::OpenPreview& preview, QWidget* owner);

protected:
    void done(int result) override;

private:
    QWidget* MakeChoices();
    void AddChoice(QFormLayout& column, workbench::PreviewChoice choice);
    void Redraw();
    void RedrawChoices();
    void RedrawTable();
    void RedrawColumnChoices(int columns);
    void RedrawSentences();

    workbench::OpenPreview& preview_;
    workbench::PreviewForm form_;
    struct Choice {
        workbench::PreviewChoice what;
        QLabel* label;
        QComboBox* list;
    };
    std::vector<Choice> choices_;
    QCheckBox* sigmas_ = nullptr;
    QPushButton* swap_ = nullptr;
    QLabel* understood_ = nullptr;
    QTableWidget* table_ = nullptr;
    QPlainTextEdit* sentences_ = nullptr;
    QPushButton* take_ = nullptr;
};

}  // namespace kv_tr::desktop
