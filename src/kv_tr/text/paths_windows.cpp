// Names of files on Windows: UTF-8 here, UTF-16 there.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "kv_tr/text/paths.h"
#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

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

// The standard library knows whole seconds here, in which a file may change twice.
std::optional<fs::file_time_type> LastChange(const fs::path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
    const auto [low, high] = data.ftLastWriteTime;
    const std::int64_t ticks = static_cast<std::int64_t>(high) << 32 | low;  // since 1601
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    using namespace std::chrono;
    constexpr auto kFrom1601 = sys_days{1970y / 1 / 1} - sys_days{1601y / 1 / 1};
    return file_clock::from_sys(sys_time<Ticks>(Ticks(ticks) - kFrom1601));
}

std::string Environment(const char* name) {
    const wchar_t* value = _wgetenv(Wide(name).c_str());
    return value == nullptr ? "" : Utf8(value);
}

}  // namespace kv_tr
