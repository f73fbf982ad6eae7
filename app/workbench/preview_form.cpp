// What the preview of opening lets the user choose, without a toolkit.
#include "workbench/preview_form.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kv_tr/published/ml_strings.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

constexpr std::array kSeparators{',', ';', '\t', ' '};
constexpr std::array kCommas{Comma::kSeparator, Comma::kDecimalSign};
constexpr std::array kHeaders{true, false};
constexpr std::array kCodePages{CodePage::kWindows1250, CodePage::kWindows1258};

std::string SeparatorText(char separator) {
    switch (separator) {
        case ',': return Said(Phrase::kCommaSign);
        case ';': return Said(Phrase::kSemicolonSign);
        case '\t': return Translated(Text::kTabSign);
        case ' ': return Translated(Text::kBlankSign);
        default: return {};
    }
}

std::string DecimalSignText(char sign) {
    return Said(sign == ',' ? Phrase::kCommaSign : Phrase::kPointSign);
}

std::string HeaderText(bool header) {
    return Said(header ? Phrase::kHeaderNames : Phrase::kHeaderIsPoint);
}

std::string DirectionText(char direction) {
    switch (direction) {
        case 'e': return Said(Phrase::kEast);
        case 'n': return Said(Phrase::kNorth);
        case 'w': return Said(Phrase::kWest);
        default: return Said(Phrase::kSouth);
    }
}

/// What was found without a choice, as the first entry of a list.
std::string Automatic(const std::string& found) {
    return found.empty() ? Said(Phrase::kAutomatic) : Said(Phrase::kAutomatic) + " (" + found + ")";
}

/// The entry of a choice in a list that begins with what is found out.
template <class Values, class Value>
std::size_t EntryOf(const Values& values, const Value& value) {
    const auto found = std::ranges::find(values, value);
    return found == values.end() ? 0 : static_cast<std::size_t>(found - values.begin()) + 1;
}
template <class Values, class Value>
std::size_t EntryOf(const Values& values, const std::optional<Value>& value) {
    return value ? EntryOf(values, *value) : 0;
}

template <class Values, class TextOf>
std::vector<std::string> Entries(const std::string& found, const Values& values, TextOf textOf) {
    std::vector<std::string> entries{Automatic(found)};
    for (const auto& value : values) entries.push_back(textOf(value));
    return entries;
}

template <class Values>
auto Chosen(const Values& values, std::size_t entry) -> std::optional<typename Values::value_type> {
    if (entry == 0) return std::nullopt;
    return values[entry - 1];
}

PreviewForm::List AxesList(Phrase label, AxisMapping axes) {
    PreviewForm::List list{.label = Said(label), .entries = {}};
    for (const AxisMapping one : kAxisMappings) list.entries.push_back(AxesText(one));
    list.current = EntryOf(kAxisMappings, axes) - 1;
    return list;
}

}  // namespace

std::string AxesText(AxisMapping axes) {
    const std::string_view word = AxisWord(axes);
    return "Y: " + DirectionText(word[0]) + ", X: " + DirectionText(word[1]);
}

PreviewForm::List PreviewForm::ListOf(PreviewChoice choice) const {
    const PointReadingOptions& chosen = preview_.Choices();
    const PointLayout& layout = preview_.Layout();
    const bool hasColumns = layout.separator != '\0';
    const bool isFree = hasColumns || preview_.Format() == PointFormat::kListing;
    switch (choice) {
        case PreviewChoice::kFormat:
            return {Translated(Text::kFormatHeading),
                    Entries(FormatTitle(preview_.Format()), kPointFormats, FormatTitle),
                    EntryOf(kPointFormats, chosen.format), !preview_.IsOfLists()};
        case PreviewChoice::kSeparator:
            return {Translated(Text::kSeparatorHeading),
                    Entries(SeparatorText(layout.separator), kSeparators, SeparatorText),
                    EntryOf(kSeparators, chosen.separator), hasColumns};
        case PreviewChoice::kDecimalSign: {
            const auto text = [](Comma comma) {
                return DecimalSignText(comma == Comma::kDecimalSign ? ',' : '.');
            };
            return {Translated(Text::kDecimalSignHeading),
                    Entries(DecimalSignText(layout.decimalSign), kCommas, text),
                    EntryOf(kCommas, chosen.comma), isFree};
        }
        case PreviewChoice::kHeader:
            return {Said(Phrase::kHeaderLabel),
                    Entries(hasColumns ? HeaderText(layout.header) : "", kHeaders, HeaderText),
                    EntryOf(kHeaders, chosen.header), hasColumns && !preview_.IsOfLists()};
        case PreviewChoice::kLetters: {
            const bool isPage = layout.encoding.starts_with("windows");
            if (!isPage) return {Translated(Text::kLettersHeading), {layout.encoding}, 0, false};
            return {Translated(Text::kLettersHeading),
                    {"windows-1250", "windows-1258"},
                    EntryOf(kCodePages, chosen.codePage) - 1,
                    true};
        }
        case PreviewChoice::kSourceAxes:
            return AxesList(Phrase::kSourceAxesLabel, chosen.sourceAxes);
        case PreviewChoice::kDestinationAxes:
            return AxesList(Phrase::kDestinationAxesLabel, chosen.targetAxes);
    }
    return {};
}

void PreviewForm::Choose(PreviewChoice choice, std::size_t entry) {
    PointReadingOptions chosen = preview_.Choices();
    switch (choice) {
        case PreviewChoice::kFormat:
            chosen.format = Chosen(kPointFormats, entry);
            chosen.separator.reset();
            chosen.header.reset();
            chosen.columns.clear();
            break;
        case PreviewChoice::kSeparator:
            chosen.separator = Chosen(kSeparators, entry);
            chosen.columns.clear();
            break;
        case PreviewChoice::kDecimalSign:
            chosen.comma = Chosen(kCommas, entry).value_or(Comma::kSuspect);
            break;
        case PreviewChoice::kHeader:
            chosen.header = Chosen(kHeaders, entry);
            chosen.columns.clear();
            break;
        case PreviewChoice::kLetters: chosen.codePage = kCodePages[entry]; break;
        case PreviewChoice::kSourceAxes: chosen.sourceAxes = kAxisMappings[entry]; break;
        case PreviewChoice::kDestinationAxes: chosen.targetAxes = kAxisMappings[entry]; break;
    }
    preview_.Choose(std::move(chosen));
}

void PreviewForm::HasSigmas(bool sigmas) {
    PointReadingOptions chosen = preview_.Choices();
    chosen.sigmas = sigmas;
    chosen.columns.clear();
    preview_.Choose(std::move(chosen));
}

std::size_t PreviewForm::ColumnCount() const {
    const PointLayout& layout = preview_.Layout();
    if (preview_.IsOfLists() || preview_.Format() != PointFormat::kCsv) return 0;
    return layout.columns.size();
}

std::size_t PreviewForm::ColumnEntry(std::size_t column) const {
    const std::vector<std::string> words = OpenPreview::ColumnWords();
    const auto found = std::ranges::find(words, preview_.Layout().columns[column]);
    return found == words.end() ? 0 : static_cast<std::size_t>(found - words.begin());
}

void PreviewForm::ChooseColumn(std::size_t column, std::size_t entry) {
    const std::string word = OpenPreview::ColumnWords()[entry];
    PointReadingOptions chosen = preview_.Choices();
    chosen.columns = preview_.Layout().columns;
    if (column >= chosen.columns.size() || chosen.columns[column] == word) return;
    chosen.header = preview_.Layout().header;
    const auto taken = std::ranges::find(chosen.columns, word);
    if (word != "-" && taken != chosen.columns.end()) *taken = chosen.columns[column];
    chosen.columns[column] = word;
    preview_.Choose(std::move(chosen));
}

}  // namespace kv_tr::workbench
