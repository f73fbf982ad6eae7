// What the windows of all forms have in common.
#include "kv_tr/qt/form_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <algorithm>
#include <utility>
#include <vector>

#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"

namespace kv_tr {
namespace {

constexpr const char* kSection = "Windows";

/// The caption with "&" before its first letter that none before it has for Alt.
QString WithMnemonic(const QString& caption, QSet<QChar>& taken) {
    for (int i = 0; i < caption.size(); ++i) {
        const QChar letter = caption[i].toLower();
        const bool plain = (letter >= 'a' && letter <= 'z') || letter.isDigit();
        if (!plain || taken.contains(letter)) continue;
        taken.insert(letter);
        return QString(caption).insert(i, '&');
    }
    return caption;
}

/// Sets the caption of a control, if it is another one: setting it would lay out the window anew.
void SetCaption(QWidget& control, const QString& caption, QSet<QChar>& taken) {
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        const QString text = WithMnemonic(caption, taken);
        if (button->text() != text) button->setText(text);
    } else if (auto* label = qobject_cast<QLabel*>(&control)) {
        label->setText(label->buddy() != nullptr ? WithMnemonic(caption, taken) : caption);
    } else if (auto* frame = qobject_cast<QGroupBox*>(&control)) {
        frame->setTitle(caption);
    } else if (control.isWindow()) {
        control.setWindowTitle(caption);
    }
}

}  // namespace

QString Numbered(const char* name, int index) {
    return QString("%1(%2)").arg(QLatin1String(name)).arg(index);
}

QSize RememberedSize(const char* name, QSize otherwise) {
    const auto kept = QString::fromStdString(Setting(kSection, name, "")).split('x');
    const QSize size(kept.value(0).toInt(), kept.value(1).toInt());
    constexpr QSize kFrame(16, 48);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize() - kFrame;
    return (size.isEmpty() ? otherwise : size).boundedTo(screen);
}

void RememberSize(const char* name, QSize size) {
    SaveSetting(kSection, name, std::to_string(size.width()) + "x" + std::to_string(size.height()));
}

FormWindow::FormWindow(const char* name, QSize size) : QDialog(QApplication::activeWindow()) {
    setObjectName(name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(RememberedSize(name, size));
}

void FormWindow::Follow(Event<>& changed) {
    changed_ = changed.Subscribe([this] { Redraw(); });
    Redraw();
}

void FormWindow::ShowCaptions(const Captions& captions) {
    std::vector<std::pair<QWidget*, QString>> texts;
    for (const Caption& row : captions.Rows()) {
        const auto name = QString::fromUtf8(row.control.data(), qsizetype(row.control.size()));
        QWidget* control = name == objectName() ? this : findChild<QWidget*>(name);
        if (control == nullptr) continue;
        texts.emplace_back(control,
                           QString::fromStdString(captions.Text(row.control)).remove('\r'));
        control->setToolTip(QString::fromStdString(captions.ToolTip(row.control)));
    }
    // The short ones have the fewest letters to choose from.
    std::ranges::stable_sort(texts, {}, [](const auto& text) { return text.second.size(); });
    QSet<QChar> taken;
    for (const auto& [control, text] : texts) SetCaption(*control, text, taken);
}

void FormWindow::Act(const std::function<void()>& action) {
    const WaitCursor wait;
    try {
        action();
    } catch (const RuntimeError& error) {
        ShowMessage(error.what(), Icon::kExclamation);
    }
}

QPushButton* FormWindow::MakeButton(const QString& name, const std::function<void()>& action) {
    auto* button = new QPushButton(this);
    button->setObjectName(name);
    button->setAutoDefault(false);  // Enter belongs to the boxes
    connect(button, &QPushButton::clicked, this, [this, action] { Act(action); });
    return button;
}

QCheckBox* FormWindow::MakeCheckBox(const QString& name, const std::function<void()>& action) {
    auto* box = new QCheckBox(this);
    box->setObjectName(name);
    connect(box, &QCheckBox::clicked, this, [this, action] { Act(action); });
    return box;
}

void FormWindow::done(int result) {
    RememberSize(objectName().toUtf8(), size());
    QDialog::done(result);
}

}  // namespace kv_tr
