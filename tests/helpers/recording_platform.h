// A component of its own for each test, in surroundings that remember what happened.
#pragma once

#include <deque>
#include <map>

#include "helpers/files.h"
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
        for (const Message& message : std::exchange(messages, {})) taken.push_back(message.text);
        return taken;
    }

private:
    /// Stands in for each port and tells its owner.
    struct Recorder : MessageBox, FileChooser, SettingsStore, Dialogs {
        explicit Recorder(RecordingPlatform& o) : owner(o) {}

        static auto Take(auto& queue, auto fallback) {
            if (queue.empty()) return fallback;
            fallback = queue.front();
            queue.pop_front();
            return fallback;
        }
        Answer Show(const Message& message) override {
            owner.messages.push_back(message);
            owner.whileShown();
            const bool asks = message.buttons != Buttons::kOk;
            return asks ? Take(owner.answers, message.defaultAnswer) : message.defaultAnswer;
        }

        std::optional<FileChoice> ChooseToOpen(const FileRequest& request) override {
            owner.requests.push_back(request);
            return Take(owner.choices, std::optional<FileChoice>());
        }
        std::optional<FileChoice> ChooseToSave(const FileRequest& request) override {
            return ChooseToOpen(request);
        }

        static auto Name(const SettingKey& k) {
            return k.application + "/" + k.section + "/" + k.key;
        }
        std::string Read(const SettingKey& key, const std::string& fallback) override {
            return owner.settings.contains(Name(key)) ? owner.settings[Name(key)] : fallback;
        }
        void Write(const SettingKey& key, const std::string& value) override {
            owner.settings[Name(key)] = value;
        }

        bool Open(const std::string& dialog) {
            owner.opened.push_back(dialog);
            return owner.confirm;
        }
        bool Adjust(clsTrCalc&, bool apply) override { return Open(apply ? "apply" : "adjust"); }
        bool ChooseParameters(clsTr&) override { return Open("choose parameters"); }
        bool EditAffine(clsTr&) override { return Open("affine"); }
        bool ViewPolynomial(clsTr&) override { return Open("polynomial"); }
        bool ChooseNational(enuTR_TYPE& type) override {
            const int before = std::exchange(type, owner.nationalChoice);
            return Open("national from " + std::to_string(before));
        }
        bool ListControlPoints(clsTr&, const std::string& title) override { return Open(title); }

        RecordingPlatform& owner;
    };

    Platform MakePlatform(std::int32_t language, std::unique_ptr<Dialogs> dialogs) {
        const auto recorder = [this] { return std::make_unique<Recorder>(*this); };
        auto embedded = std::make_unique<EmbeddedTexts>(language);
        texts = embedded.get();
        return {recorder(), recorder(), recorder(), std::move(embedded),
                dialogs ? std::move(dialogs) : recorder()};
    }

    ComponentScope scope_;
};

}  // namespace kv_tr::test
