// Text files by their names.
#include "kv_tr/files/open_text.h"

#include <ios>

#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {

std::optional<std::ifstream> OpenText(const std::string& fileName) {
    std::ifstream file = OpenToRead(PathOf(fileName));
    if (!file.is_open()) return std::nullopt;
    try {
        file.rdbuf()->sgetc();
    } catch (const std::ios_base::failure&) {  // opens, but cannot be read
        return std::nullopt;
    }
    return file;
}

Written WriteText(const std::string& fileName, std::string_view utf8, CodePage page) {
    const std::string bytes = ToCodePage(utf8, page);
    ReplacingFile file(fileName);
    if (!file.IsOpen()) return Written::kNotOpened;
    file.Write(bytes);
    return file.Commit() ? Written::kYes : Written::kFailed;
}

}  // namespace kv_tr
