// What the windows of all forms have in common.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QString>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/forms/copied_text.h"
#include "kv_tr/forms/form.h"

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

/// Runs what the user asks for under the wait cursor and shows what error comes out of it: none may
/// pass through the event loop.
void RunAction(const std::function<void()>& action);

/// A modal window of a form: shows its captions, draws it again whenever it has changed, runs
/// actions, and comes back in the size it was left with.
class FormWindow : public QDialog {
public:
    /// Opens the window and waits until it is closed. The pointer is the window's own, although the
    /// window below may be waiting.
    int exec() override;

protected:
    /// The name is the form's; the size is that of the first time.
    FormWindow(Form& form, const char* name, QSize size,
               QWidget* parent = QApplication::activeWindow());

    /// Calls Redraw now and at every change of the form. Call it when all controls are there.
    void Follow();
    /// Shows the form as it is now; here its captions.
    virtual void Redraw();

    /// Runs a whole action of the user's: the window is drawn once, when the action is over.
    virtual void Act(const std::function<void()>& action);

    /// Names a control as its row of captions is named: Redraw then sets its caption and its tool
    /// tip, and gives what the keyboard can reach a letter for Alt.
    template <class Control>
    Control* Bind(const QString& name, Control* control) {
        control->setObjectName(name);
        bound_.emplace_back(control, name.toStdString());
        return control;
    }

    // New controls of a published name; a click is forwarded through Act.
    QPushButton* MakeButton(const QString& name, const std::function<void()>& action);
    QCheckBox* MakeCheckBox(const QString& name, const std::function<void()>& action);
    /// A button whose click is not forwarded.
    QPushButton* MakePlainButton(const QString& name);
    /// The button cmdCopyAs with a menu of formats; the text that an entry yields, unless it is
    /// empty, goes to the clipboard.
    QPushButton* MakeCopyButton(const std::function<std::string(TransformationFormat)>& textIn);
    /// A button that closes the window without an action.
    QPushButton* MakeCancelButton(const QString& name);
    /// The buttons that every dialog ends with. Enter presses the first one only where that is its
    /// default: elsewhere it belongs to the boxes.
    QDialogButtonBox* MakeEnds(QPushButton* confirm, QPushButton* cancel);

    void done(int result) override;

private:
    Form& form_;
    std::vector<std::pair<QWidget*, std::string>> bound_;
    Subscription changed_;
};

}  // namespace kv_tr
