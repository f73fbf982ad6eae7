// Names of files on POSIX systems: bytes are taken as they are.
#include "kv_tr/text/paths.h"

#include <cstdlib>

namespace kv_tr {
namespace fs = std::filesystem;

fs::path PathOf(std::string_view name) { return name; }

std::string NameOfPath(const fs::path& path) { return path.string(); }

std::FILE* OpenFile(const fs::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

std::FILE* OpenNameless() { return std::tmpfile(); }

std::ifstream OpenToRead(const fs::path& path) {
    std::error_code error;
    std::ifstream stream;
    if (!fs::is_directory(path, error)) stream.open(path, std::ios::binary);
    return stream;
}

std::optional<fs::file_time_type> LastChange(const fs::path& path) {
    std::error_code error;
    const fs::file_time_type changed = fs::last_write_time(path, error);
    return error ? std::nullopt : std::optional(changed);
}

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace kv_tr
