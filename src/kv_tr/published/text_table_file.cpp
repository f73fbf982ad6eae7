// Texts in a file, which take the place of the compiled ones.
#include "kv_tr/published/text_table_file.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "kv_tr/published/errors.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {
namespace {

std::optional<int> WholeNumber(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// The places and bars of a text, in any order: languages put them where their grammar wants.
std::multiset<std::string_view> Marks(std::string_view text) {
    std::multiset<std::string_view> marks;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '|') marks.insert(text.substr(i, 1));
        if (text[i] == '{') marks.insert(text.substr(i, 3));
    }
    return marks;
}

class TableReader {
public:
    TableReader(std::span<const std::int32_t> languages, std::span<const MlString> model)
        : languages_(languages), model_(model) {}

    bool Take(std::string_view line) {
        if (line.empty() || line.starts_with(';')) return true;
        if (line.starts_with('[')) return TakeLanguage(line);
        const std::size_t equals = line.find('=');
        if (equals == line.npos || !language_) return false;
        const auto id = WholeNumber(line.substr(0, equals));
        return id && TakeText(*id, std::string(line.substr(equals + 1)));
    }

    TextTable texts;

private:
    bool TakeLanguage(std::string_view line) {
        if (!line.ends_with(']')) return false;
        language_ = WholeNumber(line.substr(1, line.size() - 2));
        return language_ && std::ranges::count(languages_, *language_) > 0;
    }

    bool TakeText(int id, std::string text) {
        const auto row = std::ranges::lower_bound(model_, Text{id}, {}, &MlString::id);
        const bool fits = row != model_.end() && row->id == Text{id} && !text.empty() &&
                          ValidUtf8(text) == text && Marks(text) == Marks(row->text);
        return fits && texts.emplace(std::pair{*language_, id}, std::move(text)).second;
    }

    std::span<const std::int32_t> languages_;
    std::span<const MlString> model_;
    std::optional<std::int32_t> language_;
};

}  // namespace

TextTableFile ReadTextTable(std::streambuf& source, std::span<const std::int32_t> languages,
                            std::span<const MlString> model) {
    TableReader table(languages, model);
    BlockReader reader(source);
    std::size_t line = 1;
    try {
        reader.SkipUtf8Mark();
        for (std::string block; reader.Next(block);) {
            for (std::string_view rest = block; !rest.empty(); ++line) {
                const auto [text, ending] = TakeLine(rest);
                // A last line without an end may have been cut off.
                if (ending.empty() || !table.Take(text)) return {std::move(table.texts), line};
            }
        }
    } catch (const TextError&) {  // too long, or the system failed
        return {std::move(table.texts), line};
    }
    return {std::move(table.texts), 0};
}

}  // namespace kv_tr
