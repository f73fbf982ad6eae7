// The file or the standard input that a command reads lines from.
#pragma once

#include <cstdint>
#include <fstream>
#include <streambuf>
#include <string>

namespace kv_tr::cli {

/// Where lines are read from; "-" names the standard input.
class Input {
public:
    explicit Input(const std::string& name);

    bool IsOpen() const { return standard_ || stream_.is_open(); }
    std::streambuf& Source();
    /// Lets go of the file, so that another can take its place.
    void Close() { stream_.close(); }
    const std::string& Name() const { return name_; }
    std::uint64_t Size() const { return size_; }  // 0 when it is not known

private:
    bool standard_;
    std::string name_;
    std::ifstream stream_;
    std::uint64_t size_ = 0;
};

}  // namespace kv_tr::cli
