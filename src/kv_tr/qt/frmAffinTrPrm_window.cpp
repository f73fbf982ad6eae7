// The window of the editor of six parameters.
#include "kv_tr/qt/frmAffinTrPrm_window.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "kv_tr/published/number_format.h"

namespace kv_tr {

frmAffinTrPrmWindow::frmAffinTrPrmWindow(frmAffinTrPrm& form)
    : FormWindow(form, "frmAffinTrPrm", {620, 320}), form_(form) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeBoxes());
    layout->addWidget(MakeSample());
    layout->addStretch();
    layout->addLayout(MakeButtons());
    Follow();
    boxes_.front()->setFocus();
}

QGroupBox* frmAffinTrPrmWindow::MakeBoxes() {
    auto* frame = Bind("frmPrm", new QGroupBox(this));
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < frmAffinTrPrm::kBoxes; ++i) {
        auto* box = new QLineEdit(frame);
        box->setObjectName(Numbered("txtTrPrm", i));
        box->setAlignment(Qt::AlignRight);
        connect(box, &QLineEdit::editingFinished, [this, i] { Settle(i); });
        auto* label = Bind(Numbered("lblTrPrm", i), new QLabel(frame));
        label->setBuddy(box);
        const int row = i % 3;
        const int column = i / 3 * 2;
        grid->addWidget(label, row, column);
        grid->addWidget(box, row, column + 1);
        boxes_[static_cast<std::size_t>(i)] = box;
    }
    return frame;
}

QGroupBox* frmAffinTrPrmWindow::MakeSample() {
    auto* frame = Bind("frmSample", new QGroupBox(this));
    auto* layout = new QVBoxLayout(frame);
    for (QLabel*& sample : samples_) {
        sample = new QLabel(frame);
        sample->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(sample);
    }
    return frame;
}

QLayout* frmAffinTrPrmWindow::MakeButtons() {
    fathomButtons_ = {MakeButton("cmdMeterOl", [this] { form_.cmdMeterOl(); }),
                      MakeButton("cmdOlMeter", [this] { form_.cmdOlMeter(); })};
    QPushButton* load = MakeButton("cmdLoad", [this] { form_.cmdLoad(); });
    QPushButton* save = MakeButton("cmdSave", [this] { form_.cmdSave(); });
    QPushButton* copy =
        MakeCopyButton([this](TransformationFormat format) { return form_.cmdCopyAs(format); });
    QPushButton* ok = MakeButton("cmdOk", [this] {
        if (form_.cmdOk()) accept();
    });
    QPushButton* cancel = MakeCancelButton("cmdNok");  // whatever stands in a box
    auto* row = new QHBoxLayout;
    for (QPushButton* button : fathomButtons_) row->addWidget(button);
    row->addStretch();
    row->addWidget(copy);
    row->addWidget(load);
    row->addWidget(save);
    row->addWidget(MakeEnds(ok, cancel));
    for (auto* button : {fathomButtons_[0], fathomButtons_[1], copy, load, save, ok, cancel}) {
        button->setFocusPolicy(Qt::TabFocus);  // a click must not have the box checked before it
    }
    return row;
}

void frmAffinTrPrmWindow::Redraw() {
    FormWindow::Redraw();
    for (int i = 0; i < frmAffinTrPrm::kBoxes; ++i) {
        QLineEdit* box = boxes_[static_cast<std::size_t>(i)];
        const QString text = QString::fromStdString(form_.BoxText(i));
        if (!box->isModified() && box->text() != text) box->setText(text);
    }
    for (int line = 0; line < 2; ++line) {
        samples_[static_cast<std::size_t>(line)]->setText(
            QString::fromStdString(form_.SampleText(line)));
    }
    for (QPushButton* button : fathomButtons_) button->setVisible(form_.FathomButtonsVisible());
}

void frmAffinTrPrmWindow::Act(const std::function<void()>& action) {
    FormWindow::Act([&] {
        for (int i = 0; i < frmAffinTrPrm::kBoxes; ++i) {
            if (!Settle(i)) return;
        }
        action();
    });
}

/// Leaves with the numbers that were typed; other texts no longer matter.
void frmAffinTrPrmWindow::reject() {
    for (int i = 0; i < frmAffinTrPrm::kBoxes; ++i) {
        QLineEdit* box = boxes_[static_cast<std::size_t>(i)];
        if (TypedNumber(box->text().toStdString())) {
            Settle(i);
        } else {
            box->setModified(false);
        }
    }
    FormWindow::reject();
}

/// Hands a changed text to the form; when that refuses it, the box keeps the focus.
bool frmAffinTrPrmWindow::Settle(int box) {
    QLineEdit* edit = boxes_[static_cast<std::size_t>(box)];
    if (!edit->isModified()) return true;
    edit->setModified(false);  // the message takes the focus from the box, once
    if (form_.txtTrPrm(box, edit->text().toStdString())) return true;
    edit->setText(QString::fromStdString(form_.BoxText(box)));
    edit->setFocus();
    edit->selectAll();
    return false;
}

}  // namespace kv_tr
