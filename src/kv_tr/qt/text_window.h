// The windows of the two forms that show a text for editing.
#pragma once

#include "kv_tr/forms/frmPoliTrPrm.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/qt/form_window.h"

class QBoxLayout;
class QPlainTextEdit;

namespace kv_tr {

/// A window with a text box and the buttons below it.
class TextWindow : public FormWindow {
protected:
    using FormWindow::FormWindow;

    /// Lays the window out: the box, the buttons of the form, OK and cancel.
    void LayOut(const QList<QPushButton*>& buttons, const std::function<bool()>& confirm);
    void ShowText(const std::string& text);
    /// The text with the form's line ends.
    std::string Text() const;

    QPlainTextEdit* box_ = nullptr;
};

class PolynomialWindow : public TextWindow {
public:
    explicit PolynomialWindow(frmPoliTrPrm& form);

protected:
    void Redraw() override;

private:
    frmPoliTrPrm& form_;
    QPushButton* national_;
};

class ControlPointWindow : public TextWindow {
public:
    explicit ControlPointWindow(frmXY4Tr& form);

protected:
    void Redraw() override;

private:
    frmXY4Tr& form_;
};

}  // namespace kv_tr
