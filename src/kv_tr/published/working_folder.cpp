// Where a text that was typed becomes a file, for readers that want a file.
#include "kv_tr/published/working_folder.h"

#include <filesystem>

#include "kv_tr/published/message.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

fs::path CacheFolder() {
#ifdef _WIN32
    return fs::temp_directory_path();
#else
    if (const std::string caches = Environment("XDG_CACHE_HOME"); !caches.empty()) return caches;
    const std::string home = Environment("HOME");
    return home.empty() ? fs::path{} : fs::path(home) / ".cache";
#endif
}

}  // namespace

std::string WriteWorkingFile(const std::string& fileName, std::string_view text) {
    const fs::path caches = CacheFolder();
    if (caches.empty()) throw WriteFailure(fileName);
    const fs::path folder = caches / "KV_Tr";
    std::error_code error;
    fs::create_directories(folder, error);
    fs::permissions(folder, fs::perms::owner_all, error);
    std::string path = NameOfPath(folder / PathOf(fileName));
    ReplacingFile file(error ? std::string() : path);
    if (!file.IsOpen()) throw WriteFailure(path);
    file.Write("\xEF\xBB\xBF");
    file.Write(text);
    if (!file.Commit()) throw WriteFailure(path);
    return path;
}

}  // namespace kv_tr
