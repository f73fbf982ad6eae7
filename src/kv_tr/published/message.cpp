// The way to talk to the user.
#include "kv_tr/published/message.h"

#include <thread>
#include <utility>

#include "kv_tr/published/component.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {

void ShowMessage(const std::string& text, Icon icon, const std::string& title) {
    Ask({.text = text, .title = title, .icon = icon});
}

void ReportOpenFailure(const std::string& fileName) {
    ShowMessage(Translated(Text::kCannotOpen) + WithoutControls(fileName), Icon::kExclamation);
}

void ReportNotConverged(Type type) {
    ShowMessage(
        Translated(type == Type::kHelmert3 ? Text::kCannotComputeHelmert3 : Text::kCannotCompute));
}

RuntimeError WriteFailure(const std::string& fileName) {
    return {ErrorNumber::kWriteFailed,
            Translated(Text::kCannotWriteAll) + ": " + WithoutControls(fileName)};
}

RuntimeError ReadFailure(const TextError& error) {
    if (error.Why() == TextError::Cause::kLineTooLong) {
        return {ErrorNumber::kLineTooLong, Translated(Text::kLineTooLong)};
    }
    return {ErrorNumber::kDeviceError, Translated(Text::kCannotReadAll)};
}

Answer Ask(const Message& question) {
    TheComponent().messageComing.Raise();
    return TheComponent().platform.messages->Show(question);
}

Subscription BeforeMessages(std::function<void()> handler) {
    return TheComponent().messageComing.Subscribe(
        [handler = std::move(handler), thread = std::this_thread::get_id()] {
            if (std::this_thread::get_id() == thread) handler();
        });
}

bool MayReplace(const std::string& fileName) {
    return Ask({.text = Translated(Text::kReplaceQuestion, {fileName}),
                .title = Translated(Text::kWarningTitle),
                .icon = Icon::kExclamation,
                .buttons = Buttons::kYesNo,
                .defaultAnswer = Answer::kNo}) == Answer::kYes;
}

}  // namespace kv_tr
