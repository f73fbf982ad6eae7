// The projects that were open last, each with a small picture of its points.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "workbench/document.h"
#include "workbench/recovery.h"

namespace kv_tr::workbench {

struct RecentProject {
    std::string file;     ///< the whole path
    std::string picture;  ///< SVG
    std::size_t points = 0;

    bool operator==(const RecentProject&) const = default;
};

/// The newest first. The list is a file of the user's state, which every change reads anew, so that
/// programs that run side by side do not forget each other's projects. A file that cannot be read
/// is an empty list.
class RecentProjects {
public:
    static constexpr std::size_t kMost = 12;

    explicit RecentProjects(std::filesystem::path folder = StateFolder({}));

    std::vector<RecentProject> List() const;
    /// A project that was saved or opened comes first.
    void Add(Document& document, const std::string& fileName);
    void Remove(const std::string& fileName);

private:
    void Write(const std::vector<RecentProject>& projects) const;

    std::filesystem::path folder_;
};

/// The points of a document as a picture of a few kilobytes: filled in use, hollow excluded, red
/// beyond the error limit. North is where the second axis points to.
std::string SmallPicture(Document& document);

}  // namespace kv_tr::workbench
