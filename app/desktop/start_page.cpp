// The page that the main window shows while nothing is open.
#include "desktop/start_page.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>

#include "desktop/icon.h"
#include "desktop/small_svg.h"
#include "desktop/ui_text.h"
#include "kv_tr/qt/mnemonics.h"

namespace kv_tr::desktop {
namespace {

using workbench::Phrase;

constexpr QSize kPicture{80, 60};

/// The picture of a project, or the sign of a file.
QIcon PictureOf(const workbench::RecentRow& row, const QWidget& widget) {
    const double scale = widget.devicePixelRatioF();
    QPixmap pixmap(kPicture * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    const QRect place({}, kPicture);
    if (row.picture.empty()) {
        Icon("report").paint(&painter, place.adjusted(16, 14, -16, -14));
    } else {
        PaintSvg(painter, place, QByteArray::fromStdString(row.picture),
                 widget.palette().color(QPalette::Text));
    }
    painter.end();
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected);  // colours that tell points apart stay
    return icon;
}

QString Described(const workbench::RecentRow& row) {
    QStringList second;
    if (row.isMissing) second << UiText(Phrase::kFileMissing);
    if (!row.day.empty()) second << QString::fromStdString(row.day);
    if (row.points) second << UiText(Phrase::kPointsOfProject, {std::to_string(*row.points)});
    return QString::fromStdString(row.name) + "\n" + QString::fromStdString(row.place) + "\n" +
           second.join(" · ");
}

}  // namespace

StartPage::StartPage(QWidget* parent) : QWidget(parent) {
    auto* left = new QVBoxLayout;
    left->setSpacing(8);
    auto* name = new QLabel("KV_Tr", this);
    QFont large = name->font();
    large.setPointSizeF(2 * large.pointSizeF());
    name->setFont(large);
    summary_ = new QLabel(this);
    first_ = new QLabel(this);
    for (QLabel* label : {summary_, first_}) label->setWordWrap(true);
    left->addWidget(name);
    left->addWidget(summary_);
    left->addSpacing(16);
    left->addWidget(first_);
    left->addSpacing(8);
    open_ = AddButton(*left, "open");
    open_->setObjectName("open");
    lists_ = AddButton(*left, "swap");
    lists_->setObjectName("lists");
    paste_ = AddButton(*left, "paste");
    paste_->setObjectName("paste");
    connect(open_, &QPushButton::clicked, this, &StartPage::OpenWanted);
    connect(lists_, &QPushButton::clicked, this, &StartPage::ListsWanted);
    connect(paste_, &QPushButton::clicked, this, &StartPage::PasteWanted);
    left->addSpacing(16);
    samplesTitle_ = new QLabel(this);
    left->addWidget(samplesTitle_);
    samples_ = new QVBoxLayout;
    samples_->setSpacing(8);
    left->addLayout(samples_);
    left->addStretch();

    auto* right = new QVBoxLayout;
    right->setSpacing(8);
    recentTitle_ = new QLabel(this);
    recent_ = new QListWidget(this);
    recent_->setObjectName("recent");
    recent_->setIconSize(kPicture);
    recent_->setSpacing(2);
    recent_->setTextElideMode(Qt::ElideMiddle);
    recent_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    recentTitle_->setBuddy(recent_);
    connect(recent_, &QListWidget::itemActivated, [this](const QListWidgetItem* item) {
        emit FileWanted(item->data(Qt::UserRole).toString());
    });
    auto* forget = new QShortcut(QKeySequence::Delete, recent_);
    forget->setContext(Qt::WidgetShortcut);
    connect(forget, &QShortcut::activated, this, [this] {
        if (const auto* item = recent_->currentItem())
            emit ForgetWanted(item->data(Qt::UserRole).toString());
    });
    nothing_ = new QLabel(this);
    nothing_->setWordWrap(true);
    nothing_->setAlignment(Qt::AlignTop);
    right->addWidget(recentTitle_);
    right->addWidget(nothing_, 1);
    right->addWidget(recent_, 1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->setSpacing(32);
    layout->addLayout(left, 2);
    layout->addLayout(right, 3);
    Redraw();
}

QPushButton* StartPage::AddButton(QVBoxLayout& column, const QString& icon) {
    auto* button = new QPushButton(this);
    button->setIcon(Icon(icon));
    button->setIconSize({24, 24});
    button->setMinimumHeight(40);
    button->setStyleSheet("text-align: left; padding-left: 12px;");
    column.addWidget(button);
    return button;
}

void StartPage::SetRecent(std::vector<workbench::RecentRow> rows) {
    rows_ = std::move(rows);
    Redraw();
}

void StartPage::Redraw() {
    summary_->setText(UiText(Text::kProgramSummary));
    first_->setText(UiText(Phrase::kStartFirst));
    const QStringList marked =
        WithMnemonics({UiText(Phrase::kStartOpen), UiText(Phrase::kOpenLists),
                       UiText(Phrase::kStartPaste), UiText(Text::kRecentFiles) + ":"});
    open_->setText(marked[0]);
    lists_->setText(marked[1]);
    paste_->setText(marked[2]);
    recentTitle_->setText(marked[3]);
    open_->setToolTip(UiText(Phrase::kStartOpenTip));
    paste_->setToolTip(UiText(Phrase::kStartPasteTip));
    samplesTitle_->setText(UiText(Phrase::kSamples) + ":");
    nothing_->setText(UiText(Phrase::kNothingRecent));
    RedrawSamples();
    RedrawRecent();
}

void StartPage::RedrawSamples() {
    while (QLayoutItem* item = samples_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const auto samples =
        workbench::SamplesFor(QCoreApplication::applicationDirPath().toStdString());
    samplesTitle_->setVisible(!samples.empty());
    for (const workbench::Sample& sample : samples) {
        auto* button = new QPushButton(QString::fromStdString(sample.title), this);
        button->setObjectName("sample");
        const QString file = QString::fromStdString(sample.file);
        // Later: who opens the sample may change the language or close the page.
        connect(
            button, &QPushButton::clicked, this, [this, file] { emit FileWanted(file); },
            Qt::QueuedConnection);
        samples_->addWidget(button);
    }
}

void StartPage::RedrawRecent() {
    const int current = std::max(recent_->currentRow(), 0);
    recent_->clear();
    for (const workbench::RecentRow& row : rows_) {
        auto* item = new QListWidgetItem(PictureOf(row, *this), Described(row), recent_);
        item->setData(Qt::UserRole, QString::fromStdString(row.file));
        item->setToolTip(QString::fromStdString(row.file));
        if (row.isMissing) item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    recent_->setCurrentRow(std::min(current, recent_->count() - 1));
    recent_->setVisible(!rows_.empty());
    nothing_->setVisible(rows_.empty());
}

void StartPage::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    const bool isShown = recent_ != nullptr;
    if (isShown && event->type() == QEvent::LanguageChange) Redraw();
    if (isShown && event->type() == QEvent::PaletteChange) RedrawRecent();
}

}  // namespace kv_tr::desktop
