// Texts into files, safely.
#include "workbench/saving.h"

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/replacing_file.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {

std::string SaveText(std::string_view text, const std::string& fileName) {
    ReplacingFile file(fileName);
    if (!file.IsOpen()) return Said(Phrase::kCannotSave, {fileName});
    file.Write(text);
    return file.Commit() ? std::string() : std::string(WriteFailure(fileName).what());
}

std::string SaveInCodePage(std::string_view utf8, const std::string& fileName) {
    return SaveText(ToCodePage(utf8, FilesCodePage()), fileName);
}

}  // namespace kv_tr::workbench
