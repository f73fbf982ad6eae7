// Options that name files.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/published/ml_strings.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kv_tr::cli {

/// Adds an option that takes the name of a file. A name that begins like an option is refused: the
/// name has been forgotten. "./--name" is such a file.
CLI::Option* AddFileOption(CLI::App& command, const std::string& option, std::string& fileName,
                           Text description);

/// An option and the file that it names, if any.
struct NamedFile {
    std::string option;
    std::string fileName;
};

/// Whether no file that is to be written is written twice or read; otherwise a note says which,
/// under whatever names the files go. Devices may be named as often as one likes.
bool AreDistinct(const std::vector<NamedFile>& written, const std::vector<NamedFile>& read = {});

}  // namespace kv_tr::cli
