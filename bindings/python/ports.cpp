// The surroundings of the component as Python callables.
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/text/code_page.h"
#include "python/binding.h"

namespace kv_tr::python {
namespace {

constexpr std::array kAnswers{std::pair{Answer::kOk, "ok"}, std::pair{Answer::kYes, "yes"},
                              std::pair{Answer::kNo, "no"}, std::pair{Answer::kCancel, "cancel"}};

std::string NameOf(Answer answer) {
    for (const auto& [value, name] : kAnswers) {
        if (value == answer) return name;
    }
    return {};
}

std::string NameOf(Icon icon) {
    switch (icon) {
        case Icon::kInformation: return "information";
        case Icon::kExclamation: return "exclamation";
        default: return "none";
    }
}

py::tuple NamesOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::kYesNo: return py::make_tuple("yes", "no");
        case Buttons::kYesNoCancel: return py::make_tuple("yes", "no", "cancel");
        default: return py::make_tuple("ok");
    }
}

Answer AnswerNamed(const py::object& given, const Message& message) {
    if (given.is_none()) return message.defaultAnswer;
    const py::tuple offered = NamesOf(message.buttons);
    for (const auto& [answer, name] : kAnswers) {
        if (given.equal(py::str(name)) && offered.contains(name)) return answer;
    }
    throw py::value_error("messages returned " + py::repr(given).cast<std::string>() +
                          ", not None or one of " + py::repr(offered).cast<std::string>());
}

/// A Python object that a port uses. The ports outlive the interpreter, so it is let go when that
/// ends (see Install); a port whose object is gone does what a port does that knows nobody.
using Held = std::shared_ptr<py::object>;

// A callable may install another platform while it runs, which ends the port that called it:
// after the call nothing of the port may be used.

class PythonMessages : public MessageBox {
public:
    explicit PythonMessages(Held callable) : callable_(std::move(callable)) {}

    Answer Show(const Message& message) override {
        if (!*callable_) return message.defaultAnswer;
        Message shown = message;
        shown.text = ValidUtf8(shown.text);
        const py::object callable = *callable_;
        return AnswerNamed(callable(shown), shown);
    }

private:
    Held callable_;
};

class PythonFiles : public FileChooser {
public:
    PythonFiles(Held toOpen, Held toSave)
        : toOpen_(std::move(toOpen)), toSave_(std::move(toSave)) {}

    std::optional<FileChoice> ChooseToOpen(const FileRequest& request) override {
        return Choose(*toOpen_, request);
    }
    std::optional<FileChoice> ChooseToSave(const FileRequest& request) override {
        return Choose(*toSave_, request);
    }

private:
    static std::optional<FileChoice> Choose(py::object callable, const FileRequest& request) {
        if (!callable) return std::nullopt;
        const py::object chosen = callable(request);
        if (chosen.is_none()) return std::nullopt;
        const auto path = Converted<std::filesystem::path>(chosen, "what a file chooser returns",
                                                           "a path or None");
        return FileChoice{
            .path = path.string(), .filterIndex = request.filterIndex, .flags = request.flags};
    }

    Held toOpen_;
    Held toSave_;
};

/// A mutable mapping from "KV_Tr/Settings/Path" to its value.
class PythonSettings : public SettingsStore {
public:
    explicit PythonSettings(Held mapping) : mapping_(std::move(mapping)) {}

    std::string Read(const SettingKey& key, const std::string& fallback) override {
        const py::object mapping = *mapping_;
        const std::string name = NameOf(key);
        if (!mapping || !mapping.contains(name)) return fallback;
        return Converted<std::string>(mapping[name.c_str()], "settings['" + name + "']", "str");
    }

    /// Called when engines end, where nobody could catch what the mapping raises.
    void Write(const SettingKey& key, const std::string& value) override {
        const py::object mapping = *mapping_;
        if (!mapping) return;
        try {
            mapping[NameOf(key).c_str()] = value;
        } catch (py::error_already_set& error) {
            error.discard_as_unraisable("the settings of kv_tr");
        }
    }

private:
    static std::string NameOf(const SettingKey& key) {
        return key.application + "/" + key.section + "/" + key.key;
    }

    Held mapping_;
};

/// The texts compiled in, where the callable has none of its own.
class PythonTexts : public EmbeddedTexts {
public:
    PythonTexts(Held callable, std::int32_t language)
        : EmbeddedTexts(language), callable_(std::move(callable)) {}

    std::string Text(int id, std::int32_t languageId) override {
        const py::object callable = *callable_;
        if (!callable) return EmbeddedTexts::Text(id, languageId);
        const py::object text = callable(id, languageId);
        return text.is_none() ? EmbeddedTexts(languageId).Text(id, languageId)
                              : Converted<std::string>(text, "what texts returns", "str or None");
    }

private:
    Held callable_;
};

constexpr std::array kDialogs{"adjust",          "choose_parameters", "edit_affine",
                              "view_polynomial", "choose_national",   "list_control_points"};

/// A dictionary of callables; what it lacks does as the console does.
class PythonDialogs : public Dialogs {
public:
    explicit PythonDialogs(Held callables) : callables_(std::move(callables)) {}

    bool Adjust(clsTrCalc& engine, bool showApplyButton) override {
        const py::object open = Named("adjust");
        return open ? Confirmed(open(&engine, showApplyButton))
                    : Console()->Adjust(engine, showApplyButton);
    }
    bool ChooseParameters(clsTr& parameters) override {
        const py::object open = Named("choose_parameters");
        return open ? Confirmed(open(&parameters)) : Console()->ChooseParameters(parameters);
    }
    bool EditAffine(clsTr& parameters) override {
        const py::object open = Named("edit_affine");
        return open ? Confirmed(open(&parameters)) : Console()->EditAffine(parameters);
    }
    bool ViewPolynomial(clsTr& parameters) override {
        const py::object open = Named("view_polynomial");
        return open ? Confirmed(open(&parameters)) : Console()->ViewPolynomial(parameters);
    }
    bool ChooseNational(enuTR_TYPE& type) override {
        const py::object open = Named("choose_national");
        if (!open) return Console()->ChooseNational(type);
        const py::object chosen = open(type);
        if (chosen.is_none()) return false;
        type = Converted<enuTR_TYPE>(chosen, "what choose_national returns", "enuTR_TYPE or None");
        return true;
    }
    bool ListControlPoints(clsTr& parameters, const std::string& title) override {
        const py::object open = Named("list_control_points");
        return open ? Confirmed(open(&parameters, title))
                    : Console()->ListControlPoints(parameters, title);
    }

private:
    static std::unique_ptr<Dialogs> Console() { return std::move(ConsolePlatform().dialogs); }
    static bool Confirmed(const py::object& result) { return py::bool_(result); }

    py::object Named(const char* dialog) const {
        if (!*callables_ || !callables_->contains(dialog)) return {};
        return (*callables_)[dialog];
    }

    Held callables_;
};

void CheckCallable(const py::object& given, const std::string& name) {
    if (given.is_none() || PyCallable_Check(given.ptr()) != 0) return;
    throw py::type_error(name + " must be callable, not " + TypeNameOf(given));
}

void CheckDialogs(const py::object& given) {
    if (given.is_none()) return;
    if (!py::isinstance<py::dict>(given)) {
        throw py::type_error("dialogs must be a dict of callables, not " + TypeNameOf(given));
    }
    for (const auto& [key, callable] : given.cast<py::dict>()) {
        const auto name = py::str(key).cast<std::string>();
        if (std::ranges::find(kDialogs, name) == kDialogs.end()) {
            throw py::value_error("no dialog is called '" + name + "'; the names are " +
                                  py::repr(py::cast(kDialogs)).cast<std::string>());
        }
        CheckCallable(py::reinterpret_borrow<py::object>(callable), "dialogs['" + name + "']");
    }
}

void CheckSettings(const py::object& given) {
    const auto mutableMapping = py::module_::import("collections.abc").attr("MutableMapping");
    if (given.is_none() || py::isinstance(given, mutableMapping)) return;
    throw py::type_error("settings must be a mutable mapping, not " + TypeNameOf(given));
}

/// Prints to Python's sys.stderr, so that a notebook shows it too.
void PrintMessage(const Message& message) {
    std::string text = message.title.empty() ? message.text : message.title + ": " + message.text;
    std::erase(text, '\r');
    py::print(text, py::arg("file") = py::module_::import("sys").attr("stderr"));
}

/// Without texts of the caller's own a language has to be one of the component's.
void CheckLanguage(std::int32_t language) {
    std::string known;
    for (const std::int32_t id : MlLanguages()) {
        if (id == language) return;
        if (!known.empty()) known += ", ";
        known += std::to_string(id);
    }
    throw py::value_error("language is " + std::to_string(language) + ", it must be one of " +
                          known);
}

/// The objects of all ports that still live.
using AllHeld = std::vector<std::weak_ptr<py::object>>;

/// Installs the ports and adds their objects to the others.
void Install(AllHeld& all, const py::object& messages, const py::object& toOpen,
             const py::object& toSave, const py::object& settings, const py::object& dialogs,
             const py::object& texts, std::int32_t language) {
    CheckCallable(messages, "messages");
    CheckCallable(toOpen, "choose_to_open");
    CheckCallable(toSave, "choose_to_save");
    CheckSettings(settings);
    CheckDialogs(dialogs);
    CheckCallable(texts, "texts");
    if (texts.is_none()) CheckLanguage(language);

    std::erase_if(all, [](const auto& held) { return held.expired(); });
    const auto hold = [&all](const py::object& given) {
        const auto letGo = [](const py::object* object) {
            if (Py_IsInitialized() != 0) delete object;  // else it went with the interpreter
        };
        const Held held(new py::object(given.is_none() ? py::object() : given), letGo);
        all.push_back(held);
        return held;
    };
    Platform platform;
    platform.messages = std::make_unique<PythonMessages>(
        hold(messages.is_none() ? py::cpp_function(PrintMessage) : messages));
    platform.files = std::make_unique<PythonFiles>(hold(toOpen), hold(toSave));
    if (!settings.is_none()) platform.settings = std::make_unique<PythonSettings>(hold(settings));
    platform.texts = std::make_unique<PythonTexts>(hold(texts), language);
    platform.dialogs = std::make_unique<PythonDialogs>(hold(dialogs));
    InstallPlatform(std::move(platform));
}

/// Lets go what the ports hold when the interpreter ends.
void ReleaseAtExit(const std::shared_ptr<AllHeld>& all) {
    py::module_::import("atexit").attr("register")(py::cpp_function([all] {
        if (!InitDir().empty()) SaveInitDir();  // engines that still live cannot do it later
        for (const auto& object : AllHeld(*all)) {
            if (const Held held = object.lock()) *held = {};
        }
    }));
}

}  // namespace

void AddPorts(py::module_& module) {
    using py::arg;
    py::class_<Message>(module, "Message", "What a message box shows.")
        .def_readonly("text", &Message::text, "May have several lines.")
        .def_readonly("title", &Message::title, "Empty for the host's own title.")
        .def_property_readonly(
            "icon", [](const Message& message) { return NameOf(message.icon); },
            "'none', 'information' or 'exclamation'.")
        .def_property_readonly(
            "buttons", [](const Message& message) { return NamesOf(message.buttons); },
            "The possible answers: ('ok',), ('yes', 'no') or ('yes', 'no', 'cancel').")
        .def_property_readonly(
            "default_answer", [](const Message& message) { return NameOf(message.defaultAnswer); },
            "What None as the answer stands for.");
    py::class_<FileRequest>(module, "FileRequest", "What a file chooser is asked for.")
        .def_readonly("file_name", &FileRequest::fileName, "Suggested name, may be empty.")
        .def_readonly("title", &FileRequest::title, "Of the chooser's window.")
        .def_readonly("initial_folder", &FileRequest::initialFolder, "May be empty.")
        .def_readonly("default_extension", &FileRequest::defaultExtension, "Without a dot.")
        .def_property_readonly(
            "filters",
            [](const FileRequest& request) {
                py::list filters;
                for (const auto& [description, pattern] : request.filters) {
                    filters.append(py::make_tuple(description, pattern));
                }
                return filters;
            },
            "Pairs of description and pattern; several patterns are separated by ';'.")
        .def_readonly("filter_index", &FileRequest::filterIndex, "Counted from 1.")
        .def_readonly("owner", &FileRequest::owner, "Window handle, -1 for none.");

    const auto all = std::make_shared<AllHeld>();
    module.def(
        "install_platform",
        [all](const py::object& messages, const py::object& toOpen, const py::object& toSave,
              const py::object& settings, const py::object& dialogs, const py::object& texts,
              std::int32_t language) {
            Install(*all, messages, toOpen, toSave, settings, dialogs, texts, language);
            SetMlLanguage(language, {});
        },
        py::kw_only(), arg("messages") = py::none(), arg("choose_to_open") = py::none(),
        arg("choose_to_save") = py::none(), arg("settings") = py::none(),
        arg("dialogs") = py::none(), arg("texts") = py::none(), arg("language") = kHungarian,
        "Gives the component its surroundings; what is left out is that of a program without\n"
        "windows. Call it before the first object is created.\n\n"
        "messages(message)         shows a Message and returns the answer: one of its buttons, or\n"
        "                          None for the default. Without it messages go to sys.stderr.\n"
        "choose_to_open(request)   returns a path, or None for a cancel, as does\n"
        "choose_to_save(request)   Without them every choice is cancelled.\n"
        "settings                  a mutable mapping from 'KV_Tr/Settings/Path' to its text.\n"
        "                          Without it settings live in a file of the user's.\n"
        "dialogs                   a dict with any of 'adjust': f(engine, show_apply_button),\n"
        "                          'choose_parameters', 'edit_affine', 'view_polynomial': f(tr),\n"
        "                          'list_control_points': f(tr, title), which return whether the\n"
        "                          user confirmed, and 'choose_national': f(type), which returns\n"
        "                          the chosen type or None.\n"
        "texts(id, language)       returns a text of its own, or None for the component's.\n"
        "language                  the host's: 1038 Hungarian, 1048 Romanian, 2057 English,\n"
        "                          1066 Vietnamese, 2074 Serbian.\n\n"
        "What a callable raises reaches whoever made the call; the component stays usable.");

    Install(*all, py::none(), py::none(), py::none(), py::none(), py::none(), py::none(),
            kHungarian);
    ReleaseAtExit(all);
    DecimalSeparator('.');
}

}  // namespace kv_tr::python
