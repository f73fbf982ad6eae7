// What the two forms that show a text for editing have in common.
#pragma once

#include <string>

#include "kv_tr/forms/form.h"
#include "kv_tr/published/message.h"

namespace kv_tr {

/// A text that starts as a listing and can be edited. Texts have CR LF between lines.
class TextForm : public Form {
public:
    const std::string& rtBox() const { return text_; }
    void rtBox(const std::string& text) { text_ = text; }

    /// Whether it closes the dialog. Asks whether a changed text is to be taken; one that cannot be
    /// read to its end is not, and keeps the dialog open.
    bool cmdOk() {
        Answer keep = Answer::kNo;
        if (IsChanged()) {
            keep = Ask({.text = Translated(Text::kKeepChangesQuestion),
                        .title = QuestionTitle(),
                        .buttons = Buttons::kYesNoCancel,
                        .defaultAnswer = Answer::kNo});
        }
        confirmed_ = keep == Answer::kNo || (keep == Answer::kYes && TakeText());
        return confirmed_;
    }

protected:
    using Form::Form;
    ~TextForm() = default;

    /// Shows a text; it counts as changed when it differs from the reference.
    void Show(const std::string& text, const std::string& reference) {
        text_ = text;
        reference_ = reference;
        Changed.Raise();
    }

    bool IsChanged() const { return text_ != reference_; }

    virtual std::string QuestionTitle() const = 0;
    /// Reads the text; false, with a message, when that is impossible.
    virtual bool TakeText() = 0;

    bool confirmed_ = false;

private:
    std::string text_;
    std::string reference_;
};

}  // namespace kv_tr
