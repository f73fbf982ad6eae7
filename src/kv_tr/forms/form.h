// What the simple forms have in common.
#pragma once

#include <span>

#include "kv_tr/forms/captions.h"
#include "kv_tr/published/event.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

/// A dialog without its window: what it shows and what each control does, as functions named after
/// the controls. What these forms offer besides bDoModal is for the window while the dialog is
/// open.
class Form {
public:
    /// Raised whenever anything that the window draws may have changed.
    Event<> Changed;

    const Captions& ControlTexts() const { return captions_; }

protected:
    explicit Form(std::span<const Caption> captions) : captions_(captions) {}

private:
    Captions captions_;
    Subscription languageChanged_{OnLanguageChange([this] { Changed.Raise(); })};
};

}  // namespace kv_tr
