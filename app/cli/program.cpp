// What all commands share: messages, notes and texts.
#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <utility>

#include "cli/console.h"
#include "common/languages.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/control_characters.h"
#ifdef KV_TR_PDF
#include "kv_tr/pdf/report_pdf.h"
#include "kv_tr/text/paths.h"
#endif

namespace kv_tr::cli {
namespace {

/// Passes messages on to the console and keeps them.
class KeptMessages : public MessageBox {
public:
    KeptMessages(std::unique_ptr<MessageBox> console, std::vector<Message>& kept)
        : console_(std::move(console)), kept_(kept) {}

    Answer Show(const Message& message) override {
        kept_.push_back(message);
        return console_->Show(message);
    }

private:
    std::unique_ptr<MessageBox> console_;
    std::vector<Message>& kept_;
};

std::vector<Message>& Kept() {
    static std::vector<Message> messages;
    return messages;
}

std::string UsersLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (std::string value = Environment(name); !value.empty()) return value;
    }
    return SystemsLanguage();
}

}  // namespace

const std::vector<Message>& ReportedMessages() { return Kept(); }

void InstallProgram(std::int32_t language) {
    Platform platform = ConsolePlatform(language);
#ifdef KV_TR_PDF
    platform.makePdf = [](const Report& report) { return PdfOf(report); };
#endif
    platform.messages = std::make_unique<KeptMessages>(std::move(platform.messages), Kept());
    InstallPlatform(std::move(platform));
    SetMlLanguage(language, {});
    UseTextFile(std::filesystem::exists(PathOf(TextFile())));
    InitMlStrings();
    DecimalSeparator('.');
}

void PrintNote(const std::string& text) {
    if (!text.empty()) std::cerr << WithoutControls(text, "\n\t") << std::endl;
}

std::int32_t ChosenLanguage(const std::vector<std::string>& arguments) {
    const std::string option = "--language";
    std::string name = UsersLocale().substr(0, 2);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == option && i + 1 < arguments.size()) name = arguments[i + 1];
        if (arguments[i].starts_with(option + "=")) name = arguments[i].substr(option.size() + 1);
    }
    const std::int32_t language = app::LanguageCoded(name);
    return language == 0 ? kEnglish : language;
}

std::string CheckNumber(const std::string& text) {
    return ParseNumber(text) ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
}

CLI::Validator WithWords(const std::string& words,
                         const std::function<std::string(const std::string&)>& check) {
    return {check, "", words};
}

CLI::Validator CheckWord(const std::string& words) {
    return WithWords(words, [words](const std::string& word) {
        const bool known = word.find_first_of(", ") == word.npos &&
                           (", " + words + ",").find(" " + word + ",") != words.npos;
        return known ? "" : Translated(Text::kUnknownValue, {Excerpt(word), words});
    });
}

void AddLanguageOption(CLI::App& command) {
    const std::string words = "hu, ro, vi, en, sr";
    command.add_option("--language")
        ->description(Translated(Text::kLanguageOption))
        ->type_name("LANG")
        ->check(WithWords(words, [words](const std::string& name) {
            return app::LanguageCoded(name) != 0
                       ? ""
                       : Translated(Text::kUnknownLanguage, {Excerpt(name), words});
        }));
}

}  // namespace kv_tr::cli
