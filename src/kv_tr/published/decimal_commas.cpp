// Files written with decimal commas, which the readers would silently take for other numbers.
#include "kv_tr/published/decimal_commas.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {
namespace {

/// Whether any line of a file is so, as far as they can be read: whoever reads the file next tells
/// what is wrong with it.
template <typename Predicate>
bool AnyLine(const std::string& fileName, const Predicate& isSo) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(fileName, error)) return false;
    std::ifstream stream(fileName, std::ios::binary);
    try {
        LineReader reader(*stream.rdbuf());
        while (!reader.AtEnd()) {
            if (isSo(reader.Next())) return true;
        }
    } catch (const TextError&) {
    }
    return false;
}

std::vector<std::string> FirstLines(const std::string& fileName) {
    constexpr std::size_t kEnough = 30;
    std::vector<std::string> lines;
    AnyLine(fileName, [&lines](std::string_view line) {
        lines.emplace_back(line);
        return lines.size() == kEnough;
    });
    return lines;
}

}  // namespace

bool ParametersHaveDecimalCommas(const std::string& fileName) {
    const auto lines = FirstLines(fileName);
    if (HasExtension(fileName, "all")) {  // where a comma never separates
        constexpr std::ptrdiff_t kTitles = 2;
        return std::any_of(lines.begin() + std::min(kTitles, std::ssize(lines)), lines.end(),
                           [](const std::string& line) {
                               return line.find('.') == line.npos && HasCommaInNumber(line);
                           });
    }
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return HasDecimalCommas(text, 6);
}

bool PointsMayHaveDecimalCommas(const std::string& fileName) {
    return AnyLine(fileName, [](std::string_view line) {
        return HasDecimalCommas(WithoutIdentifier(line), 4);
    });
}

bool ReportDecimalCommas(const std::string& pointsFileName) {
    if (!PointsMayHaveDecimalCommas(pointsFileName)) return false;
    ShowMessage(Translated(Text::kCommasSeparateFields, {pointsFileName}), Icon::kExclamation);
    return true;
}

}  // namespace kv_tr
