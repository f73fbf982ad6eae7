// A data set of one or several files that appears when all of it is written.
#include "kv_tr/gdal/written_beside.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <string>
#include <system_error>
#include <utility>

#include "kv_tr/gdal/work.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/system_file.h"

namespace kv_tr::gdal {
namespace fs = std::filesystem;
namespace {

constexpr int kMostLinks = 40;
constexpr const char* kLockName = ".lock";
constexpr const char* kOldName = ".old";  // what was at the target while it is replaced

bool IsTemporaryFolder(const fs::path& folder) {
    const std::string name = folder.filename().string();
    std::error_code error;
    return name.starts_with(".kv_tr-") && name.ends_with(".tmp") &&
           fs::is_directory(fs::symlink_status(folder, error));
}

/// Removes what writers left that were killed.
void RemoveDeadFolders(const fs::path& parent) {
    std::error_code error;
    for (fs::directory_iterator entry(parent, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        const fs::path& folder = entry->path();
        if (IsTemporaryFolder(folder) && !fs::exists(folder / kOldName, ignored) &&
            IsDead(folder / kLockName)) {
            fs::remove_all(folder, ignored);
        }
    }
}

bool CanBeReplaced(const fs::path& existing) {
    std::error_code error;
    if (fs::is_directory(existing, error)) return true;
    if (!fs::is_regular_file(existing, error)) return false;
    std::FILE* stream = OpenFile(existing, "ab");
    if (stream != nullptr) std::fclose(stream);
    return stream != nullptr;
}

/// Writes all files at or below a path through to the disk.
void SynchroniseAll(const fs::path& path) {
    if (fs::is_directory(path)) {
        for (const auto& entry : fs::directory_iterator(path)) SynchroniseAll(entry.path());
        return;
    }
    std::FILE* stream = OpenFile(path, "r+b");
    const bool done = stream != nullptr && Synchronise(stream);
    if (stream != nullptr) std::fclose(stream);
    if (!done)
        throw fs::filesystem_error("fsync", path, std::error_code(errno, std::generic_category()));
}

}  // namespace

WrittenBeside::WrittenBeside(const fs::path& target, bool replaces)
    : target_(fs::absolute(target)), replaces_(replaces) {
    std::error_code error;
    for (int links = 0; links < kMostLinks && fs::is_symlink(target_, error); ++links) {
        target_ = target_.parent_path() / fs::read_symlink(target_, error);
    }
    if (auto followed = fs::weakly_canonical(target_, error); !error) target_ = followed;
    if (fs::exists(target_, error)) {
        if (!replaces_) throw DataSetError(Text::kTargetExists, {target.string()});
        if (!CanBeReplaced(target_)) {
            throw DataSetError(
                Text::kTargetNotWritable,
                {target.string(), std::make_error_code(std::errc::permission_denied).message()});
        }
    }
    MakeFolder();
    path_ = folder_ / target_.filename();
}

void WrittenBeside::MakeFolder() {
    const fs::path parent = target_.parent_path();
    std::error_code error;
    for (fs::path above = parent; !fs::exists(above, error); above = above.parent_path()) {
        firstMade_ = above;
    }
    fs::create_directories(parent, error);
    if (!error) RemoveDeadFolders(parent);
    std::random_device random;
    bool made = false;
    for (int attempt = 0; attempt < 100 && !error && !made; ++attempt) {
        folder_ = parent / (".kv_tr-" + std::to_string(random()) + ".tmp");
        made = fs::create_directory(folder_, error);
    }
    if (made) {
        FileRights rights;
        fs::permissions(folder_, fs::perms::owner_all, error);
        lock_ = CreateLocked(folder_ / kLockName, rights);
    }
    if (made && lock_ != nullptr) return;
    if (!error) error = std::error_code(errno, std::generic_category());
    std::error_code ignored;
    if (made) fs::remove_all(folder_, ignored);
    if (!firstMade_.empty()) fs::remove(firstMade_, ignored);
    throw DataSetError(Text::kTargetNotWritable, {target_.string(), error.message()});
}

WrittenBeside::~WrittenBeside() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
    if (lock_ != nullptr) std::fclose(lock_);
    if (firstMade_.empty()) return;
    for (fs::path made = target_.parent_path(); fs::remove(made, ignored) && made != firstMade_;) {
        made = made.parent_path();
    }
}

std::vector<WrittenBeside::Move> WrittenBeside::Moves() const {
    std::vector<Move> moves;
    const auto add = [&](const fs::path& from, const fs::path& to) { moves.push_back({from, to}); };
    for (const auto& entry : fs::directory_iterator(folder_)) {
        const fs::path name = entry.path().filename();
        if (name == kLockName) continue;
        const fs::path to = target_.parent_path() / name;
        if (!mergesFolders_ || !fs::is_directory(to) || !fs::is_directory(entry.path())) {
            add(entry.path(), to);
            continue;
        }
        for (const auto& member : fs::directory_iterator(entry.path())) {
            add(member.path(), to / member.path().filename());
        }
    }
    return moves;
}

void WrittenBeside::Commit() {
    std::vector<Move> done;
    try {
        const auto moves = Moves();
        for (const auto& [from, to] : moves) {
            if (!replaces_ && fs::exists(fs::symlink_status(to))) {
                throw DataSetError(Text::kTargetExists, {to.string()});
            }
            SynchroniseAll(from);
            if (fs::is_regular_file(to)) fs::permissions(from, fs::status(to).permissions());
        }
        // A single file takes the place of another in one step. Of several, all old ones go first.
        auto inTheWay = old_;
        for (const Move& move : moves) inTheWay.push_back(move.to);
        if (moves.size() == 1 && fs::is_regular_file(moves.front().to)) {
            std::erase(inTheWay, moves.front().to);
        }
        fs::create_directory(folder_ / kOldName);
        for (const fs::path& old : inTheWay) {
            if (!fs::exists(fs::symlink_status(old))) continue;
            const Move aside{old, folder_ / kOldName / std::to_string(done.size())};
            fs::rename(aside.from, aside.to);
            done.push_back(aside);
        }
        for (const Move& move : moves) {
            fs::rename(move.from, move.to);
            done.push_back(move);
        }
    } catch (const fs::filesystem_error& error) {
        std::error_code ignored;
        std::ranges::reverse(done);
        for (const auto& [from, to] : done) fs::rename(to, from, ignored);
        throw DataSetError(Text::kTargetNotWritable, {target_.string(), error.code().message()});
    }
    firstMade_.clear();
}

}  // namespace kv_tr::gdal
