// Text in columns: fields, quotes, separators and decimal signs as spreadsheets write them.
#include "kv_tr/interchange/field_table.h"

#include <algorithm>

#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }

/// Takes rows off a text, character by character.
class RowReader {
public:
    RowReader(std::string_view text, char separator) : text_(text), separator_(separator) {}

    bool AtEnd() const { return at_ >= text_.size(); }

    /// The next line; without fields when it is to be skipped.
    Row Next() {
        Row row;
        const std::size_t begin = at_;
        SkipBlanks();
        if (!AtEnd() && text_[at_] == '#') {
            while (!AtLineEnd()) ++at_;
        } else {
            TakeFields(row.fields);
            const auto isEmpty = [](const Field& field) { return field.text.empty(); };
            if (std::ranges::all_of(row.fields, isEmpty)) row.fields.clear();
        }
        row.raw = text_.substr(begin, at_ - begin);
        if (!AtEnd() && text_[at_++] == '\r' && !AtEnd() && text_[at_] == '\n') ++at_;
        return row;
    }

private:
    bool AtLineEnd() const { return AtEnd() || IsLineEnd(text_[at_]); }
    bool IsBlank(char c) const { return c == ' ' || (c == '\t' && separator_ != '\t'); }
    bool AtSeparator() const {
        return separator_ == ' ' ? IsBlank(text_[at_]) : text_[at_] == separator_;
    }
    void SkipBlanks() {
        while (!AtEnd() && IsBlank(text_[at_])) ++at_;
    }

    void TakeFields(std::vector<Field>& fields) {
        while (true) {
            SkipBlanks();
            if (AtLineEnd() && separator_ == ' ') return;
            fields.push_back(TakeField());
            if (AtLineEnd()) return;
            ++at_;  // the separator
        }
    }

    Field TakeField() {
        const std::size_t begin = at_;
        std::string text;
        if (!AtEnd() && text_[at_] == '"') TakeQuoted(text);
        while (!AtLineEnd() && !AtSeparator()) text += text_[at_++];
        std::size_t end = at_;
        while (end > begin && IsBlank(text_[end - 1])) --end;
        const std::size_t blanks = at_ - end;
        text.resize(text.size() - std::min(blanks, text.size()));
        return {text_.substr(begin, end - begin), std::move(text)};
    }

    /// A quote that nothing closes is part of the text.
    void TakeQuoted(std::string& text) {
        std::string inside;
        for (std::size_t i = at_ + 1; i < text_.size(); ++i) {
            if (text_[i] != '"') {
                inside += text_[i];
            } else if (i + 1 < text_.size() && text_[i + 1] == '"') {
                inside += text_[i++];
            } else {
                text = std::move(inside);
                at_ = i + 1;
                return;
            }
        }
    }

    std::string_view text_;
    char separator_;
    std::size_t at_ = 0;
};

/// Whether numbers stand beside each other in a field, so that its separator cannot be the right
/// one: "0,5 1,5" has no field "5 1".
bool HasNumbersApart(std::string_view field) {
    for (std::size_t i = 1; i + 1 < field.size(); ++i) {
        if (field[i] != ' ' && field[i] != '\t') continue;
        const std::size_t next = std::min(field.find_first_not_of(" \t", i), field.size() - 1);
        if (IsDigit(field[i - 1]) && (IsDigit(field[next]) || field[next] == '-')) return true;
    }
    return false;
}

/// Whether the commas or points of a text part groups of three digits.
bool HasGroups(std::string_view digits, char sign) {
    std::size_t group = 0;
    bool first = true;
    for (const char c : digits) {
        if (IsDigit(c)) {
            ++group;
        } else if (c == sign && group > 0 && (first ? group <= 3 : group == 3)) {
            first = false;
            group = 0;
        } else {
            return false;
        }
    }
    return group == 3;
}

std::string Without(std::string_view text, char sign) {
    std::string left(text);
    std::erase(left, sign);
    return left;
}

}  // namespace

std::vector<Row> SplitRows(std::string_view text, char separator, std::size_t most) {
    std::vector<Row> rows;
    for (RowReader reader(text, separator); !reader.AtEnd() && rows.size() < most;) {
        Row row = reader.Next();
        if (!row.fields.empty()) rows.push_back(std::move(row));
    }
    return rows;
}

Separator FindSeparator(std::string_view text, std::size_t least, bool commaIsDecimal) {
    constexpr std::size_t kRows = 50;
    Separator best;
    std::size_t bestRows = 0;
    for (const char sign : {'\t', ';', '|', ',', ' '}) {
        if (sign == ',' && commaIsDecimal) continue;
        const auto rows = SplitRows(text, sign, kRows);
        std::size_t wide = 0;
        bool equal = !rows.empty();
        for (const Row& row : rows) {
            const auto behindFirst = std::span(row.fields).subspan(1);
            if (row.fields.size() >= least &&
                std::ranges::none_of(behindFirst, HasNumbersApart, &Field::text)) {
                ++wide;
                equal &= row.fields.size() == rows.front().fields.size();
            } else {
                equal = false;
            }
        }
        if (equal) return {sign, true};
        if (wide > bestRows) {
            best.sign = sign;
            bestRows = wide;
        }
    }
    return best;
}

TableNumbers::Parsed TableNumbers::Parse(std::string_view text) const {
    const auto commas = std::ranges::count(text, ',');
    const auto points = std::ranges::count(text, '.');
    if (commasSeparate_ || (commas == 0 && points <= 1)) {
        return {ParseNumber(text), points == 1 ? '.' : '\0'};
    }
    if (commas == 1 && points == 0) return {ParseNumber(text, true), ','};
    std::string_view digits = text;
    if (digits.starts_with('-') || digits.starts_with('+')) digits.remove_prefix(1);
    if (commas == 0 || points == 0) {  // several of one sign: groups only
        const char groups = commas > 0 ? ',' : '.';
        if (!HasGroups(digits, groups)) return {};
        return {ParseNumber(Without(text, groups)), commas > 0 ? '.' : ','};
    }
    const std::size_t last = digits.find_last_of(",.");
    const char sign = digits[last];
    const char groups = sign == ',' ? '.' : ',';
    if (!HasGroups(digits.substr(0, last), groups)) return {};
    return {ParseNumber(Without(text, groups), sign == ','), sign};
}

std::optional<double> TableNumbers::Read(const Field& field, PointTaker& taker) {
    const auto [value, sign] = Parse(field.text);
    if (!value) {
        taker.Add(field.text.empty() ? Problem::Kind::kMissingField : Problem::Kind::kNotANumber,
                  field.raw);
        return std::nullopt;
    }
    if (sign == '\0') return value;
    if (sign_ == '\0') {
        sign_ = sign;
        line_ = taker.LineOf(field.raw);
    } else if (sign != sign_) {
        taker.Add(Problem::Kind::kMixedDecimals, field.raw, line_);
        return std::nullopt;
    }
    return value;
}

}  // namespace kv_tr
