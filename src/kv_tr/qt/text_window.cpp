// The windows of the two forms that show a text for editing.
#include "kv_tr/qt/text_window.h"

#include <QBoxLayout>
#include <QFontDatabase>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

// The columns of a listing of control points.
constexpr int kIdentifierWidth = 20;
constexpr int kCoordinateWidth = 15;

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

void TextWindow::LayOut(const QList<QPushButton*>& buttons, const QString& heading) {
    box_ = new TextBox(this);
    box_->setObjectName("rtBox");
    box_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    box_->setLineWrapMode(QPlainTextEdit::NoWrap);
    box_->setTabChangesFocus(true);
    box_->setFocus();
    auto* layout = new QVBoxLayout(this);
    if (!heading.isEmpty()) {
        auto* label = new QLabel(heading, this);
        label->setFont(box_->font());
        label->setIndent(box_->frameWidth() + static_cast<int>(box_->document()->documentMargin()));
        layout->addWidget(label);
    }
    layout->addWidget(box_);
    auto* row = new QHBoxLayout;
    QWidget* before = box_;
    for (QPushButton* button : buttons) {
        row->addWidget(button);
        setTabOrder(before, button);
        before = button;
    }
    row->addStretch();
    row->addWidget(MakeEnds(MakeButton("cmdOk",
                                       [this] {
                                           if (form_.cmdOk()) accept();
                                       }),
                            MakeCancelButton("cmdNok")));
    layout->addLayout(row);
    Follow();
    connect(box_, &QPlainTextEdit::textChanged, [this] { form_.rtBox(Text()); });
}

void TextWindow::Redraw() {
    FormWindow::Redraw();
    const std::string& text = form_.rtBox();
    if (Text() != text) box_->setPlainText(QString::fromStdString(text).remove('\r'));
}

/// The text in the box with the form's line ends.
std::string TextWindow::Text() const {
    constexpr QChar kParagraph(0x2029);  // between lines; toPlainText would change blanks
    return box_->document()->toRawText().replace(kParagraph, "\r\n").toStdString();
}

PolynomialWindow::PolynomialWindow(frmPoliTrPrm& form)
    : TextWindow(form, "frmPoliTrPrm", {720, 560}), form_(form) {
    national_ = MakeButton("cmdDAT2M1", [this] { form_.cmdDAT2M1(); });
    LayOut({national_,
            MakeCopyButton([this](TransformationFormat format) { return form_.cmdCopyAs(format); }),
            MakeButton("cmdLoad", [this] { form_.cmdLoad(); }),
            MakeButton("cmdSave", [this] { form_.cmdSave(); })});
}

void PolynomialWindow::Redraw() {
    TextWindow::Redraw();
    national_->setVisible(form_.NationalVisible());
}

ControlPointWindow::ControlPointWindow(frmXY4Tr& form) : TextWindow(form, "frmXY4Tr", {720, 480}) {
    QString heading = QString::fromStdString(Translated(Text::kIdentifierColumn)).trimmed();
    heading = heading.rightJustified(kIdentifierWidth);
    for (const char* name : {"Y1", "X1", "Y2", "X2"})
        heading += QString(name).rightJustified(kCoordinateWidth);
    LayOut({MakeButton("cmdLoad", [&form] { form.cmdLoad(); }),
            MakeButton("cmdSave", [&form] { form.cmdSave(); })},
           heading);
}

}  // namespace kv_tr
