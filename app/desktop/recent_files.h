// The files that were opened last, remembered between runs.
#pragma once

#include <string>
#include <vector>

namespace kv_tr::desktop {

/// The newest comes first; a file that is opened again moves to the front.
class RecentFiles {
public:
    static constexpr std::size_t kMost = 8;

    /// Those remembered in the user's settings.
    RecentFiles();

    const std::vector<std::string>& Names() const { return names_; }
    void Add(const std::string& fileName);
    void Remove(const std::string& fileName);

private:
    void Save() const;

    std::vector<std::string> names_;
};

}  // namespace kv_tr::desktop
