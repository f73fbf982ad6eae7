// What the component asks of its surroundings: the ports, and the platform that bundles them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/files/report_file.h"
#include "kv_tr/published/event.h"

namespace kv_tr {

class clsTr;
class clsTrCalc;
enum enuTR_TYPE : std::int32_t;

enum class Icon { kNone, kInformation, kExclamation };
enum class Buttons { kOk, kYesNo, kYesNoCancel };
enum class Answer { kOk, kYes, kNo, kCancel };

/// A message for the user, as a message box would show it. Texts are UTF-8; the name of a file in
/// one has whatever bytes the system gave it.
struct Message {
    std::string text;
    std::string title;  ///< empty: the host's own title
    Icon icon = Icon::kNone;
    Buttons buttons = Buttons::kOk;
    Answer defaultAnswer = Answer::kOk;
};

/// The port for messages.
class MessageBox {
public:
    virtual ~MessageBox() = default;
    /// Shows the message and waits until the user has answered.
    virtual Answer Show(const Message& message) = 0;
};

/// One entry of a file chooser's type list, for example {"File of GCPs (*.dat)", "*.dat"}.
struct FileFilter {
    std::string description;
    std::string pattern;  ///< several patterns are separated by ";"
};

/// What a file chooser is asked for. The flags are the bits of GCommonDialog.h.
struct FileRequest {
    std::string fileName;  ///< suggested name, may be empty
    std::string title;
    std::string initialFolder;
    std::string defaultExtension;  ///< without a dot
    std::vector<FileFilter> filters;
    std::int32_t filterIndex = 1;  ///< counted from 1
    std::int32_t flags = 0;
    std::int32_t owner = -1;  ///< window handle, -1 for none
};

/// What the user chose, with the entry of the type list and the flags.
struct FileChoice {
    std::string path;
    std::int32_t filterIndex = 1;
    std::int32_t flags = 0;
};

/// The port for choosing files.
class FileChooser {
public:
    virtual ~FileChooser() = default;
    /// The file to open, or nothing when the user cancelled.
    virtual std::optional<FileChoice> ChooseToOpen(const FileRequest& request) = 0;
    /// The file to save to, or nothing when the user cancelled.
    virtual std::optional<FileChoice> ChooseToSave(const FileRequest& request) = 0;
};

/// Where a per-user setting is kept.
struct SettingKey {
    std::string application;
    std::string section;
    std::string key;
};

/// The port for what is remembered between runs.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    /// The stored value; the fallback when there is none or it cannot be read.
    virtual std::string Read(const SettingKey& key, const std::string& fallback) = 0;
    /// Stores the value; a store that cannot be written stays as it is.
    virtual void Write(const SettingKey& key, const std::string& value) = 0;
};

/// The port for texts and for the language of the host.
class TextSource {
public:
    virtual ~TextSource() = default;
    /// Called once when the component starts to use texts: makes the source take them from a file.
    /// Without this call the source has its own.
    virtual void LoadFrom(const std::string& path) = 0;
    /// The text of an id in a language, in Hungarian where the language lacks it.
    /// Throws RuntimeError kTextMissing for an id that no language has.
    virtual std::string Text(int id, std::int32_t languageId) = 0;
    /// The language the host program runs in.
    virtual std::int32_t HostLanguage() = 0;
    /// Raised with the new language's id and name when the host switches language.
    Event<std::int32_t, const std::string&> LanguageChanged;
};

/// The port for the component's own dialogs. Each function opens one and waits until it is closed;
/// true when the user confirmed.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    /// Lets the user steer an adjustment.
    virtual bool Adjust(clsTrCalc& engine, bool showApplyButton) = 0;
    /// Lets the user say where parameters come from, and get them from there.
    virtual bool ChooseParameters(clsTr& parameters) = 0;
    /// Shows six parameters for editing.
    virtual bool EditAffine(clsTr& parameters) = 0;
    /// Shows polynomial parameters as text.
    virtual bool ViewPolynomial(clsTr& parameters) = 0;
    /// Lists the national transformations; the type is the one selected first, then the choice.
    virtual bool ChooseNational(enuTR_TYPE& type) = 0;
    /// Shows the control points as text; an empty title stands for the dialog's own.
    virtual bool ListControlPoints(clsTr& parameters, const std::string& title) = 0;
};

/// The surroundings of the component. A port left empty is filled by the console's.
struct Platform {
    std::unique_ptr<MessageBox> messages;
    std::unique_ptr<FileChooser> files;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<TextSource> texts;
    std::unique_ptr<Dialogs> dialogs;
    PdfMaker makePdf{};  ///< of the reports that the dialogs save; without one they are HTML only
};

}  // namespace kv_tr
