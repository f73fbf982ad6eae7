// A file that takes the place of an older one only when it is complete.
#include "kv_tr/text/replacing_file.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <utility>

#include "kv_tr/text/paths.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

// Short, since the name of the destination may be as long as a name can be.
constexpr std::string_view kPrefix = ".kv_tr-";
constexpr std::string_view kSuffix = ".tmp";

bool IsTemporaryName(std::string_view name) {
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
    name.remove_prefix(kPrefix.size());
    name.remove_suffix(std::min(kSuffix.size(), name.size()));
    return name.find_first_not_of("0123456789") == name.npos;
}

/// In one step, since a path that is changed does not survive that memory runs out meanwhile.
fs::path In(const fs::path& folder, const std::string& name) {
    fs::path::string_type path = folder.native();
    path.reserve(path.size() + 1 + name.size());
    path += fs::path::preferred_separator;
    path.append(name.begin(), name.end());
    return path;
}

/// Removes what writers left that were killed.
void RemoveDeadFiles(const fs::path& folder) {
    for (const std::string& name : NamesIn(folder)) {
        if (!IsTemporaryName(name)) continue;
        const fs::path file = In(folder, name);
        std::error_code ignored;
        if (IsDead(file)) fs::remove(file, ignored);
    }
}

bool CanBeWritten(const fs::path& existing) {
    std::FILE* stream = OpenFile(existing, "ab");
    if (stream != nullptr) std::fclose(stream);
    return stream != nullptr;
}

/// Where a path leads when its links are followed, whether there is a file or not.
fs::path Followed(const std::string& name) {
    constexpr int kMostLinks = 40;
    std::error_code error;
    fs::path path = fs::absolute(PathOf(name), error);
    for (int link = 0; link < kMostLinks && fs::is_symlink(path, error); ++link) {
        const fs::path target = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / target;
    }
    return path;
}

}  // namespace

ReplacingFile::ReplacingFile(const std::string& path) : destination_(Followed(path)) {
    if (path.empty()) return;
    std::error_code error;
    const fs::file_status status = fs::status(destination_, error);
    if (fs::is_regular_file(status)) {
        if (CanBeWritten(destination_)) OpenInPlaceOf(true);
    } else if (fs::exists(status)) {
        stream_ = OpenFile(destination_, "wb");
        direct_ = true;
    } else if (status.type() == fs::file_type::not_found) {
        OpenInPlaceOf(false);
    }
}

void ReplacingFile::OpenInPlaceOf(bool existing) {
    const auto known = existing ? RightsOf(destination_) : std::nullopt;
    if (existing && !known) return;
    const fs::path folder = destination_.parent_path();
    RemoveDeadFiles(folder);
    std::random_device random;
    int failure = EEXIST;
    for (int attempt = 0; attempt < 100 && !IsOpen() && failure == EEXIST; ++attempt) {
        temporary_ =
            In(folder, std::string(kPrefix) + std::to_string(random()) + std::string(kSuffix));
        stream_ = CreateLocked(temporary_, rights_);
        failure = errno;
    }
    if (known) rights_ = *known;
    if (IsOpen()) return;
    temporary_.clear();
    const std::error_code error(failure, std::generic_category());
    if (existing && ForbidsReplacing(error)) stream_ = OpenNameless();
}

ReplacingFile::~ReplacingFile() { Discard(); }

void ReplacingFile::Discard() {
    if (!IsOpen()) return;
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
    std::fclose(std::exchange(stream_, nullptr));
}

void ReplacingFile::Write(std::string_view bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), stream_);
}

bool ReplacingFile::Commit() {
    const bool written = std::fflush(stream_) == 0 && std::ferror(stream_) == 0;
    bool done = false;
    if (direct_) {
        done = std::fclose(std::exchange(stream_, nullptr)) == 0 && written;
    } else if (written && temporary_.empty()) {
        done = CopyInto(stream_, destination_);
    } else if (written && Synchronise(stream_)) {
        GiveRights(stream_, rights_);
        const std::error_code error = MoveAndClose(stream_, temporary_, destination_);
        done = !error || (ForbidsReplacing(error) && IsOpen() && CopyInto(stream_, destination_));
    }
    Discard();
    return done;
}

}  // namespace kv_tr
