// Options that name files.
#include "cli/file_options.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "cli/program.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::cli {
namespace fs = std::filesystem;
namespace {

/// Where a name leads, through links to files that need not exist.
fs::path TargetOf(const std::string& fileName) {
    constexpr int kMostLinks = 40;
    std::error_code error;
    fs::path path = fs::absolute(PathOf(fileName), error);
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return fs::weakly_canonical(path, error);
}

bool IsSameFile(const std::string& one, const std::string& other) {
    if (one.empty() || other.empty()) return false;
    std::error_code error;
    if (fs::is_other(PathOf(one), error)) return false;
    return fs::equivalent(PathOf(one), PathOf(other), error) || TargetOf(one) == TargetOf(other);
}

/// Whether a file is none of the others, which is noted if it is.
bool IsNoneOf(const NamedFile& file, const std::vector<NamedFile>& others) {
    for (const NamedFile& other : others) {
        if (file.option == other.option || !IsSameFile(file.fileName, other.fileName)) continue;
        PrintNote(Translated(Text::kSameFile, {file.option, other.option, Excerpt(file.fileName)}));
        return false;
    }
    return true;
}

}  // namespace

CLI::Option* AddFileOption(CLI::App& command, const std::string& option, std::string& fileName,
                           Text description) {
    return command.add_option(option, fileName, Translated(description))
        ->type_name("FILE")
        ->check([option](const std::string& name) -> std::string {
            if (name.starts_with("--")) throw CLI::ArgumentMismatch(option + ": " + name);
            return {};
        });
}

bool AreDistinct(const std::vector<NamedFile>& written, const std::vector<NamedFile>& read) {
    return std::ranges::all_of(written, [&](const NamedFile& file) {
        return IsNoneOf(file, written) && IsNoneOf(file, read);
    });
}

}  // namespace kv_tr::cli
