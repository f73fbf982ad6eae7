// Control points as text: one point a line, an identifier and four coordinates.
#include "kv_tr/files/control_point_file.h"

#include <algorithm>
#include <array>

#include "kv_tr/files/open_text.h"
#include "kv_tr/files/text_lines.h"
#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/decimal_commas.h"

namespace kv_tr {
namespace {

/// The problem of a field of the line, which is empty where fields are missing.
Problem BadField(std::string_view line, std::string_view field,
                 Problem::Kind kind = Problem::Kind::kNotANumber) {
    const auto before = line.substr(0, static_cast<std::size_t>(field.data() - line.data()));
    return {.kind = field.empty() ? Problem::Kind::kMissingField : kind,
            .column = DisplayWidth(before) + 1};
}

/// Takes a point off a line, as ReadControlPoint does.
std::optional<Problem> TakeControlPoint(std::string_view line, Comma comma, std::string_view& rest,
                                        ControlPoint& point) {
    if (comma == Comma::kSuspect && line.find(',') != line.npos &&
        HasDecimalCommas(WithoutIdentifier(line), 4))
        return Problem{.kind = Problem::Kind::kDecimalCommas};
    const bool commaIsDecimal = comma == Comma::kDecimalSign;
    point.id = NextField(rest, commaIsDecimal);
    for (double* coordinate : {&point.source.first, &point.source.second, &point.destination.first,
                               &point.destination.second}) {
        const auto field = NextField(rest, commaIsDecimal);
        const auto number = ParseNumber(field, commaIsDecimal);
        if (!number) return BadField(line, field);
        *coordinate = *number;
    }
    return std::nullopt;
}

/// Takes one standard deviation, or two, off what follows the coordinates of a line.
std::optional<Problem> TakeSigmas(std::string_view line, Comma comma, std::string_view rest,
                                  Point& sigmas) {
    const bool commaIsDecimal = comma == Comma::kDecimalSign;
    for (double* sigma : {&sigmas.first, &sigmas.second}) {
        const auto field = NextField(rest, commaIsDecimal);
        if (field.empty() && sigma == &sigmas.second) {
            sigmas.second = sigmas.first;
            break;
        }
        const auto number = ParseNumber(field, commaIsDecimal);
        if (!number) return BadField(line, field);
        if (*number <= 0.0) return BadField(line, field, Problem::Kind::kNotPositive);
        *sigma = *number;
    }
    return std::nullopt;
}

}  // namespace

std::optional<Problem> ReadControlPoint(std::string_view line, Comma comma, ControlPoint& point) {
    std::string_view rest = line;
    return TakeControlPoint(line, comma, rest, point);
}

PointReading ReadControlPoints(std::istream& file, const PointFileStyle& style) {
    PointReading reading;
    std::uint64_t number = 0;
    try {
        TextLines lines(*file.rdbuf(), style.codePage);
        for (; reading.problems.size() < PointReading::kMostProblems && !lines.AtEnd();) {
            const std::string line = lines.Next();
            number = lines.Number();
            if (line.empty()) continue;
            ControlPoint point;
            Point sigmas;
            std::string_view rest = line;
            auto problem = TakeControlPoint(line, style.comma, rest, point);
            if (!problem && style.sigmas) problem = TakeSigmas(line, style.comma, rest, sigmas);
            if (problem) {
                if (reading.Complete()) reading.partial = std::move(point);
                problem->line = number;
                problem->text = line;
                reading.problems.push_back(std::move(*problem));
            } else if (reading.Complete()) {
                reading.points.push_back(std::move(point));
                if (style.sigmas) reading.sigmas.push_back(sigmas);
            }
        }
    } catch (const TextError& error) {
        reading.problems.push_back(ProblemOf(error, number + 1));
    }
    return reading;
}

PointReading ReadControlPointFile(const std::string& fileName, const PointFileStyle& style) {
    const PointSource source = PointSourceOf(fileName);  // before somebody changes it
    PointReading reading;
    if (auto file = OpenText(fileName)) {
        reading = ReadControlPoints(*file, style);
        reading.source = source;
        return reading;
    }
    reading.problems.push_back({.kind = Problem::Kind::kNotOpened});
    return reading;
}

std::string IdentifierField(const std::string& id) {
    if (id.empty()) return "_";
    std::string field = WithoutControls(id);
    std::ranges::replace_if(
        field, [](char c) { return std::string_view(" ,;'\"").find(c) != std::string_view::npos; },
        '_');
    return field;
}

std::string ListControlPoints(std::span<const ControlPoint> points, NumberStyle style) {
    std::string listing;
    for (const ControlPoint& point : points) {
        listing += PadLeft(IdentifierField(point.id), 20);
        for (const double coordinate : {point.source.first, point.source.second,
                                        point.destination.first, point.destination.second}) {
            listing += PadLeft(FixedText(coordinate, 3, style), 15);
        }
        listing += "\r\n";
    }
    return listing;
}

}  // namespace kv_tr
