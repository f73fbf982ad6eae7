// What is remembered between runs: the folder that file choosers open in.
#pragma once

#include <filesystem>
#include <string>

#include "kv_tr/published/platform.h"

namespace kv_tr {

/// The folder that file choosers open in, one for the whole component.
std::string InitDir();
void InitDir(const std::string& folder);

/// Makes the folder of a file the initial one.
void RememberFolderOf(const std::string& fileName);

/// The folder used when none is remembered: the user's home, "C:\" on Windows.
std::string DefaultFolder();

/// Makes the remembered folder the initial one: the default folder when it no longer exists.
/// A setting that is empty leaves the initial folder as it is.
void LoadInitDir();

/// Remembers the initial folder, or the default folder when there is none.
void SaveInitDir();

/// A setting of the component by section and key; the fallback when there is none.
std::string Setting(const std::string& section, const std::string& key,
                    const std::string& fallback);
void SaveSetting(const std::string& section, const std::string& key, const std::string& value);

/// Settings in a small text file of the user's: [section] lines and key=value lines.
/// A missing file reads as empty, and so does one that cannot be read to its end; that one and a
/// read-only one stay as they are. Two programs that write at once leave one whole file.
class SettingsFile : public SettingsStore {
public:
    /// By default `<application>.ini` in the user's configuration folder.
    explicit SettingsFile(std::filesystem::path folder = ConfigurationFolder());

    std::string Read(const SettingKey& key, const std::string& fallback) override;
    void Write(const SettingKey& key, const std::string& value) override;

    static std::filesystem::path ConfigurationFolder();

private:
    std::filesystem::path FileOf(const SettingKey& key) const;

    std::filesystem::path folder_;
};

}  // namespace kv_tr
