// Files written with decimal commas, which the readers would silently take for other numbers.
#include "kv_tr/published/decimal_commas.h"

#include <filesystem>

#include "kv_tr/files/open_text.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/paths.h"

namespace kv_tr {
namespace {

/// Whether the lines of a file are so, as far as they can be read: whoever reads the file next
/// tells what is wrong with it.
template <typename Predicate>
bool AreLines(const std::string& fileName, const Predicate& so) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(PathOf(fileName), error)) return false;
    auto file = OpenText(fileName);
    if (!file) return false;
    try {
        TextLines lines(*file->rdbuf(), FilesCodePage());
        return so(lines);
    } catch (const TextError&) {
        return false;
    }
}

}  // namespace

bool ParametersHaveDecimalCommas(const std::string& fileName) {
    return AreLines(fileName, [&](TextLines& lines) {
        return SeemToHaveDecimalCommas(lines, FormatNamed(fileName));
    });
}

bool PointsMayHaveDecimalCommas(const std::string& fileName) {
    return AreLines(fileName, [](TextLines& lines) {
        while (!lines.AtEnd()) {
            if (HasDecimalCommas(WithoutIdentifier(lines.Next()), 4)) return true;
        }
        return false;
    });
}

bool ReportDecimalCommas(const std::string& pointsFileName) {
    if (!PointsMayHaveDecimalCommas(pointsFileName)) return false;
    ShowMessage(Translated(Text::kCommasSeparateFields, {pointsFileName}), Icon::kExclamation);
    return true;
}

}  // namespace kv_tr
