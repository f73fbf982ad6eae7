// What writing files safely needs beyond the standard library: locks, rights, synchronisation.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kv_tr {

/// Who may do what with a file.
struct FileRights {
    std::uint32_t mode = 0;
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
};

/// The rights of a file that exists.
std::optional<FileRights> RightsOf(const std::filesystem::path& file);

/// The names of what a folder holds, as far as it can be read. (std::filesystem ends the program
/// where memory runs out on the way.)
std::vector<std::string> NamesIn(const std::filesystem::path& folder);

/// Creates a file for writing and reading that only its owner can open, and locks it for as long
/// as it is open, so that IsDead tells it from one whose writer has died. A null pointer, with
/// errno set, when it exists already or cannot be created. `usual` becomes the rights that files
/// created here get otherwise.
std::FILE* CreateLocked(const std::filesystem::path& name, FileRights& usual);

/// Whether a file that CreateLocked made for this user has nobody left who writes it.
bool IsDead(const std::filesystem::path& file);

/// Writes everything through to the disk; false when that failed.
bool Synchronise(std::FILE* stream);

/// Gives a file of CreateLocked its final rights, as far as its writer may give them: a group that
/// cannot be given gets no rights.
void GiveRights(std::FILE* stream, const FileRights& rights);

/// Moves the file of a stream to a destination that it replaces, and closes the stream when that
/// has worked; the move is on the disk by then.
std::error_code MoveAndClose(std::FILE*& stream, const std::filesystem::path& from,
                             const std::filesystem::path& to);

/// Whether an error means that a file can be written, but none be put into its place: its folder
/// may not be changed, or the file is of a kind that stays, as one mounted by itself does.
bool ForbidsReplacing(std::error_code error);

/// Writes what a stream holds over an existing file. The space is taken before the first byte is
/// written, so that a full disk leaves the file as it was; any other error ends the copy where it
/// happens. False when not everything was written.
bool CopyInto(std::FILE* source, const std::filesystem::path& destination);

}  // namespace kv_tr
