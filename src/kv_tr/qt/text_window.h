// The windows of the two forms that show a text for editing.
#pragma once

#include "kv_tr/forms/frmPoliTrPrm.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/qt/form_window.h"

class QPlainTextEdit;

namespace kv_tr {

/// A window with a text box and the buttons below it.
class TextWindow : public FormWindow {
protected:
    TextWindow(TextForm& form, const char* name, QSize size)
        : FormWindow(form, name, size), form_(form) {}

    /// Lays the window out: the box under its heading, the buttons of the form, OK and cancel; and
    /// shows the form.
    void LayOut(const QList<QPushButton*>& buttons, const QString& heading = {});
    void Redraw() override;

private:
    std::string Text() const;

    TextForm& form_;
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
};

}  // namespace kv_tr
