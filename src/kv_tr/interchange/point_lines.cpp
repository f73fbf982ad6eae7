// Control points in lines: QGIS, GDAL options, ESRI link and CAD world files, GRASS.
#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "kv_tr/interchange/point_readers.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// An identifier where the format has none: the number of the point.
std::string NextNumber(const PointFile& file) { return std::to_string(file.points.size() + 1); }

/// Takes a point if all problems so far allow it.
void Take(PointTaker& taker, PointFile& file, std::optional<ControlPoint> point) {
    if (!point || !taker.Complete()) return;
    if (point->id.empty()) point->id = NextNumber(file);
    file.points.push_back(std::move(*point));
}

}  // namespace

bool IsNumber(std::string_view field) { return ParseNumber(field).has_value(); }

Place PlaceOf(std::string_view text, std::string_view part) {
    const auto offset = static_cast<std::size_t>(part.data() - text.data());
    Place place;
    std::string_view rest = text;
    for (;; ++place.line) {
        const auto begin = text.size() - rest.size();
        if (rest.empty()) return place;
        const auto [line, ending] = TakeLine(rest);
        if (offset <= begin + line.size() || rest.empty()) {
            place.column = DisplayWidth(line.substr(0, offset - begin)) + 1;
            return place;
        }
    }
}

void PointTaker::Add(Problem::Kind kind, std::string_view part, std::uint64_t otherLine) {
    if (IsFull()) return;
    const auto [line, column] = PlaceOf(text_, part);
    problems_.push_back({.kind = kind,
                         .line = line,
                         .column = column,
                         .text = std::string(part),
                         .otherLine = otherLine});
}

std::optional<double> PointTaker::Number(std::string_view part) {
    const auto number = ParseNumber(part);
    if (!number)
        Add(part.empty() ? Problem::Kind::kMissingField : Problem::Kind::kNotANumber, part);
    return number;
}

std::optional<ControlPoint> PointTaker::PointOf(std::span<const std::string_view> parts,
                                                std::string_view line) {
    if (parts.size() < 4) {
        Add(Problem::Kind::kMissingField, line.substr(line.size()));
        return std::nullopt;
    }
    std::array<double, 4> numbers{};
    bool good = true;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto number = Number(parts[i]);
        good &= number.has_value();
        numbers[i] = number.value_or(0.0);
    }
    if (!good) return std::nullopt;
    return ControlPoint{{}, {numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

std::vector<std::string_view> BlankFields(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!(line = Trimmed(line)).empty()) {
        const auto field = line.substr(0, line.find_first_of(kBlanks));
        fields.push_back(field);
        line.remove_prefix(field.size());
    }
    return fields;
}

std::vector<std::string_view> FieldsBetween(std::string_view line, char separator) {
    std::vector<std::string_view> fields;
    for (;;) {
        const auto field = line.substr(0, line.find(separator));
        fields.push_back(Trimmed(field));
        if (field.size() == line.size()) return fields;
        line.remove_prefix(field.size() + 1);
    }
}

std::vector<std::string_view> DataLines(std::string_view text, Comments comments) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto line = TakeLine(text).text;
        const auto content = Trimmed(line);
        const bool isComment = comments == Comments::kSkipped && content.starts_with('#');
        if (!content.empty() && !isComment) lines.push_back(line);
    }
    return lines;
}

void ReadQgis(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"dst_first", "dst_second", "src_first", "src_second", "use"};
    constexpr std::string_view kCrs = "#CRS: ";
    std::string_view rest = text;
    std::string_view line = TakeLine(rest).text;
    if (const auto crs = line.find(kCrs); crs != line.npos) {
        file.crs = line.substr(crs + kCrs.size());
    } else {
        rest = text;
    }
    for (bool first = true; !rest.empty() && !taker.IsFull();) {
        line = TakeLine(rest).text;
        if (Trimmed(line).empty()) continue;
        const bool commas = line.find(',') != line.npos;
        file.layout.separator = commas ? ',' : '\t';
        auto fields = FieldsBetween(line, file.layout.separator);
        if (std::exchange(first, false) && std::ranges::count_if(fields, IsNumber) < 4) {
            file.layout.header = true;
            continue;
        }
        if (fields.size() >= 4) std::rotate(fields.begin(), fields.begin() + 2, fields.begin() + 4);
        auto point = taker.PointOf(fields, line);
        if (fields.size() > 4) {
            const auto mark = ParseNumber(fields[4]);
            if (!mark || (*mark != 0.0 && *mark != 1.0)) {
                taker.Add(Problem::Kind::kBadMark, fields[4]);
            } else if (point) {
                point->used = *mark == 1.0;
            }
        }
        Take(taker, file, std::move(point));
    }
}

void ReadGdal(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"-gcp", "src_first", "src_second", "dst_first", "dst_second"};
    file.layout.separator = ' ';
    std::vector<std::string_view> tokens;
    for (const auto line : DataLines(text)) {
        for (const auto token : BlankFields(line)) {
            if (token != "\\" && token != "^") tokens.push_back(token);  // the line goes on
        }
    }
    const std::span all(tokens);
    for (std::size_t i = 0; i < tokens.size() && !taker.IsFull(); ++i) {
        if (tokens[i] != "-gcp") continue;
        auto numbers = all.subspan(i + 1, std::min<std::size_t>(4, tokens.size() - i - 1));
        const auto next = std::ranges::find(numbers, "-gcp");
        numbers = numbers.first(static_cast<std::size_t>(next - numbers.begin()));
        const auto last = numbers.empty() ? tokens[i] : numbers.back();
        Take(taker, file, taker.PointOf(numbers, last));
    }
    if (file.points.empty() && taker.Complete())
        taker.Add(Problem::Kind::kMissingField, text.substr(0, 0));
}

void ReadEsriLinks(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"src_first", "src_second", "dst_first", "dst_second"};
    bool named = false;
    for (const auto line : DataLines(text, Comments::kKept)) {
        if (taker.IsFull()) break;
        const bool tabs = line.find('\t') != line.npos;
        file.layout.separator = tabs ? '\t' : ' ';
        const auto fields = tabs ? FieldsBetween(line, '\t') : BlankFields(line);
        const std::size_t first = fields.size() > 4 ? 1 : 0;
        named |= first == 1;
        auto point = taker.PointOf(std::span(fields).subspan(first), line);
        if (point && first == 1) point->id = fields[0];
        Take(taker, file, std::move(point));
    }
    if (named) file.layout.columns.insert(file.layout.columns.begin(), "id");
}

void ReadCadWorld(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"src_first", "src_second", "dst_first", "dst_second"};
    file.layout.separator = ',';
    for (const auto line : DataLines(text)) {
        if (taker.IsFull()) break;
        if (file.points.size() == 2) {
            taker.Add(Problem::Kind::kDamaged, line);
            break;
        }
        std::vector<std::string_view> numbers;
        for (const auto pair : BlankFields(line)) {
            const auto fields = FieldsBetween(pair, ',');
            if (fields.size() != 2) taker.Add(Problem::Kind::kDamaged, pair);
            numbers.insert(numbers.end(), fields.begin(), fields.end());
        }
        Take(taker, file, taker.PointOf(numbers, line));
    }
}

void ReadGrass(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"src_first", "src_second", "dst_first", "dst_second", "use"};
    file.layout.separator = ' ';
    for (const auto line : DataLines(text)) {
        if (taker.IsFull()) break;
        const auto fields = BlankFields(line);
        auto point = taker.PointOf(fields, line);
        const auto status = fields.size() > 4 ? taker.Number(fields[4]) : 1.0;
        if (!point || !status || *status < 0.0) continue;  // negative: deleted
        point->used = *status != 0.0;
        Take(taker, file, std::move(point));
    }
}

}  // namespace kv_tr
