// Names of files on Windows: UTF-8 here, UTF-16 there.
#include <cstdlib>
#include <memory>

#include "kv_tr/text/paths.h"
#include "kv_tr/text/wide_text.h"

namespace kv_tr {
namespace fs = std::filesystem;

fs::path PathOf(std::string_view name) {
    const std::wstring wide = Wide(name);
    return Utf8(wide) == name ? fs::path(wide) : fs::path();
}

std::string NameOfPath(const fs::path& path) { return Utf8(path.native()); }

std::FILE* OpenFile(const fs::path& path, const char* mode) {
    return _wfopen(path.c_str(), Wide(mode).c_str());
}

// The C library's own tmpfile wants to write in the root of the drive, which plain users may not.
std::FILE* OpenNameless() {
    const std::unique_ptr<wchar_t, decltype(&std::free)> name(_wtempnam(nullptr, L"kv_tr"),
                                                              &std::free);
    // Short-lived, and deleted when it is closed.
    return name == nullptr ? nullptr : _wfopen(name.get(), L"w+bTD");
}

std::ifstream OpenToRead(const fs::path& path) {
    return std::ifstream(path, std::ios::binary);  // folders do not open here
}

std::string Environment(const char* name) {
    const wchar_t* value = _wgetenv(Wide(name).c_str());
    return value == nullptr ? "" : Utf8(value);
}

}  // namespace kv_tr
