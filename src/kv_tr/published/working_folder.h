// Where a text that was typed becomes a file, for readers that want a file.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// Writes a text to a file of this name in the working folder and returns the file's path. The
/// file stays, so that the last text typed can be found there, until the next one replaces it.
///
/// The working folder is `KV_Tr` among the user's caches ($XDG_CACHE_HOME, else ~/.cache; on
/// Windows among the temporary files), to which nobody but the user has access. The file is UTF-8
/// with a mark, so that no letter of the text is lost. Throws RuntimeError kWriteFailed when it
/// cannot be written.
std::string WriteWorkingFile(const std::string& fileName, std::string_view text);

}  // namespace kv_tr
