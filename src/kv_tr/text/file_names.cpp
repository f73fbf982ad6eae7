// Parts of file names.
#include "kv_tr/text/file_names.h"

#include <algorithm>

namespace kv_tr {
namespace {

constexpr std::string_view kSeparators = "\\/";

}  // namespace

std::string GetFileExt(std::string_view sPath) {
    const auto dot = sPath.rfind('.');
    return std::string(dot == sPath.npos ? std::string_view{} : sPath.substr(dot + 1));
}

std::string StripFileExt(std::string_view sName) {
    return std::string(sName.substr(0, sName.rfind('.')));
}

std::string GetFolderPart(std::string_view sPath) {
    return std::string(sPath.substr(0, sPath.find_last_of(kSeparators)));
}

std::string GetFileTitle(std::string_view sPath, bool bWithExt) {
    auto before = sPath.find_last_of(kSeparators);
    if (before == sPath.npos) before = sPath.rfind(':');
    const auto name = before == sPath.npos ? sPath : sPath.substr(before + 1);
    return bWithExt ? std::string(name) : StripFileExt(name);
}

std::string DirectoryOf(std::string_view path) {
    auto end = path.find_last_of(kSeparators);
    if (end == path.npos) end = path.rfind(':');
    return std::string(path.substr(0, end));
}

bool HasExtension(std::string_view path, std::string_view extension) {
    return std::ranges::equal(GetFileExt(path), extension, [](char own, char wanted) {
        return (own >= 'A' && own <= 'Z' ? own - 'A' + 'a' : own) == wanted;
    });
}

}  // namespace kv_tr
