// Texts of the component and of the workbench as Qt shows them.
#pragma once

#include <QString>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "kv_tr/published/ml_strings.h"
#include "workbench/texts/said.h"

namespace kv_tr::desktop {

inline QString UiText(Text text) { return QString::fromStdString(Translated(text)); }

inline QString UiText(workbench::Phrase phrase, std::vector<std::string> values = {}) {
    return QString::fromStdString(workbench::Said(phrase, std::move(values)));
}

/// What something is called, in whatever language is the current one when that is asked.
class Words {
public:
    Words(Text text) : words_(text) {}                   // NOLINT(google-explicit-constructor)
    Words(workbench::Phrase phrase) : words_(phrase) {}  // NOLINT(google-explicit-constructor)

    QString Now() const {
        return std::visit([](auto words) { return UiText(words); }, words_);
    }

private:
    std::variant<Text, workbench::Phrase> words_;
};

}  // namespace kv_tr::desktop
