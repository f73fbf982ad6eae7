// Control points in columns, with or without a header.
#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "kv_tr/interchange/field_table.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

constexpr std::array<std::string_view, 4> kCoordinates{"src_first", "src_second", "dst_first",
                                                       "dst_second"};
constexpr std::string_view kNoColumn = "-";

struct Alias {
    std::string_view column;
    std::string_view name;  // in lower case, without blanks, "_" and "-"
};

constexpr Alias kAliases[] = {
    // clang-format off
    {"id", "id"}, {"id", "pt"}, {"id", "point"}, {"id", "name"}, {"id", "psz"}, {"id", "nr"},
    {"src_first", "srcfirst"}, {"src_first", "y1"}, {"src_first", "xsrc"}, {"src_first", "sourcex"},
    {"src_first", "pixelx"}, {"src_first", "fromx"},
    {"src_second", "srcsecond"}, {"src_second", "x1"}, {"src_second", "ysrc"}, {"src_second", "sourcey"},
    {"src_second", "pixely"}, {"src_second", "fromy"},
    {"dst_first", "dstfirst"}, {"dst_first", "y2"}, {"dst_first", "xdst"}, {"dst_first", "mapx"}, {"dst_first", "tox"},
    {"dst_second", "dstsecond"}, {"dst_second", "x2"}, {"dst_second", "ydst"}, {"dst_second", "mapy"},
    {"dst_second", "toy"},
    {"use", "use"}, {"use", "enable"}, {"use", "enabled"}, {"use", "status"},
    {"sigma_first", "sigmafirst"}, {"sigma_first", "sigma"}, {"sigma_second", "sigmasecond"},
    // clang-format on
};

std::string Lowered(std::string_view text) {
    std::string lowered(text);
    std::ranges::transform(lowered, lowered.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lowered;
}

bool IsCoordinate(std::string_view column) {
    return std::ranges::find(kCoordinates, column) != kCoordinates.end();
}

/// Where the coordinates of a row without a header begin: behind an identifier, if there is one.
std::size_t FirstNumber(const Row& row) { return row.fields.size() > 4 ? 1 : 0; }

bool HasNumbersInPlace(const Row& row, const TableNumbers& numbers) {
    if (row.fields.size() < 4) return false;
    const auto fields = std::span(row.fields).subspan(FirstNumber(row), 4);
    return std::ranges::all_of(
        fields, [&numbers](const Field& field) { return numbers.MayBeNumber(field.text); });
}

std::vector<std::string> NamedColumns(const Row& header) {
    std::vector<std::string> columns;
    for (const Field& field : header.fields) columns.emplace_back(ColumnNamed(field.text));
    return columns;
}

auto CoordinatesAmong(const std::vector<std::string>& columns) {
    return std::ranges::count_if(columns, IsCoordinate);
}

/// Whether the first row is a header: not all that should be numbers are, and it names coordinates
/// or has no number at all.
bool IsHeader(const Row& row, const TableNumbers& numbers) {
    const auto isNumber = [&numbers](const Field& field) {
        return numbers.MayBeNumber(field.text);
    };
    return !HasNumbersInPlace(row, numbers) &&
           (CoordinatesAmong(NamedColumns(row)) > 0 || std::ranges::none_of(row.fields, isNumber));
}

std::vector<std::string> UsualColumns(const Row& row, bool sigmas) {
    std::vector<std::string> columns(kCoordinates.begin(), kCoordinates.end());
    if (FirstNumber(row) == 1) columns.insert(columns.begin(), "id");
    if (sigmas) columns.insert(columns.end(), {"sigma_first", "sigma_second"});
    columns.resize(row.fields.size(), std::string(kNoColumn));
    return columns;
}

/// Whether the numbers of all rows are integers, as the halves of numbers with decimal commas are.
bool MayBeHalves(const std::vector<Row>& rows) {
    const auto isInteger = [](const Field& field) {
        return !field.text.empty() &&
               field.text.find_first_not_of("+-0123456789") == std::string::npos;
    };
    return std::ranges::all_of(rows, [&isInteger](const Row& row) {
        const std::size_t count = row.fields.size();
        if (count != 8 && count != 9) return false;
        return std::ranges::all_of(std::span(row.fields).subspan(count - 8), isInteger);
    });
}

std::optional<bool> MarkOf(std::string_view text) {
    const std::string word = Lowered(text);
    if (word.empty() || word == "1" || word == "true" || word == "yes") return true;
    if (word == "0" || word == "false" || word == "no") return false;
    return std::nullopt;
}

/// Makes points of the rows of a table.
class RowTaker {
public:
    RowTaker(PointTaker& taker, TableNumbers& numbers, PointFile& file)
        : taker_(taker), numbers_(numbers), file_(file) {
        for (const std::string_view column : kCoordinates) places_.push_back(Find(column));
        id_ = Find("id");
        use_ = Find("use");
        sigmaFirst_ = Find("sigma_first");
        sigmaSecond_ = Find("sigma_second");
    }

    void Take(const Row& row) {
        ControlPoint point;
        bool good = true;
        const auto read = [&](std::size_t place, double& value) {
            const auto number = numbers_.Read(row.fields[place], taker_);
            good &= number.has_value();
            value = number.value_or(0.0);
        };
        read(places_[0], point.source.first);
        read(places_[1], point.source.second);
        read(places_[2], point.destination.first);
        read(places_[3], point.destination.second);
        Point sigma;
        if (sigmaFirst_ != kNowhere) {
            const auto positive = [&](std::size_t place, double& value) {
                read(place, value);
                if (!good || value > 0.0) return;
                taker_.Add(Problem::Kind::kNotPositive, row.fields[place].raw);
                good = false;
            };
            positive(sigmaFirst_, sigma.first);
            sigma.second = sigma.first;
            if (sigmaSecond_ != kNowhere) positive(sigmaSecond_, sigma.second);
        }
        if (use_ != kNowhere) {
            const Field& field = row.fields[use_];
            const auto mark = MarkOf(field.text);
            if (!mark) taker_.Add(Problem::Kind::kBadMark, field.raw);
            point.used = mark.value_or(true);
        }
        if (!good || !taker_.Complete()) return;
        point.id = id_ != kNowhere ? row.fields[id_].text : std::to_string(file_.points.size() + 1);
        file_.points.push_back(std::move(point));
        if (sigmaFirst_ != kNowhere) file_.sigmas.push_back(sigma);
    }

private:
    static constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

    std::size_t Find(std::string_view column) const {
        const auto& columns = file_.layout.columns;
        const auto found = std::ranges::find(columns, column);
        return found == columns.end() ? kNowhere
                                      : static_cast<std::size_t>(found - columns.begin());
    }

    PointTaker& taker_;
    TableNumbers& numbers_;
    PointFile& file_;
    std::vector<std::size_t> places_;
    std::size_t id_, use_, sigmaFirst_, sigmaSecond_;
};

}  // namespace

std::string_view ColumnNamed(std::string_view name) {
    std::string key = Lowered(name);
    std::erase_if(key, [](char c) { return c == ' ' || c == '_' || c == '-'; });
    const auto found = std::ranges::find(kAliases, key, &Alias::name);
    return found == std::end(kAliases) ? kNoColumn : found->column;
}

bool IsCsv(std::string_view text) {
    const auto [separator, equal] = FindSeparator(text, 4);
    if (separator == '\0') return false;
    const Row first = SplitRows(text, separator, 1).front();
    const TableNumbers numbers(separator, false);
    if (HasNumbersInPlace(first, numbers)) return equal;
    return CoordinatesAmong(NamedColumns(first)) > 1;
}

bool HasHalvedNumbers(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    const auto commas = std::ranges::count(text.substr(0, text.find_first_of("\r\n")), ',');
    if (commas != 7 && commas != 8) return false;
    const auto [separator, equal] = FindSeparator(text, 8);
    return equal && separator == ',' && MayBeHalves(SplitRows(text, separator, 50));
}

void ReadCsv(std::string_view text, const PointReadingOptions& options, PointFile& file) {
    const bool commaIsDecimal = options.comma == Comma::kDecimalSign;
    PointTaker taker(text, file.problems);
    const char separator = options.separator.value_or(FindSeparator(text, 4, commaIsDecimal).sign);
    auto rows = SplitRows(text, separator, std::numeric_limits<std::size_t>::max());
    if (rows.empty()) return;
    if (separator == '\0') {
        taker.Add(Problem::Kind::kUnequalFields, rows.front().raw);
        return;
    }
    TableNumbers numbers(separator, commaIsDecimal);
    PointLayout& layout = file.layout;
    layout.separator = separator;
    layout.header = options.header.value_or(IsHeader(rows.front(), numbers));
    const Row first = rows.front();
    if (layout.header || !options.columns.empty()) {
        layout.columns = options.columns.empty() ? NamedColumns(first) : options.columns;
        layout.columns.resize(first.fields.size(), std::string(kNoColumn));
        for (const std::string_view column : kCoordinates) {
            if (std::ranges::count(layout.columns, column) == 1) continue;
            taker.Add(Problem::Kind::kBadHeader, first.raw);
            return;
        }
        if (layout.header) rows.erase(rows.begin());
    } else {
        if (first.fields.size() < 4) {
            taker.Add(Problem::Kind::kMissingField, first.raw);
            return;
        }
        layout.columns = UsualColumns(first, options.sigmas);
        if (separator == ',' && MayBeHalves(rows)) {
            taker.Add(Problem::Kind::kAmbiguousCommas, first.raw);
            return;
        }
    }
    RowTaker points(taker, numbers, file);
    for (const Row& row : rows) {
        if (taker.IsFull()) break;
        if (row.fields.size() == first.fields.size()) {
            points.Take(row);
        } else {
            taker.Add(Problem::Kind::kUnequalFields, row.raw);
        }
    }
    layout.decimalSign = numbers.DecimalSign();
}

}  // namespace kv_tr
