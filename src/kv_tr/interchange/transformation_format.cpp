// The formats that a transformation can be given to other programs in.
#include "kv_tr/interchange/transformation_format.h"

#include <algorithm>
#include <array>

namespace kv_tr {
namespace {

using enum TransformationFormat;

struct Row {
    std::string_view word;
    Text name;
};
constexpr std::array kFormats{kJson,         kProj,         kProjHelmert, kWkt2,        kWorldFile,
                              kGeotransform, kCadWorldFile, kGdalGcps,    kSpreadsheet, kC,
                              kPython,       kSql,          kFormulas};
constexpr std::array<Row, kFormats.size()> kRows{{{"json", Text::kJsonFormat},
                                                  {"proj", Text::kProjFormat},
                                                  {"proj-helmert", Text::kProjHelmertFormat},
                                                  {"wkt2", Text::kWktFormat},
                                                  {"world", Text::kWorldFormat},
                                                  {"geotransform", Text::kGeotransformFormat},
                                                  {"cad-world", Text::kCadFormat},
                                                  {"gcps", Text::kGcpsFormat},
                                                  {"sheet", Text::kSheetFormat},
                                                  {"c", Text::kCFormat},
                                                  {"python", Text::kPythonFormat},
                                                  {"sql", Text::kSqlFormat},
                                                  {"formulas", Text::kFormulasFormat}}};

const Row& RowOf(TransformationFormat format) { return kRows[static_cast<std::size_t>(format)]; }

}  // namespace

std::span<const TransformationFormat> TransformationFormats() { return kFormats; }

std::string_view FormatWord(TransformationFormat format) { return RowOf(format).word; }

std::optional<TransformationFormat> FormatOfWord(std::string_view word) {
    const auto* found = std::ranges::find(kFormats, word, FormatWord);
    return found == kFormats.end() ? std::nullopt : std::optional(*found);
}

std::string FormatWords() {
    std::string words;
    for (const Row& row : kRows) words += (words.empty() ? "" : ", ") + std::string(row.word);
    return words;
}

Text FormatName(TransformationFormat format) { return RowOf(format).name; }

}  // namespace kv_tr
