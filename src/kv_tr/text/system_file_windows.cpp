// What writing files safely needs beyond the standard library, on Windows.
#include <fcntl.h>
#include <io.h>

#include <array>
#include <cerrno>
#include <utility>

#include "kv_tr/text/paths.h"
#include "kv_tr/text/system_file.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr {
namespace fs = std::filesystem;
namespace {

HANDLE HandleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

int NumberOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_EXISTS: return EEXIST;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT: return EACCES;
        default: return EIO;
    }
}

}  // namespace

// A new file inherits the rights of its folder, as the files beside it did.
std::optional<FileRights> RightsOf(const fs::path&) { return FileRights{}; }

void GiveRights(std::FILE*, const FileRights&) {}

std::vector<std::string> NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(NameOfPath(entry->path().filename()));
    return names;
}

std::FILE* CreateLocked(const fs::path& name, FileRights&) {
    // Others may remove it, the signal handler of its own program among them, but not write it.
    const HANDLE handle =
        CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        errno = NumberOf(GetLastError());
        return nullptr;
    }
    const int file = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDWR | _O_BINARY);
    std::FILE* stream = file < 0 ? nullptr : _fdopen(file, "w+b");
    if (stream == nullptr) {
        if (file < 0) CloseHandle(handle);
        if (file >= 0) _close(file);
        DeleteFileW(name.c_str());
        errno = ENOMEM;
    }
    return stream;
}

bool IsDead(const fs::path& file) {
    const HANDLE handle =
        CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    CloseHandle(handle);
    return true;
}

bool Synchronise(std::FILE* stream) { return _commit(_fileno(stream)) == 0; }

std::error_code MoveAndClose(std::FILE*& stream, const fs::path& from, const fs::path& to) {
    std::fclose(std::exchange(stream, nullptr));  // an open file cannot take another's place
    constexpr int kAttempts = 5;  // virus scanners and indexers hold a file for moments
    for (int attempt = 1; MoveFileExW(from.c_str(), to.c_str(),
                                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0;
         ++attempt) {
        const DWORD error = GetLastError();
        const bool held = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
        if (!held || attempt == kAttempts) {
            DeleteFileW(from.c_str());
            return {static_cast<int>(error), std::system_category()};
        }
        Sleep(50);
    }
    return {};
}

bool ForbidsReplacing(std::error_code error) {
    return error == std::error_code(EACCES, std::generic_category());
}

bool CopyInto(std::FILE* source, const fs::path& destination) {
    std::rewind(source);
    std::FILE* stream = OpenFile(destination, "r+b");
    if (stream == nullptr) return false;
    std::array<char, 1 << 16> buffer{};
    std::size_t count = 0;
    bool written = true;
    while (written && (count = std::fread(buffer.data(), 1, buffer.size(), source)) > 0) {
        written = std::fwrite(buffer.data(), 1, count, stream) == count;
    }
    written = written && std::ferror(source) == 0 && std::fflush(stream) == 0 &&
              SetEndOfFile(HandleOf(stream)) != 0 && Synchronise(stream);
    return std::fclose(stream) == 0 && written;
}

}  // namespace kv_tr
