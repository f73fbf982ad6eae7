// Ports for programs without windows.
#include "kv_tr/published/console_platform.h"

#include <algorithm>
#include <iostream>

#include "kv_tr/published/message.h"
#include "kv_tr/text/control_characters.h"
#ifdef _WIN32
#include "kv_tr/published/registry_settings.h"
#else
#include "kv_tr/published/settings.h"
#endif

namespace kv_tr {
namespace {

#ifdef _WIN32
using UsersSettings = RegistrySettings;
#else
using UsersSettings = SettingsFile;
#endif

class ConsoleMessages : public MessageBox {
public:
    Answer Show(const Message& message) override {
        std::string text =
            message.title.empty() ? message.text : message.title + ": " + message.text;
        std::erase(text, '\r');
        std::cerr << WithoutControls(text, "\n\t") << std::endl;
        return message.defaultAnswer;
    }
};

class NoFiles : public FileChooser {
public:
    std::optional<FileChoice> ChooseToOpen(const FileRequest&) override { return std::nullopt; }
    std::optional<FileChoice> ChooseToSave(const FileRequest&) override { return std::nullopt; }
};

class NoDialogs : public Dialogs {
public:
    bool Adjust(clsTrCalc&, bool) override { return Refuse(); }
    bool ChooseParameters(clsTr&) override { return Refuse(); }
    bool EditAffine(clsTr&) override { return Refuse(); }
    bool ViewPolynomial(clsTr&) override { return Refuse(); }
    bool ChooseNational(enuTR_TYPE&) override { return Refuse(); }
    bool ListControlPoints(clsTr&, const std::string&) override { return Refuse(); }

private:
    static bool Refuse() {
        ShowMessage(Translated(Text::kNoWindows), Icon::kExclamation);
        return false;
    }
};

}  // namespace

Platform ConsolePlatform(std::int32_t hostLanguage) {
    return {.messages = std::make_unique<ConsoleMessages>(),
            .files = std::make_unique<NoFiles>(),
            .settings = std::make_unique<UsersSettings>(),
            .texts = std::make_unique<EmbeddedTexts>(hostLanguage),
            .dialogs = std::make_unique<NoDialogs>()};
}

}  // namespace kv_tr
