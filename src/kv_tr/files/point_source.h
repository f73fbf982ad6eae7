// Which file points come from, and whether the file still is as it was.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kv_tr {

/// A file of points, as it was when they were read.
struct PointSource {
    std::filesystem::path path{};
    /// When the file was changed last; nothing where its bytes cannot be read again, as those of a
    /// pipe, and after the points were changed.
    std::optional<std::filesystem::file_time_type> changed{};
};

/// A file as it is now. The path becomes absolute.
PointSource PointSourceOf(const std::string& fileName);

/// Whether the file still is as it was.
bool IsUnchanged(const PointSource& source);

}  // namespace kv_tr
