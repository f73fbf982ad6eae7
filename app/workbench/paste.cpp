// Points out of the cells of a spreadsheet.
#include "workbench/paste.h"

#include <algorithm>
#include <limits>

#include "common/point_reading.h"
#include "kv_tr/interchange/field_table.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/texts.h"
#include "workbench/folding.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

constexpr std::string_view kIgnored = "-";
constexpr std::string_view kNoteWord = "note";

std::string Key(std::string_view heading) {
    std::string key = Folded(heading);
    std::erase(key, ' ');
    return key;
}

/// What a column is called by its heading in the table of points, or in a file.
std::string WordOf(const std::string& heading) {
    const std::string key = Key(heading);
    for (const std::int32_t language : Languages()) {
        const auto isText = [&](Text text) {
            const char* own = BuiltInText(text, language);
            return own != nullptr && Key(own) == key;
        };
        if (isText(Text::kIdentifierColumn)) return "id";
        if (isText(Text::kNumberColumn)) return std::string(kIgnored);
        if (Key(PhraseIn(Phrase::kUseColumn, language)) == key) return "use";
        if (Key(PhraseIn(Phrase::kNoteColumn, language)) == key) return std::string(kNoteWord);
    }
    if (heading == "σY") return "sigma_first";
    if (heading == "σX") return "sigma_second";
    return std::string(ColumnNamed(heading));
}

/// The number of the cell, from 1, in which a column of letters of a line lies.
std::size_t CellAt(std::string_view text, char separator, const Problem& problem) {
    for (std::uint64_t line = 1; line < problem.line && !text.empty(); ++line) TakeLine(text);
    if (text.empty() || problem.column == 0) return problem.column;
    std::string_view line = TakeLine(text).text;
    std::size_t cell = 1;
    std::size_t letters = 0;
    bool isQuoted = false;
    for (const char c : line) {
        if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++letters;
        if (letters >= problem.column) break;
        if (c == '"') isQuoted = !isQuoted;
        if (c == separator && !isQuoted) ++cell;
    }
    return cell;
}

char SeparatorOf(std::string_view text) {
    const std::string_view first = text.substr(0, text.find_first_of("\r\n"));
    constexpr std::size_t kLeast = 4;
    return first.find('\t') != first.npos ? '\t' : FindSeparator(text, kLeast).sign;
}

}  // namespace

Pasted ReadPasted(std::string_view text) {
    Pasted pasted;
    constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
    const char separator = SeparatorOf(text);
    auto rows = SplitRows(text, separator == '\0' ? '\t' : separator, kAll);
    if (rows.empty()) {
        pasted.problems.push_back(Said(Phrase::kNothingToPaste));
        return pasted;
    }
    PointReadingOptions options{.format = PointFormat::kCsv};
    if (separator != '\0') options.separator = separator;
    std::vector<std::string> words;
    for (const Field& field : rows.front().fields) words.push_back(WordOf(field.text));
    const auto note = std::ranges::find(words, kNoteWord) - words.begin();
    const bool hasNotes = note < std::ssize(words);
    if (hasNotes) words[static_cast<std::size_t>(note)] = std::string(kIgnored);
    // A row of points may have an identifier that is a heading, but not two.
    if (std::ranges::count(words, kIgnored) + 2 <= std::ssize(words)) {
        options.header = true;
        options.columns = words;
    }
    PointFile file = ReadPoints(text, options);
    for (Problem& problem : file.problems) {
        problem.column = CellAt(text, separator, problem);
        pasted.problems.push_back(app::FieldComplaint(problem, Said(Phrase::kClipboard)));
    }
    if (!pasted.Complete()) return pasted;
    rows.erase(rows.begin(), rows.begin() + (file.layout.header ? 1 : 0));
    for (std::size_t i = 0; i < file.points.size(); ++i) {
        Pair pair{.point = std::move(file.points[i])};
        if (!file.sigmas.empty()) pair.sigma = file.sigmas[i];
        if (hasNotes) pair.note = rows[i].fields[static_cast<std::size_t>(note)].text;
        pasted.pairs.push_back(std::move(pair));
    }
    if (pasted.pairs.empty()) pasted.problems.push_back(Said(Phrase::kNothingToPaste));
    return pasted;
}

}  // namespace kv_tr::workbench
