// The files that were opened last, remembered between runs.
#include "desktop/recent_files.h"

#include <filesystem>

#include "kv_tr/published/settings.h"

namespace kv_tr::desktop {
namespace {

constexpr const char* kRecentFiles = "RecentFiles";

std::string KeyOf(std::size_t index) { return "File" + std::to_string(index + 1); }

}  // namespace

RecentFiles::RecentFiles() {
    for (std::size_t i = 0; i < kMost; ++i) {
        const std::string name = Setting(kRecentFiles, KeyOf(i), "");
        if (!name.empty()) names_.push_back(name);
    }
}

void RecentFiles::Add(const std::string& fileName) {
    const std::string name = std::filesystem::absolute(fileName).string();
    std::erase(names_, name);
    names_.insert(names_.begin(), name);
    if (names_.size() > kMost) names_.pop_back();
    Save();
}

void RecentFiles::Remove(const std::string& fileName) {
    std::erase(names_, fileName);
    Save();
}

void RecentFiles::Save() const {
    for (std::size_t i = 0; i < kMost; ++i)
        SaveSetting(kRecentFiles, KeyOf(i), i < names_.size() ? names_[i] : "");
}

}  // namespace kv_tr::desktop
