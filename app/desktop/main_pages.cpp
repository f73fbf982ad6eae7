// The pages of the main window.
#include <QBoxLayout>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "desktop/main_window.h"
#include "desktop/ui_text.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr::desktop {

QWidget* MainWindow::MakeStartPage() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    auto* name = new QLabel("KV_Tr", page);
    QFont large = name->font();
    large.setPointSize(2 * large.pointSize());
    name->setFont(large);
    auto* hint = MakeLabel(Text::kDropHint);
    hint->setWordWrap(true);
    recent_ = new QListWidget(page);
    recent_->setObjectName("recent");
    connect(recent_, &QListWidget::itemActivated, [this](const QListWidgetItem* item) {
        Open(item->data(Qt::UserRole).toString().toStdString());
    });
    layout->addWidget(name);
    layout->addWidget(MakeLabel(Text::kProgramSummary));
    layout->addSpacing(12);
    for (QPushButton* button :
         {MakeButton(Text::kChooseParameters, [this] { form_.ChooseParameters(); }),
          MakeButton(Text::kOpenPoints, [this] { form_.OpenControlPoints(); })}) {
        button->setMinimumSize(360, 44);
        layout->addWidget(button, 0, Qt::AlignLeft);
    }
    layout->addWidget(hint);
    layout->addSpacing(12);
    layout->addWidget(MakeLabel(Text::kRecentFiles, recent_));
    layout->addWidget(recent_, 1);
    return page;
}

QWidget* MainWindow::MakeWorkPage() {
    auto* page = new QWidget(this);
    auto* use = new QVBoxLayout;
    use->addWidget(MakePoint());
    use->addWidget(MakeDirection());
    use->addWidget(MakeButton(Text::kTransformFile, [this] { TransformFile({}); }));
    use->addWidget(MakeButton(Text::kChooseParameters, [this] { form_.ChooseParameters(); }));
    use->addStretch();
    auto* layout = new QHBoxLayout(page);
    layout->addWidget(MakeParameters(), 1);
    layout->addLayout(use);
    for (QLineEdit* edit : {point_[0], point_[1], direction_, length_}) {
        connect(edit, &QLineEdit::textChanged, [this] { RedrawResults(); });
    }
    connect(unit_, &QComboBox::currentIndexChanged, [this] { RedrawResults(); });
    return page;
}

QGroupBox* MainWindow::MakeParameters() {
    QGroupBox* group = MakeGroup(Text::kCurrentParameters);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    type_ = new QLabel(group);
    type_->setObjectName("type");
    QFont bold = type_->font();
    bold.setBold(true);
    type_->setFont(bold);
    listing_ = new QPlainTextEdit(group);
    listing_->setObjectName("listing");
    listing_->setReadOnly(true);
    listing_->setFont(fixed);
    listing_->setLineWrapMode(QPlainTextEdit::NoWrap);
    formula_ = new QLabel(group);
    formula_->setObjectName("formula");
    formula_->setFont(fixed);
    formula_->setWordWrap(true);
    formula_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(type_);
    layout->addWidget(listing_, 1);
    layout->addWidget(formula_);
    return group;
}

QGroupBox* MainWindow::MakePoint() {
    QGroupBox* group = MakeGroup(Text::kPointFrame);
    point_ = {MakeInput("Y1"), MakeInput("X1")};
    image_ = {MakeResult("Y2"), MakeResult("X2")};
    auto* grid = new QGridLayout(group);
    const std::array rows{point_[0], point_[1], image_[0], image_[1]};
    for (QLineEdit* edit : rows) {
        auto* label = new QLabel(edit->objectName() + " [m]:", group);  // as formulas name them
        label->setBuddy(edit);
        const int row = grid->count() / 2;
        grid->addWidget(label, row, 0);
        grid->addWidget(edit, row, 1);
    }
    return group;
}

QGroupBox* MainWindow::MakeDirection() {
    QGroupBox* group = MakeGroup(Text::kDirectionFrame);
    direction_ = MakeInput("direction");
    unit_ = new QComboBox(group);
    length_ = MakeInput("length");
    length_->setText("1000");
    directionImage_ = MakeResult("directionImage");
    uncertainty_ = new QLabel(group);
    unit_->setObjectName("unit");
    for (const app::AngleUnit& unit : app::AngleUnits()) {
        unit_->addItem(QLatin1String(unit.name.data(), qsizetype(unit.name.size())));
    }
    unit_->setCurrentText("gon");
    captions_.emplace_back([this] {
        direction_->setToolTip(UiText(Text::kAngleArgument));
        length_->setToolTip(UiText(Text::kLengthOption));
        uncertainty_->setToolTip(UiText(Text::kSinglePrecision));
    });
    auto* grid = new QGridLayout(group);
    grid->addWidget(MakeLabel(Text::kDirectionLabel, direction_), 0, 0);
    grid->addWidget(direction_, 0, 1);
    grid->addWidget(unit_, 0, 2);
    grid->addWidget(MakeLabel(Text::kLengthLabel, length_), 1, 0);
    grid->addWidget(length_, 1, 1);
    grid->addWidget(MakeLabel(Text::kResultLabel), 2, 0);
    grid->addWidget(directionImage_, 2, 1);
    grid->addWidget(uncertainty_, 3, 1, Qt::AlignRight);
    return group;
}

QPushButton* MainWindow::MakeButton(Text text, const Action& action) {
    auto* button = new QPushButton(this);
    connect(button, &QPushButton::clicked, [action] { RunAction(action); });
    lettered_.push_back({text, [button](const QString& caption) { button->setText(caption); }});
    return button;
}

QGroupBox* MainWindow::MakeGroup(Text text) {
    auto* group = new QGroupBox(this);
    captions_.emplace_back([group, text] { group->setTitle(UiText(text)); });
    return group;
}

/// The label of an input, which its letter leads to.
QLabel* MainWindow::MakeLabel(Text text, QWidget* input) {
    auto* label = new QLabel(this);
    label->setBuddy(input);
    lettered_.push_back({text, [label](const QString& caption) { label->setText(caption); }});
    return label;
}

QLabel* MainWindow::MakeLabel(Text text) {
    auto* label = new QLabel(this);
    captions_.emplace_back([label, text] { label->setText(UiText(text)); });
    return label;
}

QLineEdit* MainWindow::MakeInput(const char* name) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setAlignment(Qt::AlignRight);
    return edit;
}

QLineEdit* MainWindow::MakeResult(const char* name) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    edit->setAlignment(Qt::AlignRight);
    QFont bold = edit->font();
    bold.setBold(true);
    edit->setFont(bold);
    return edit;
}

}  // namespace kv_tr::desktop
