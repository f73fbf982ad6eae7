// A file that takes the place of an older one only when it is complete.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "kv_tr/text/system_file.h"

namespace kv_tr {

/// Writes beside the destination and moves there on Commit, so that a failure, a second writer or a
/// power cut never leaves half a file. Until then nobody but the user can read what is written;
/// the destination's rights come last.
///
/// Where permissions or the kind of file forbid that another file takes the place of the
/// destination, the bytes wait elsewhere, and Commit copies them over the destination once they
/// are complete. Devices and pipes are written directly. A writer that was killed leaves a file
/// `.kv_tr-NUMBER.tmp`, which the next one in that folder removes.
class ReplacingFile {
public:
    /// Opens for writing; IsOpen tells whether that worked. A destination that exists but cannot
    /// be written or examined, or is a folder, does not open. A link that leads to no file yet
    /// stays, and the file is made where the link leads.
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
    void OpenInPlaceOf(bool existing);
    void Discard();

    std::filesystem::path destination_;
    std::filesystem::path temporary_;  // beside the destination
    FileRights rights_;                // of the destination in the end
    bool direct_ = false;
    std::FILE* stream_ = nullptr;
};

}  // namespace kv_tr
