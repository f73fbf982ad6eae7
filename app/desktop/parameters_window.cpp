// The parameters in use, and what they do to a point, a direction and a file.
#include "desktop/parameters_window.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

#include "desktop/ui_text.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"

namespace kv_tr::desktop {

namespace {

constexpr const char* kParameters = "Parameters";

}  // namespace

ParametersWindow::ParametersWindow(DesktopForm& form, const std::function<void()>& transformFile,
                                   QWidget* parent)
    : QDialog(parent), form_(form) {
    setObjectName(kParameters);
    captions_.emplace_back([this] { setWindowTitle(UiText(Text::kCurrentParameters)); });
    auto* use = new QVBoxLayout;
    use->addWidget(MakePoint());
    use->addWidget(MakeDirection());
    auto* transform = MakeButton(Text::kTransformFile, transformFile);
    auto* save = MakeButton(Text::kSaveParametersAs, [this] { form_.SaveParameters(); });
    invert_ = MakeButton(Text::kInvert, [this] { form_.Invert(); });
    needParameters_ = {transform, save};
    for (QPushButton* button :
         {transform, save, invert_,
          MakeButton(Text::kChooseParameters, [this] { form_.ChooseParameters(); })}) {
        use->addWidget(button);
    }
    use->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(MakeParameters(), 1);
    layout->addLayout(use);
    for (QLineEdit* edit : {point_[0], point_[1], direction_, length_}) {
        connect(edit, &QLineEdit::textChanged, this, [this] { RedrawResults(); });
    }
    connect(unit_, &QComboBox::currentIndexChanged, this, [this] { RedrawResults(); });
    resize(RememberedSize(kParameters, {880, 480}));
    changed_ = form_.Changed.Subscribe([this] { Redraw(); });
    Redraw();
}

void ParametersWindow::Redraw() {
    for (const auto& set : captions_) set();
    QStringList texts;
    for (const Lettered& control : lettered_) texts << UiText(control.text);
    const QStringList marked = WithMnemonics(texts);
    auto caption = marked.begin();
    for (const Lettered& control : lettered_) control.setCaption(*caption++);
    for (QWidget* control : needParameters_) control->setEnabled(form_.HasParameters());
    invert_->setEnabled(form_.CanInvert());
    type_->setText(QString::fromStdString(form_.TypeText()));
    listing_->setPlainText(
        QString::fromStdString(form_.ListingText()).remove('\r').remove('\t').trimmed());
    // Each formula flows over as many lines as the window makes of it.
    static const QRegularExpression kContinued("\\n\\s+");
    QString formula = QString::fromStdString(form_.FormulaText()).remove('\r').trimmed();
    formula_->setText(formula.replace(kContinued, " "));
    formula_->setVisible(!formula_->text().isEmpty());
    RedrawResults();
}

void ParametersWindow::RedrawResults() {
    const DesktopForm::PointTexts point{point_[0]->text().toStdString(),
                                        point_[1]->text().toStdString()};
    const auto image = form_.Image(point);
    image_[0]->setText(QString::fromStdString(image.first));
    image_[1]->setText(QString::fromStdString(image.second));
    const auto& unit = app::AngleUnits()[static_cast<std::size_t>(unit_->currentIndex())];
    const auto direction = form_.ImageOfDirection(direction_->text().toStdString(), unit,
                                                  length_->text().toStdString(), point);
    directionImage_->setText(QString::fromStdString(direction.image));
    uncertainty_->setText(
        direction.image.empty() ? QString() : "± " + QString::fromStdString(direction.uncertainty));
}

void ParametersWindow::done(int result) {
    RememberSize(kParameters, size());
    QDialog::done(result);
}

QGroupBox* ParametersWindow::MakeParameters() {
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

QGroupBox* ParametersWindow::MakePoint() {
    QGroupBox* group = MakeGroup(Text::kPointFrame);
    point_ = {MakeInput("Y1"), MakeInput("X1")};
    image_ = {MakeResult("Y2"), MakeResult("X2")};
    auto* grid = new QGridLayout(group);
    const std::array<QWidget*, 4> rows{point_[0], point_[1], image_[0], image_[1]};
    for (QWidget* field : rows) {
        auto* label = new QLabel(field->objectName() + " [m]:", group);  // as formulas name them
        const int row = grid->count() / 2;
        grid->addWidget(label, row, 0);
        grid->addWidget(field, row, 1);
        if (row < 2) label->setBuddy(field);
    }
    return group;
}

QGroupBox* ParametersWindow::MakeDirection() {
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

QPushButton* ParametersWindow::MakeButton(Text text, const Action& action) {
    auto* button = new QPushButton(this);
    button->setAutoDefault(false);  // Enter belongs to the boxes
    connect(button, &QPushButton::clicked, [action] { RunAction(action); });
    lettered_.push_back({text, [button](const QString& caption) { button->setText(caption); }});
    return button;
}

QGroupBox* ParametersWindow::MakeGroup(Text text) {
    auto* group = new QGroupBox(this);
    captions_.emplace_back([group, text] { group->setTitle(UiText(text)); });
    return group;
}

/// The label of an input, which its letter leads to.
QLabel* ParametersWindow::MakeLabel(Text text, QWidget* input) {
    auto* label = new QLabel(this);
    label->setBuddy(input);
    lettered_.push_back({text, [label](const QString& caption) { label->setText(caption); }});
    return label;
}

QLabel* ParametersWindow::MakeLabel(Text text) {
    auto* label = new QLabel(this);
    captions_.emplace_back([label, text] { label->setText(UiText(text)); });
    return label;
}

QLineEdit* ParametersWindow::MakeInput(const char* name) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setAlignment(Qt::AlignRight);
    return edit;
}

QLabel* ParametersWindow::MakeResult(const char* name) {
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAlignment(Qt::AlignRight);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

}  // namespace kv_tr::desktop
