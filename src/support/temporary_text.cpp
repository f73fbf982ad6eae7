// A text that is a file for a moment, for readers that want a file.
#include "support/temporary_text.h"

#ifdef _WIN32
#include <random>
#else
#include <cstdlib>
#endif

#include <fstream>

#include "support/errors.h"
#include "support/ml_strings.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

/// A new folder that only the user can enter; empty when none can be made.
fs::path MakeFolder() {
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
#ifdef _WIN32  // where the folder for temporary files is the user's own
    const fs::path folder = parent / ("KV_Tr-" + std::to_string(std::random_device{}()));
    return fs::create_directory(folder, error) ? folder : fs::path{};
#else
    std::string name = (parent / "KV_Tr-XXXXXX").string();
    return mkdtemp(name.data()) == nullptr ? fs::path{} : fs::path(name);
#endif
}

void RemoveWithFolder(const fs::path& path) {
    std::error_code ignored;
    fs::remove_all(path.parent_path(), ignored);
}

}  // namespace

TemporaryText::TemporaryText(const std::string& fileName, std::string_view text) {
    const fs::path folder = MakeFolder();
    if (!folder.empty()) {
        path_ = folder / fileName;
        std::ofstream stream(path_, std::ios::binary);
        stream << "\xEF\xBB\xBF" << text;
        stream.close();
        if (stream) return;
        RemoveWithFolder(path_);
    }
    throw RuntimeError(ErrorNumber::kWriteFailed,
                       GetMlString(1087, "Nem sikerült mindent kiírni") + ": " + fileName);
}

TemporaryText::~TemporaryText() { RemoveWithFolder(path_); }

}  // namespace kv_tr
