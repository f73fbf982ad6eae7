// Parts of file names. Both "\" and "/" separate folders.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// The text after the last "."; empty when there is no dot.
std::string GetFileExt(std::string_view sPath);

/// The text before the last "."; the whole text when there is no dot.
std::string StripFileExt(std::string_view sName);

/// The text before the last folder separator; the whole text when there is none.
std::string GetFolderPart(std::string_view sPath);

/// The text after the last folder separator, failing that after the last ":", failing that the
/// whole text; without its extension unless bWithExt.
std::string GetFileTitle(std::string_view sPath, bool bWithExt);

/// The text before the last folder separator, failing that before the last ":", failing that the
/// whole text.
std::string DirectoryOf(std::string_view path);

/// Whether the path has this extension (in lower case), in whatever case.
bool HasExtension(std::string_view path, std::string_view extension);

}  // namespace kv_tr
