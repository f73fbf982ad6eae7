// A file that takes the place of an older one only when it is complete.
#include "support/replacing_file.h"

#include <array>
#include <cerrno>
#include <random>
#include <utility>

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

/// Creates a new file next to the destination; its name, short since that of the destination may
/// be as long as a name can be, is returned beside it.
std::pair<std::FILE*, fs::path> CreateBeside(const fs::path& destination) {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path name = destination;
        name.replace_filename(".kv_tr-" + std::to_string(random()) + ".tmp");
        errno = 0;
        if (std::FILE* stream = std::fopen(name.string().c_str(), "wbx")) return {stream, name};
        if (errno != EEXIST) break;
    }
    return {nullptr, {}};
}

bool CanBeWritten(const fs::path& existing) {
    std::FILE* stream = std::fopen(existing.string().c_str(), "ab");
    if (stream != nullptr) std::fclose(stream);
    return stream != nullptr;
}

/// Copies a file from its start; false when not everything could be copied.
bool Copy(std::FILE* source, const fs::path& destination) {
    std::rewind(source);
    std::FILE* stream = std::fopen(destination.string().c_str(), "wb");
    if (stream == nullptr) return false;
    std::array<char, 1 << 16> buffer{};
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), source)) > 0) {
        std::fwrite(buffer.data(), 1, count, stream);
    }
    const bool complete = std::ferror(source) == 0 && std::ferror(stream) == 0;
    return std::fclose(stream) == 0 && complete;
}

}  // namespace

ReplacingFile::ReplacingFile(const std::string& path) : destination_(path) {
    if (path.empty()) return;
    std::error_code error;
    if (const auto target = fs::canonical(destination_, error); !error) destination_ = target;
    const fs::file_status status = fs::status(destination_, error);
    const bool exists = fs::exists(status);
    const bool regular = fs::is_regular_file(status);
    if (regular && !CanBeWritten(destination_)) return;
    if (regular || !exists) {
        std::tie(stream_, temporary_) = CreateBeside(destination_);
        if (IsOpen() && regular) fs::permissions(temporary_, status.permissions(), error);
    }
    if (!IsOpen() && regular) {
        stream_ = std::tmpfile();
        copied_ = true;
    } else if (!IsOpen() && exists) {
        stream_ = std::fopen(destination_.string().c_str(), "wb");
    }
}

ReplacingFile::~ReplacingFile() {
    if (!IsOpen()) return;
    std::fclose(stream_);
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void ReplacingFile::Write(std::string_view bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), stream_);
}

bool ReplacingFile::Commit() {
    bool written = std::fflush(stream_) == 0 && std::ferror(stream_) == 0;
    if (copied_) written = written && Copy(stream_, destination_);
    const bool closed = std::fclose(std::exchange(stream_, nullptr)) == 0;
    if (temporary_.empty()) return written && closed;
    std::error_code error;
    if (written && closed) fs::rename(temporary_, destination_, error);
    if (written && closed && !error) return true;
    fs::remove(temporary_, error);
    return false;
}

}  // namespace kv_tr
