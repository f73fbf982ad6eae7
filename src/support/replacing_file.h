// A file that takes the place of an older one only when it is complete.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace kv_tr {

/// Writes beside the destination and moves there on Commit, so that a failure or a second writer
/// never leaves half a file. In a folder where nothing can be created the bytes wait elsewhere and
/// are copied on Commit. Devices and pipes are written directly.
class ReplacingFile {
public:
    /// Opens for writing; IsOpen tells whether that worked. A destination that exists but cannot
    /// be written, or is a folder, does not open.
    explicit ReplacingFile(const std::string& path);
    ~ReplacingFile();  // without Commit the destination stays as it was
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    bool IsOpen() const { return stream_ != nullptr; }
    /// The file that is written until Commit; empty when it has no name or is the destination.
    const std::filesystem::path& Temporary() const { return temporary_; }
    void Write(std::string_view bytes);

    /// Finishes the file; false when not everything could be written, and the destination then
    /// stays as it was.
    bool Commit();

private:
    std::filesystem::path destination_;
    std::filesystem::path temporary_;  // beside the destination
    bool copied_ = false;              // from a file without a name
    std::FILE* stream_ = nullptr;
};

}  // namespace kv_tr
