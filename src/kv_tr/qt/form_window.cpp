// What the windows of all forms have in common.
#include "kv_tr/qt/form_window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScreen>

#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/mnemonics.h"
#include "kv_tr/qt/qt_words.h"

namespace kv_tr {
namespace {

constexpr const char* kSection = "Windows";

/// Whether the keyboard can reach a control by a letter.
bool HasMnemonic(const QWidget& control) {
    const auto* label = qobject_cast<const QLabel*>(&control);
    return label != nullptr ? label->buddy() != nullptr
                            : qobject_cast<const QAbstractButton*>(&control) != nullptr;
}

/// Sets the caption of a control, if it is another one: setting it would lay out the window anew.
void SetCaption(QWidget& control, const QString& caption) {
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        if (button->text() != caption) button->setText(caption);
    } else if (auto* label = qobject_cast<QLabel*>(&control)) {
        label->setText(caption);
    } else if (auto* frame = qobject_cast<QGroupBox*>(&control)) {
        frame->setTitle(caption);
    } else if (control.isWindow()) {
        const bool isOfAnEntry = caption.endsWith("...");  // which opens the window
        control.setWindowTitle(isOfAnEntry ? caption.chopped(3) : caption);
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

void RunAction(const std::function<void()>& action) {
    const WaitCursor wait;
    try {
        action();
    } catch (const RuntimeError& error) {
        ShowMessage(error.what(), Icon::kExclamation);
    }
}

FormWindow::FormWindow(Form& form, const char* name, QSize size, QWidget* parent)
    : QDialog(parent), form_(form) {
    UseQtWords();
    Bind(name, this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(RememberedSize(name, size));
}

int FormWindow::exec() {
    const OwnCursors cursors;
    return QDialog::exec();
}

void FormWindow::Follow() {
    changed_ = form_.Changed.Subscribe([this] { Redraw(); });
    Redraw();
}

void FormWindow::Redraw() {
    const Captions& captions = form_.ControlTexts();
    QStringList texts;
    const auto hasOwnLetter = [&](const auto& bound) {
        return HasMnemonic(*bound.first) && !captions.IsComputed(bound.second);
    };
    for (const auto& bound : bound_) {
        const auto& [control, name] = bound;
        const QString text = QString::fromStdString(captions.TextOf(name)).remove('\r');
        if (hasOwnLetter(bound)) {
            texts << text;
        } else if (HasMnemonic(*control)) {
            continue;
        } else {
            SetCaption(*control, text);
        }
        control->setToolTip(QString::fromStdString(captions.ToolTip(name)));
    }
    QStringList marked = WithMnemonics(texts);
    auto next = marked.cbegin();
    for (const auto& bound : bound_) {
        if (hasOwnLetter(bound)) SetCaption(*bound.first, *next++);
    }
    for (const auto& bound : bound_) {  // these change, and must not take others' letters
        if (!HasMnemonic(*bound.first) || hasOwnLetter(bound)) continue;
        const QString text = QString::fromStdString(captions.TextOf(bound.second));
        marked << WithFreeMnemonic(text, marked);
        SetCaption(*bound.first, marked.back());
    }
}

void FormWindow::Act(const std::function<void()>& action) {
    const ChangeEvent::Action wholeAction(form_.Changed);
    RunAction(action);
}

QPushButton* FormWindow::MakePlainButton(const QString& name) {
    auto* button = Bind(name, new QPushButton(this));
    button->setAutoDefault(false);  // Enter belongs to the boxes
    return button;
}

QPushButton* FormWindow::MakeButton(const QString& name, const std::function<void()>& action) {
    QPushButton* button = MakePlainButton(name);
    connect(button, &QPushButton::clicked, this, [this, action] { Act(action); });
    return button;
}

QCheckBox* FormWindow::MakeCheckBox(const QString& name, const std::function<void()>& action) {
    auto* box = Bind(name, new QCheckBox(this));
    connect(box, &QCheckBox::clicked, this, [this, action] { Act(action); });
    return box;
}

QPushButton* FormWindow::MakeCopyButton(
    const std::function<std::string(TransformationFormat)>& textIn) {
    QPushButton* button = MakePlainButton("cmdCopyAs");
    auto* menu = new QMenu(button);
    button->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu, textIn] {
        menu->clear();  // the language may be another one
        for (const TransformationFormat format : CopiedFormats()) {
            const auto name = QString::fromStdString(Translated(FormatName(format)));
            menu->addAction(name, this, [this, textIn, format] {
                Act([&] {
                    const std::string text = textIn(format);
                    if (!text.empty())
                        QApplication::clipboard()->setText(QString::fromStdString(text));
                });
            });
        }
    });
    return button;
}

QPushButton* FormWindow::MakeCancelButton(const QString& name) {
    QPushButton* button = MakePlainButton(name);
    connect(button, &QPushButton::clicked, this, &QDialog::reject);
    return button;
}

QDialogButtonBox* FormWindow::MakeEnds(QPushButton* confirm, QPushButton* cancel) {
    auto* ends = new QDialogButtonBox(this);
    ends->addButton(confirm, QDialogButtonBox::YesRole);  // AcceptRole would make it the default
    ends->addButton(cancel, QDialogButtonBox::RejectRole);
    return ends;
}

void FormWindow::done(int result) {
    RememberSize(objectName().toUtf8(), size());
    QDialog::done(result);
}

}  // namespace kv_tr
