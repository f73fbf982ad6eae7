// Whole files as text.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace kv_tr::test {

inline std::string ReadFile(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(name, std::ios::binary).rdbuf();
    return text.str();
}

inline void WriteFile(const std::string& name, const std::string& text) {
    std::ofstream(name, std::ios::binary) << text;
}

}  // namespace kv_tr::test
