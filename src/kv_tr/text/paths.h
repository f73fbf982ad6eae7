// Names of files: as text in UTF-8 and as the system wants them. The only place that opens files by
// name.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace kv_tr {

/// The path that a name means: UTF-8 on Windows, where a name that is none is the empty path, under
/// which nothing opens; the system's own bytes elsewhere.
std::filesystem::path PathOf(std::string_view name);

/// The name of a path, so that PathOf leads back to it.
std::string NameOfPath(const std::filesystem::path& path);

/// Opens a file for the functions of the C library; the modes are those of fopen, without "x".
/// A null pointer when it does not open.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

/// A file to write and read that has no name and is gone when it is closed.
std::FILE* OpenNameless();

/// Opens a file to read its bytes. A folder does not open, though systems differ there.
std::ifstream OpenToRead(const std::filesystem::path& path);

/// When a file was changed last, as exactly as its system notes that; nothing where there is none.
std::optional<std::filesystem::file_time_type> LastChange(const std::filesystem::path& path);

/// What a variable of the environment says, in UTF-8 on Windows; empty when it is not set.
std::string Environment(const char* name);

}  // namespace kv_tr
