// Whole files as text, and a folder for them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "kv_tr/text/paths.h"

namespace kv_tr::test {

inline std::string ReadFile(const std::string& name) {
    std::ifstream file(PathOf(name), std::ios::binary);
    return {std::istream_iterator<char>(file >> std::noskipws), {}};
}

/// The name of the file, which then holds this text.
inline const std::string& WriteFile(const std::string& name, const std::string& text) {
    std::ofstream(PathOf(name), std::ios::binary) << text;
    return name;
}

/// A folder of the test's own that goes away with it.
class TemporaryFolder {
public:
    TemporaryFolder() { std::filesystem::create_directories(path_); }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::string File(const std::string& name) const { return NameOfPath(path_) + "/" + name; }

private:
    const std::filesystem::path path_ = std::filesystem::temp_directory_path() /
                                        ("kv_tr-" + std::to_string(std::random_device{}()));
};

}  // namespace kv_tr::test
