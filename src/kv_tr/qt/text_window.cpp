// The windows of the two forms that show a text for editing.
#include "kv_tr/qt/text_window.h"

#include <QBoxLayout>
#include <QFontDatabase>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>

namespace kv_tr {
namespace {

/// A text box that an empty clipboard does not harm: Qt 6.4 looks at the first of the formats that
/// are pasted or dropped without asking whether there is one.
class TextBox : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void insertFromMimeData(const QMimeData* source) override {
        if (!source->formats().isEmpty()) QPlainTextEdit::insertFromMimeData(source);
    }
};

}  // namespace

void TextWindow::LayOut(const QList<QPushButton*>& buttons, const std::function<bool()>& confirm) {
    box_ = new TextBox(this);
    box_->setObjectName("rtBox");
    box_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    box_->setLineWrapMode(QPlainTextEdit::NoWrap);
    box_->setTabChangesFocus(true);
    box_->setFocus();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(box_);
    auto* row = new QHBoxLayout;
    QWidget* before = box_;
    for (QPushButton* button : buttons) {
        row->addWidget(button);
        setTabOrder(before, button);
        before = button;
    }
    row->addStretch();
    row->addWidget(MakeButton("cmdOk", [this, confirm] {
        if (confirm()) accept();
    }));
    row->addWidget(MakeButton("cmdNok", [this] { reject(); }));
    layout->addLayout(row);
}

void TextWindow::ShowText(const std::string& text) {
    if (Text() != text) box_->setPlainText(QString::fromStdString(text).remove('\r'));
}

std::string TextWindow::Text() const {
    constexpr QChar kParagraph(0x2029);  // between lines; toPlainText would change blanks
    return box_->document()->toRawText().replace(kParagraph, "\r\n").toStdString();
}

PolynomialWindow::PolynomialWindow(frmPoliTrPrm& form)
    : TextWindow("frmPoliTrPrm", {720, 560}), form_(form) {
    national_ = MakeButton("cmdDAT2M1", [this] { form_.cmdDAT2M1(); });
    LayOut({national_, MakeButton("cmdLoad", [this] { form_.cmdLoad(); }),
            MakeButton("cmdSave", [this] { form_.cmdSave(); })},
           [this] { return form_.cmdOk(); });
    Follow(form.Changed);
    connect(box_, &QPlainTextEdit::textChanged, [this] { form_.rtBox(Text()); });
}

void PolynomialWindow::Redraw() {
    ShowCaptions(form_.ControlTexts());
    national_->setVisible(form_.NationalVisible());
    ShowText(form_.rtBox());
}

ControlPointWindow::ControlPointWindow(frmXY4Tr& form)
    : TextWindow("frmXY4Tr", {720, 480}), form_(form) {
    LayOut({MakeButton("cmdLoad", [this] { form_.cmdLoad(); }),
            MakeButton("cmdSave", [this] { form_.cmdSave(); })},
           [this] { return form_.cmdOk(); });
    Follow(form.Changed);
    connect(box_, &QPlainTextEdit::textChanged, [this] { form_.rtBox(Text()); });
}

void ControlPointWindow::Redraw() {
    ShowCaptions(form_.ControlTexts());
    setWindowTitle(QString::fromStdString(form_.Title()));
    ShowText(form_.rtBox());
}

}  // namespace kv_tr
