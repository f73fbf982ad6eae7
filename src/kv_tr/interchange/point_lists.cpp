// Two lists of coordinates, one a system, joined to control points by their identifiers.
#include "kv_tr/interchange/point_lists.h"

#include <limits>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include "kv_tr/files/open_text.h"
#include "kv_tr/interchange/field_table.h"

namespace kv_tr {
namespace {

/// Reads the rows of a list into it.
void ReadRows(std::string_view text, const PointReadingOptions& options, PointList& list) {
    constexpr std::size_t kLeast = 3;
    const bool commaIsDecimal = options.comma == Comma::kDecimalSign;
    PointTaker taker(text, list.problems);
    const char separator =
        options.separator.value_or(FindSeparator(text, kLeast, commaIsDecimal).sign);
    const auto rows = SplitRows(text, separator, std::numeric_limits<std::size_t>::max());
    if (rows.empty()) return;
    if (separator == '\0') {
        taker.Add(Problem::Kind::kUnequalFields, rows.front().raw);
        return;
    }
    TableNumbers numbers(separator, commaIsDecimal);
    const Row& first = rows.front();
    const auto isNumber = [&](std::size_t i) {
        return i < first.fields.size() && numbers.MayBeNumber(first.fields[i].text);
    };
    list.layout.separator = separator;
    list.layout.header = !isNumber(1) && !isNumber(2);
    list.layout.columns = {"id", "first", "second"};
    std::size_t sigmaColumns = 0;
    for (std::size_t i = kLeast; i < first.fields.size() && sigmaColumns < 2; ++i) {
        const auto named = list.layout.header ? ColumnNamed(first.fields[i].text) : "-";
        if (!options.sigmas && !named.starts_with("sigma")) break;
        list.layout.columns.emplace_back(sigmaColumns++ == 0 ? "sigma_first" : "sigma_second");
    }
    list.hasSigmas = sigmaColumns > 0;
    for (const Row& row : std::span(rows).subspan(list.layout.header ? 1 : 0)) {
        if (taker.IsFull()) break;
        if (row.fields.size() < kLeast + sigmaColumns || (options.sigmas && sigmaColumns == 0)) {
            taker.Add(Problem::Kind::kMissingField, row.raw.substr(row.raw.size()));
            continue;
        }
        const auto x = numbers.Read(row.fields[1], taker);
        const auto y = numbers.Read(row.fields[2], taker);
        Point sigma;
        for (std::size_t i = 0; i < sigmaColumns; ++i) {
            const Field& field = row.fields[kLeast + i];
            const auto number = numbers.Read(field, taker);
            if (number && *number <= 0.0) taker.Add(Problem::Kind::kNotPositive, field.raw);
            if (i == 0) sigma.first = number.value_or(0.0);
            sigma.second = number.value_or(0.0);
        }
        if (x && y && taker.Complete())
            list.points.push_back({row.fields[0].text, {*x, *y}, sigma});
    }
    list.layout.decimalSign = numbers.DecimalSign();
}

/// The points of a list by their identifiers; null for one that the list has more than once.
std::unordered_map<std::string_view, const ListedPoint*> ByIdentifier(const PointList& list) {
    std::unordered_map<std::string_view, const ListedPoint*> points;
    for (const ListedPoint& point : list.points) {
        const auto [place, added] = points.try_emplace(point.id, &point);
        if (!added) place->second = nullptr;
    }
    return points;
}

}  // namespace

PointList ReadPointList(std::string_view bytes, const PointReadingOptions& options) {
    PointList list;
    ReadRows(DecodedText(bytes, options.codePage, list.layout.encoding), options, list);
    return list;
}

PointList ReadPointListOfFile(const std::string& fileName, const PointReadingOptions& options) {
    PointList list;
    auto stream = OpenText(fileName);
    if (!stream) {
        list.problems.push_back({.kind = Problem::Kind::kNotOpened});
        return list;
    }
    std::string bytes;
    if (!TakeBytes(*stream, bytes)) {
        list.problems.push_back({.kind = Problem::Kind::kUnreadable, .line = 1});
        return list;
    }
    return ReadPointList(bytes, options);
}

JoinedLists JoinByIdentifier(const PointList& source, const PointList& destination) {
    const auto from = ByIdentifier(source);
    const auto to = ByIdentifier(destination);
    JoinedLists joined;
    const auto isRepeated = [&](const std::string& id) {
        const auto inSource = from.find(id);
        const auto inDestination = to.find(id);
        return (inSource != from.end() && inSource->second == nullptr) ||
               (inDestination != to.end() && inDestination->second == nullptr);
    };
    std::unordered_set<std::string_view> told;
    const auto tellRepeated = [&](const std::string& id) {
        if (told.insert(id).second) joined.repeated.push_back(id);
    };
    for (const auto& [id, point, sigma] : source.points) {
        if (isRepeated(id)) {
            tellRepeated(id);
        } else if (const auto found = to.find(id); found == to.end()) {
            joined.onlyInSource.push_back(id);
        } else {
            joined.points.push_back({id, point, found->second->point});
            if (destination.hasSigmas) joined.sigmas.push_back(found->second->sigma);
        }
    }
    for (const auto& [id, point, sigma] : destination.points) {
        if (isRepeated(id)) {
            tellRepeated(id);
        } else if (!from.contains(id)) {
            joined.onlyInDestination.push_back(id);
        }
    }
    return joined;
}

}  // namespace kv_tr
