// The file or the standard input that a command reads lines from.
#include "cli/input.h"

#include <filesystem>
#include <iostream>

#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::cli {

Input::Input(const std::string& name) : standard_(name == "-"), name_(name) {
    std::error_code error;
    if (standard_) {
        std::ios::sync_with_stdio(false);
        name_ = Translated(Text::kStandardInput);
    } else {
        stream_ = OpenToRead(PathOf(name));
        const auto size = std::filesystem::file_size(PathOf(name), error);
        if (!error) size_ = size;
    }
}

std::streambuf& Input::Source() { return *(standard_ ? std::cin.rdbuf() : stream_.rdbuf()); }

}  // namespace kv_tr::cli
