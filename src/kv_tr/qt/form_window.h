// What the windows of all forms have in common.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

#include "kv_tr/forms/captions.h"
#include "kv_tr/published/event.h"

class QCheckBox;
class QPushButton;

namespace kv_tr {

/// The object name of one control of an array, "RadioTrType(3)".
QString Numbered(const char* name, int index);

/// The size that a window of this name was left with, else the one given, as far as the screen has
/// room for it; and keeps it.
QSize RememberedSize(const char* name, QSize otherwise);
void RememberSize(const char* name, QSize size);

/// How the parts of a window run what the user asks for.
using ActFunction = std::function<void(const std::function<void()>& action)>;

/// A modal window of a form: shows its captions, draws it again whenever it has changed, runs
/// actions, and comes back in the size it was left with.
class FormWindow : public QDialog {
protected:
    /// The name is the form's; the size is that of the first time.
    FormWindow(const char* name, QSize size);

    /// Calls Redraw now and at every change of the form. Call it when all controls are there.
    void Follow(Event<>& changed);
    virtual void Redraw() = 0;

    /// Sets the title, the captions and the tool tips of the controls that are named so, and gives
    /// every control that the keyboard can reach a letter for Alt.
    void ShowCaptions(const Captions& captions);

    /// Runs an action of the form under the wait cursor and shows what error comes out of it: none
    /// may pass through the event loop.
    virtual void Act(const std::function<void()>& action);

    // New controls of a published name; a click is forwarded through Act.
    QPushButton* MakeButton(const QString& name, const std::function<void()>& action);
    QCheckBox* MakeCheckBox(const QString& name, const std::function<void()>& action);

    void done(int result) override;

private:
    Subscription changed_;
};

}  // namespace kv_tr
