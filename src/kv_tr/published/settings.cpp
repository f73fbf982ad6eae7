// What is remembered between runs: the folder that file choosers open in.
#include "kv_tr/published/settings.h"

#include <optional>
#include <string_view>

#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

constexpr const char* kSection = "Settings";
constexpr const char* kPath = "Path";

SettingKey KeyOf(const std::string& section, const std::string& key) {
    const std::string title =
        TheComponent().WithRegisters([](Registers& registers) { return registers.appTitle; });
    return {.application = title.empty() ? "KV_Tr" : title, .section = section, .key = key};
}

/// All lines of a file, none of a missing one; nothing when it cannot be examined or read to its
/// end.
std::optional<std::vector<std::string>> ReadLines(const fs::path& path) {
    std::vector<std::string> lines;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return lines;
    std::ifstream stream;
    if (fs::is_regular_file(status)) stream = OpenToRead(path);
    if (!stream.is_open()) return std::nullopt;
    try {
        for (LineReader reader(*stream.rdbuf()); !reader.AtEnd();)
            lines.emplace_back(reader.Next());
    } catch (const TextError&) {
        return std::nullopt;
    }
    return lines;
}

/// Where a key stands: the line of its value if it has one, and where its section ends.
struct Place {
    std::optional<std::size_t> line;
    std::optional<std::size_t> sectionEnd;
};

Place Find(const std::vector<std::string>& lines, const SettingKey& key) {
    Place place;
    bool inside = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].starts_with('[')) inside = lines[i] == "[" + key.section + "]";
        if (inside) place.sectionEnd = i + 1;
        if (inside && lines[i].starts_with(key.key + "=")) place.line = i;
    }
    return place;
}

}  // namespace

std::string InitDir() {
    return TheComponent().WithRegisters([](Registers& registers) { return registers.initDir; });
}

void InitDir(const std::string& folder) {
    TheComponent().WithRegisters([&](Registers& registers) { registers.initDir = folder; });
}

void RememberFolderOf(const std::string& fileName) { InitDir(GetFolderPart(fileName)); }

std::string DefaultFolder() {
#ifdef _WIN32
    return "C:\\";
#else
    const std::string home = Environment("HOME");
    return home.empty() ? "/" : home;
#endif
}

void LoadInitDir() {
    const std::string folder = Setting(kSection, kPath, DefaultFolder());
    if (folder.empty()) return;
    std::error_code error;
    InitDir(fs::is_directory(PathOf(folder), error) ? folder : DefaultFolder());
}

void SaveInitDir() {
    const std::string folder = InitDir();
    SaveSetting(kSection, kPath, folder.empty() ? DefaultFolder() : folder);
}

std::string Setting(const std::string& section, const std::string& key,
                    const std::string& fallback) {
    return TheComponent().platform.settings->Read(KeyOf(section, key), fallback);
}

void SaveSetting(const std::string& section, const std::string& key, const std::string& value) {
    TheComponent().platform.settings->Write(KeyOf(section, key), value);
}

SettingsFile::SettingsFile(fs::path folder) : folder_(std::move(folder)) {}

fs::path SettingsFile::ConfigurationFolder() {
    if (const std::string folder = Environment("XDG_CONFIG_HOME"); !folder.empty()) return folder;
    const std::string home = Environment("HOME");
    return home.empty() ? fs::path{} : fs::path(home) / ".config";
}

fs::path SettingsFile::FileOf(const SettingKey& key) const {
    return folder_ / (key.application + ".ini");
}

std::string SettingsFile::Read(const SettingKey& key, const std::string& fallback) {
    if (folder_.empty()) return fallback;
    const auto lines = ReadLines(FileOf(key)).value_or(std::vector<std::string>{});
    const Place place = Find(lines, key);
    return place.line ? lines[*place.line].substr(key.key.size() + 1) : fallback;
}

void SettingsFile::Write(const SettingKey& key, const std::string& value) {
    if (folder_.empty() || value.find_first_of("\r\n") != value.npos) return;
    auto known = ReadLines(FileOf(key));
    if (!known) return;
    auto& lines = *known;
    const Place place = Find(lines, key);
    const std::string entry = key.key + "=" + value;
    if (place.line && lines[*place.line] == entry) return;
    if (place.line) {
        lines[*place.line] = entry;
    } else if (place.sectionEnd) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*place.sectionEnd), entry);
    } else {
        lines.push_back("[" + key.section + "]");
        lines.push_back(entry);
    }
    std::error_code error;
    fs::create_directories(folder_, error);
    ReplacingFile file(NameOfPath(FileOf(key)));
    if (!file.IsOpen()) return;
    for (const auto& line : lines) file.Write(line + "\n");
    file.Commit();
}

}  // namespace kv_tr
