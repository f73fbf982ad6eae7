// Which file points come from, and whether the file still is as it was.
#include "kv_tr/files/point_source.h"

#include "kv_tr/text/paths.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

/// The time of the last change of a file whose bytes can be read again.
std::optional<fs::file_time_type> ChangeOf(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return std::nullopt;
    return LastChange(path);
}

}  // namespace

PointSource PointSourceOf(const std::string& fileName) {
    std::error_code error;
    const fs::path path = fs::absolute(PathOf(fileName), error);
    return {path, ChangeOf(path)};
}

bool IsUnchanged(const PointSource& source) {
    return source.changed && ChangeOf(source.path) == source.changed;
}

}  // namespace kv_tr
