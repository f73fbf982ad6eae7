// A component of its own for each test, in surroundings that remember what happened.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "kv_tr/published/component.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/records.h"

namespace kv_tr::test {

/// Replaces the component while it lives: English texts, a decimal point, no files touched.
class RecordingPlatform {
public:
    std::vector<Message> messages;             // all that were shown
    std::function<void()> whileShown = [] {};  // what happens while one is open
    std::vector<FileRequest> requests;
    std::deque<std::optional<FileChoice>> choices;  // answers of the choosers, cancel when empty
    std::deque<Answer> answers;                     // to messages, the default when empty
    std::map<std::string, std::string> settings;    // by application/section/key
    std::vector<std::string> opened;                // the dialogs, in the order they were opened
    bool confirm = true;                            // whether the user confirms them
    enuTR_TYPE nationalChoice = TR_HELMERT;
    EmbeddedTexts* texts = nullptr;

    /// With dialogs of its own a test plays them; otherwise they are recorded.
    explicit RecordingPlatform(std::int32_t language = kEnglish,
                               std::unique_ptr<Dialogs> dialogs = {})
        : scope_(MakePlatform(language, std::move(dialogs))) {
        DecimalSeparator('.');
        SetMlLanguage(language, {});
    }

    /// The texts of all messages shown since the last call.
    std::vector<std::string> TakeTexts() {
        std::vector<std::string> taken;
        for (const Message& message : messages) taken.push_back(message.text);
        messages.clear();
        return taken;
    }

private:
    struct Messages : MessageBox {
        explicit Messages(RecordingPlatform& o) : owner(o) {}
        Answer Show(const Message& message) override {
            owner.messages.push_back(message);
            owner.whileShown();
            if (owner.answers.empty() || message.buttons == Buttons::kOk) {
                return message.defaultAnswer;
            }
            const Answer answer = owner.answers.front();
            owner.answers.pop_front();
            return answer;
        }
        RecordingPlatform& owner;
    };
    struct Files : FileChooser {
        explicit Files(RecordingPlatform& o) : owner(o) {}
        std::optional<FileChoice> ChooseToOpen(const FileRequest& request) override {
            owner.requests.push_back(request);
            if (owner.choices.empty()) return std::nullopt;
            const auto choice = owner.choices.front();
            owner.choices.pop_front();
            return choice;
        }
        std::optional<FileChoice> ChooseToSave(const FileRequest& request) override {
            return ChooseToOpen(request);
        }
        RecordingPlatform& owner;
    };
    struct Settings : SettingsStore {
        explicit Settings(RecordingPlatform& o) : owner(o) {}
        static std::string Name(const SettingKey& k) {
            return k.application + "/" + k.section + "/" + k.key;
        }
        std::string Read(const SettingKey& key, const std::string& fallback) override {
            const auto found = owner.settings.find(Name(key));
            return found == owner.settings.end() ? fallback : found->second;
        }
        void Write(const SettingKey& key, const std::string& value) override {
            owner.settings[Name(key)] = value;
        }
        RecordingPlatform& owner;
    };
    struct RecordedDialogs : Dialogs {
        explicit RecordedDialogs(RecordingPlatform& o) : owner(o) {}
        bool Open(const std::string& dialog) {
            owner.opened.push_back(dialog);
            return owner.confirm;
        }
        bool Adjust(clsTrCalc&, bool apply) override { return Open(apply ? "apply" : "adjust"); }
        bool ChooseParameters(clsTr&) override { return Open("choose parameters"); }
        bool EditAffine(clsTr&) override { return Open("affine"); }
        bool ViewPolynomial(clsTr&) override { return Open("polynomial"); }
        bool ChooseNational(enuTR_TYPE& type) override {
            Open("national from " + std::to_string(type));
            type = owner.nationalChoice;
            return owner.confirm;
        }
        bool ListControlPoints(clsTr&, const std::string& title) override { return Open(title); }
        RecordingPlatform& owner;
    };

    Platform MakePlatform(std::int32_t language, std::unique_ptr<Dialogs> dialogs) {
        auto embedded = std::make_unique<EmbeddedTexts>(language);
        texts = embedded.get();
        return {.messages = std::make_unique<Messages>(*this),
                .files = std::make_unique<Files>(*this),
                .settings = std::make_unique<Settings>(*this),
                .texts = std::move(embedded),
                .dialogs = dialogs ? std::move(dialogs) : std::make_unique<RecordedDialogs>(*this)};
    }

    ComponentScope scope_;
};

/// A folder of the test's own that goes away with it.
class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("kv_tr-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

}  // namespace kv_tr::test
