// The strip that says whether a fit can be relied on.
#include "kv_tr/qt/warning_strip.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <utility>

namespace kv_tr {
namespace {

using Look = StripLine::Look;

struct LookStyle {
    QColor ground;  // none: that of the window
    QColor text;
    QStyle::StandardPixmap icon;
};

LookStyle StyleOf(Look look, const QPalette& palette) {
    switch (look) {
        case Look::kChecked: break;
        case Look::kNote: return {"#dfe7f1", "#1c2b3d", QStyle::SP_MessageBoxInformation};
        case Look::kWarning: return {"#ffefb8", "#4a3700", QStyle::SP_MessageBoxWarning};
        case Look::kSevere: return {"#f9d2d2", "#5c0d0d", QStyle::SP_MessageBoxCritical};
    }
    return {{}, palette.color(QPalette::PlaceholderText), QStyle::SP_DialogApplyButton};
}

QString TextOf(const StripLine& line) { return QString::fromStdString(line.text); }

/// The lines from a number on as paragraphs; their offers are links that name the line, where they
/// can be followed.
QString Paragraphs(const std::vector<StripLine>& lines, std::size_t from, bool withLinks) {
    QString html;
    for (std::size_t i = from; i < lines.size(); ++i) {
        const QString offer = QString::fromStdString(lines[i].offer).toHtmlEscaped();
        html += "<p style='margin:2px'>" + TextOf(lines[i]).toHtmlEscaped();
        if (withLinks && !offer.isEmpty()) {
            html += QString(" <a href='%1' style='color:#0b3d91'>%2</a>").arg(i).arg(offer);
        }
        html += "</p>";
    }
    return html;
}

QLabel* WrappedLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

WarningStrip::WarningStrip(QPushButton* offer, QPushButton* more, QWidget* parent)
    : QFrame(parent),
      first_(new QHBoxLayout),
      icon_(new QLabel(this)),
      text_(WrappedLabel(this)),
      offer_(offer),
      more_(more),
      others_(WrappedLabel(this)) {
    setObjectName("strip");
    text_->setObjectName("lblWarning");
    text_->setTextFormat(Qt::PlainText);
    others_->setObjectName("lblOtherWarnings");
    others_->setTextFormat(Qt::RichText);
    others_->setTextInteractionFlags(Qt::TextBrowserInteraction);
    connect(others_, &QLabel::linkActivated, this,
            [this](const QString& link) { emit OfferChosen(link.toInt()); });
    setAutoFillBackground(true);
    first_->addWidget(icon_);
    first_->addWidget(text_, 1);
    first_->addWidget(offer_);
    first_->addWidget(more_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    layout->addLayout(first_);
    layout->addWidget(others_);
}

void WarningStrip::Add(QPushButton* button) { first_->insertWidget(first_->count() - 1, button); }

void WarningStrip::Show(std::vector<StripLine> lines, bool all) {
    lines_ = std::move(lines);
    setVisible(!lines_.empty());
    if (lines_.empty()) return;
    ShowLook(lines_.front().look);
    text_->setText(TextOf(lines_.front()));
    offer_->setVisible(!lines_.front().offer.empty());
    const bool hasOthers = lines_.size() > 1;
    more_->setVisible(hasOthers);
    more_->setChecked(all);
    others_->setText(Paragraphs(lines_, 1, true));
    others_->setVisible(hasOthers && all);
    setToolTip(hasOthers ? Paragraphs(lines_, 0, false) : QString());
}

void WarningStrip::ShowLook(Look look) {
    const QPalette palette = parentWidget()->palette();
    const auto [ground, text, icon] = StyleOf(look, palette);
    QPalette own = palette;
    if (ground.isValid()) own.setColor(QPalette::Window, ground);
    setPalette(own);
    own.setColor(QPalette::WindowText, text);
    for (QLabel* label : {text_, others_}) label->setPalette(own);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon_->setPixmap(style()->standardIcon(icon).pixmap(size));
}

}  // namespace kv_tr
