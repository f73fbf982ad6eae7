// What writing files safely needs beyond the standard library, on POSIX systems.
#include "kv_tr/text/system_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <utility>

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

constexpr mode_t kOnlyOwner = S_IRUSR | S_IWUSR;
constexpr mode_t kAllBits = 07777;

FileRights RightsIn(const struct stat& status) {
    return {.mode = status.st_mode & kAllBits, .owner = status.st_uid, .group = status.st_gid};
}

/// A file descriptor that is closed when it goes away.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    explicit operator bool() const { return number_ >= 0; }
    operator int() const { return number_; }
    int Release() { return std::exchange(number_, -1); }

private:
    int number_;
};

/// Some file systems cannot synchronise what is not a file of theirs, which is no failure.
bool Synchronise(int file) { return fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP; }

bool WriteAll(int file, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(file, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

/// Takes the space of so many bytes; a file that cannot have it keeps its length.
bool Reserve(int file, off_t size) {
    struct stat before {};
    if (size == 0 || fstat(file, &before) != 0) return size == 0;
    const int error = posix_fallocate(file, 0, size);
    if (error == 0 || error == EINVAL || error == EOPNOTSUPP) return true;
    return ftruncate(file, before.st_size) == 0 && false;
}

}  // namespace

std::optional<FileRights> RightsOf(const fs::path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return std::nullopt;
    return RightsIn(status);
}

std::vector<std::string> NamesIn(const fs::path& folder) {
    struct Close {
        void operator()(DIR* opened) const { closedir(opened); }
    };
    const std::unique_ptr<DIR, Close> opened(opendir(folder.c_str()));
    std::vector<std::string> names;
    while (const dirent* entry = opened ? readdir(opened.get()) : nullptr)
        names.emplace_back(entry->d_name);
    return names;
}

std::FILE* CreateLocked(const fs::path& name, FileRights& usual) {
    constexpr mode_t kAsOthersAre = 0666;  // less what the user's mask takes away
    Descriptor file(open(name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kAsOthersAre));
    if (!file) return nullptr;
    struct stat status {};
    const bool locked = flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    // Between the two calls the file looked dead and may have been removed.
    if (!locked || fstat(file, &status) != 0 || status.st_nlink == 0) {
        unlink(name.c_str());
        errno = EEXIST;
        return nullptr;
    }
    usual = RightsIn(status);
    fchmod(file, kOnlyOwner);  // while it is empty; some file systems have no rights to change
    std::FILE* stream = fdopen(file, "w+b");
    if (stream == nullptr) {
        unlink(name.c_str());
        errno = ENOMEM;
        return nullptr;
    }
    file.Release();
    return stream;
}

bool IsDead(const fs::path& file) {
    const Descriptor opened(open(file.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    return opened && fstat(opened, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && flock(opened, LOCK_EX | LOCK_NB) == 0;
}

bool Synchronise(std::FILE* stream) { return Synchronise(fileno(stream)); }

void GiveRights(std::FILE* stream, const FileRights& rights) {
    const int file = fileno(stream);
    mode_t mode = rights.mode;
    struct stat own {};
    if (fstat(file, &own) != 0) return;
    const bool foreign = own.st_uid != rights.owner || own.st_gid != rights.group;
    if (foreign && fchown(file, rights.owner, rights.group) != 0 &&
        fchown(file, own.st_uid, rights.group) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    fchmod(file, mode);
}

std::error_code MoveAndClose(std::FILE*& stream, const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);  // while the lock still keeps other writers from removing it
    if (error) return error;
    std::fclose(std::exchange(stream, nullptr));
    const Descriptor opened(open(to.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) Synchronise(opened);
    return {};
}

bool ForbidsReplacing(std::error_code error) {
    const int number = error.value();  // EBUSY: something is mounted on the file
    return number == EACCES || number == EPERM || number == EROFS || number == EBUSY;
}

bool CopyInto(std::FILE* source, const fs::path& destination) {
    Descriptor file(open(destination.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file || fseeko(source, 0, SEEK_END) != 0) return false;
    const off_t size = ftello(source);
    std::rewind(source);
    if (size < 0 || !Reserve(file, size)) return false;
    std::array<char, 1 << 16> buffer{};
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), source)) > 0) {
        if (!WriteAll(file, buffer.data(), count)) return false;
    }
    return std::ferror(source) == 0 && ftruncate(file, size) == 0 && Synchronise(file) &&
           close(file.Release()) == 0;
}

}  // namespace kv_tr
