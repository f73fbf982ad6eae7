// What the start page offers, without a toolkit.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "workbench/recent_projects.h"

namespace kv_tr::workbench {

/// A project or a file that was open before.
struct RecentRow {
    std::string file{};     ///< the whole path
    std::string name{};     ///< without its folder
    std::string place{};    ///< the folder, the user's own as "~"
    std::string day{};      ///< of its last change, "2026-05-31"; empty for a missing file
    std::string picture{};  ///< SVG; empty where there is none
    std::optional<std::size_t> points{};  ///< of a project
    bool isMissing = false;
};

/// The projects and then the other files, each once; in the order given, the newest first.
std::vector<RecentRow> RecentRows(const std::vector<RecentProject>& projects,
                                  const std::vector<std::string>& files);

/// Control points to try the program with.
struct Sample {
    std::string file;
    std::string title;
};
/// The samples that are installed with a program in this folder, or stand in the source tree that
/// the program was built in; none where they are not found.
std::vector<Sample> SamplesFor(const std::string& programFolder);

}  // namespace kv_tr::workbench
