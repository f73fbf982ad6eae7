// The window of the chooser of national transformations.
#include "kv_tr/qt/frmChooseDAT2M1_window.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

namespace kv_tr {
namespace {

QStringList Texts(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts) list << QString::fromStdString(text);
    return list;
}

}  // namespace

frmChooseDAT2M1Window::frmChooseDAT2M1Window(frmChooseDAT2M1& form)
    : FormWindow(form, "frmChooseDAT2M1", {640, 520}), form_(form) {
    list_ = Bind("lstTr", new QTreeWidget(this));
    list_->setHeaderLabels(
        Texts(frmChooseDAT2M1::Headings()));  // before rows: one selects its cells
    list_->setRootIsDecorated(false);
    list_->setAlternatingRowColors(true);
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const auto& row : frmChooseDAT2M1::Rows()) {
        auto* item = new QTreeWidgetItem(list_, Texts(row));
        item->setTextAlignment(3, Qt::AlignRight);
    }
    list_->setCurrentItem(list_->topLevelItem(form.lstTr()));
    origin_ = new QLabel(this);
    origin_->setWordWrap(true);
    origin_->setMinimumHeight(3 * fontMetrics().lineSpacing());
    const auto confirm = [this] {
        if (form_.cmdOk()) accept();
    };
    ok_ = MakeButton("cmdOk", confirm);
    ok_->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addWidget(origin_);
    layout->addWidget(MakeEnds(ok_, MakeCancelButton("cmdNok")));
    Follow();
    connect(list_, &QTreeWidget::currentItemChanged,
            [this](QTreeWidgetItem* item) { form_.lstTr(list_->indexOfTopLevelItem(item)); });
    connect(list_, &QTreeWidget::itemDoubleClicked, [this, confirm] { Act(confirm); });
}

void frmChooseDAT2M1Window::Redraw() {
    FormWindow::Redraw();
    list_->setHeaderLabels(Texts(frmChooseDAT2M1::Headings()));
    origin_->setText(QString::fromStdString(form_.Origin()));
    ok_->setEnabled(form_.lstTr() >= 0);
}

}  // namespace kv_tr
