// The dialog of what belongs to a whole project: its systems, the error limit, the level of the
// tests.
#include "desktop/properties_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "desktop/ui_text.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"
#include "kv_tr/text/number_text.h"
#include "workbench/preview_form.h"

namespace kv_tr::desktop {

using workbench::Phrase;

PropertiesDialog::PropertiesDialog(workbench::Workbench& bench, QWidget* owner)
    : QDialog(owner), bench_(bench) {
    setWindowTitle(UiText(Phrase::kProperties).remove(QStringLiteral("…")));
    const workbench::Settings& settings = bench_.Project().Current();
    const workbench::System& source = settings.source;
    const workbench::System& destination = settings.destination;
    const QStringList labels = WithMnemonics(
        {UiText(Phrase::kSourceName), UiText(Phrase::kSourceAxesLabel), UiText(Phrase::kSourceCrs),
         UiText(Phrase::kDestinationName), UiText(Phrase::kDestinationAxesLabel),
         UiText(Phrase::kDestinationCrs), UiText(Phrase::kLimitLabel), UiText(Phrase::kAlphaLabel),
         UiText(Text::kOk), UiText(Text::kCancel)});
    auto* rows = new QFormLayout(this);
    const auto numberText = [](double number) {
        return ShortestText(number, ComponentNumberStyle());
    };
    source_ = {AddText(*rows, labels[0], source.name), AddAxes(*rows, labels[1], source.axes),
               AddText(*rows, labels[2], source.crs)};
    destination_ = {AddText(*rows, labels[3], destination.name),
                    AddAxes(*rows, labels[4], destination.axes),
                    AddText(*rows, labels[5], destination.crs)};
    limit_ = AddText(*rows, labels[6], numberText(settings.limit));
    limit_->setObjectName("limit");
    alpha_ = AddText(*rows, labels[7], numberText(settings.alpha));
    alpha_->setObjectName("alpha");
    auto* buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    buttons->button(QDialogButtonBox::Ok)->setText(labels[8]);
    buttons->button(QDialogButtonBox::Cancel)->setText(labels[9]);
    connect(buttons, &QDialogButtonBox::accepted, this, &PropertiesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PropertiesDialog::reject);
    rows->addRow(buttons);
    resize(480, sizeHint().height());
}

QLineEdit* PropertiesDialog::AddText(QFormLayout& rows, const QString& label,
                                     const std::string& text) {
    auto* field = new QLineEdit(QString::fromStdString(text), this);
    rows.addRow(label + ":", field);
    return field;
}

QComboBox* PropertiesDialog::AddAxes(QFormLayout& rows, const QString& label, AxisMapping axes) {
    auto* list = new QComboBox(this);
    for (const AxisMapping one : workbench::kAxisMappings) {
        list->addItem(QString::fromStdString(workbench::AxesText(one)));
        if (one == axes) list->setCurrentIndex(list->count() - 1);
    }
    rows.addRow(label + ":", list);
    return list;
}

workbench::System PropertiesDialog::SystemIn(const SystemFields& fields) {
    return {.name = fields.name->text().trimmed().toStdString(),
            .axes = workbench::kAxisMappings[static_cast<std::size_t>(fields.axes->currentIndex())],
            .crs = fields.crs->text().trimmed().toStdString()};
}

/// False, with a message, at the first number that cannot be taken.
bool PropertiesDialog::TakeNumbers() {
    for (const auto& [field, take] : {std::pair{limit_, &workbench::Workbench::SetLimit},
                                      std::pair{alpha_, &workbench::Workbench::SetAlpha}}) {
        if (!field->isModified() || (bench_.*take)(field->text().toStdString()) ||
            bench_.Notice().empty())
            continue;
        ShowMessage(bench_.Notice(), Icon::kExclamation);
        field->setFocus();
        field->selectAll();
        return false;
    }
    return true;
}

void PropertiesDialog::accept() {
    RunAction([this] {
        if (!TakeNumbers()) return;
        bench_.SetSystems(SystemIn(source_), SystemIn(destination_));
        QDialog::accept();
    });
}

}  // namespace kv_tr::desktop
