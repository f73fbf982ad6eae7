// What all forms have in common.
#pragma once

#include <span>

#include "kv_tr/forms/captions.h"
#include "kv_tr/forms/change_event.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

/// A window's contents without the window: what is shown and what each control does, as functions
/// named after the controls. What a form offers besides bDoModal is for the window while the form
/// is open. Every function that does what a user asks for is one action of Changed.
class Form {
public:
    /// Raised whenever anything that the window draws may have changed.
    ChangeEvent Changed;

    const Captions& ControlTexts() const { return captions_; }

protected:
    explicit Form(std::span<const Caption> captions) : captions_(captions) {}
    ~Form() = default;

    Captions captions_;

private:
    Subscription languageChanged_{OnLanguageChange([this] { Changed.Raise(); })};
};

}  // namespace kv_tr
