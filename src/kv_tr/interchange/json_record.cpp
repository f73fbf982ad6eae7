// The record of a transformation as JSON.
#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/text/version.h"

namespace kv_tr {
namespace {

using Json = nlohmann::json;

constexpr const char* kFormat = "plane-transformation";
constexpr int kVersion = 1;

// Writing. The library's own writer of numbers does not promise the shortest text.

/// In letters of ASCII, so that the code page of a file does not matter.
std::string Quoted(const std::string& text) {
    return Json(text).dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string QuotedOrNull(const std::string& text) { return text.empty() ? "null" : Quoted(text); }

std::string NumberOrNull(std::optional<double> value) {
    return value ? ShortestText(*value) : "null";
}

template <class Values>
std::string Numbers(const Values& values) {
    std::string text;
    for (const double value : values) text += (text.empty() ? "" : ", ") + ShortestText(value);
    return "[" + text + "]";
}

std::string Coefficients(const Transformation::Series& series, int count) {
    return Numbers(std::span(series).subspan(1, static_cast<std::size_t>(count)));
}

std::string PairText(Point point) { return Numbers(std::array{point.first, point.second}); }

std::string PointTexts(const std::vector<Point>& points) {
    std::string text;
    for (const Point& point : points) text += (text.empty() ? "" : ", ") + PairText(point);
    return "[" + text + "]";
}

std::string FitText(const FitFigures& fit) {
    return "{\"n\": " + std::to_string(fit.points) + ", \"used\": " + std::to_string(fit.used) +
           ", \"unknowns\": " + std::to_string(fit.unknowns) +
           ", \"redundancy\": " + std::to_string(fit.redundancy) +
           ", \"s0\": " + NumberOrNull(fit.sigma0) + ", \"rms\": " + NumberOrNull(fit.rms) + "}";
}

/// The least and the greatest coordinates of the corners.
std::vector<Point> ExtentOf(const std::vector<Point>& hull) {
    const auto [firstLeast, firstGreatest] = std::ranges::minmax(hull, {}, &Point::first);
    const auto [secondLeast, secondGreatest] = std::ranges::minmax(hull, {}, &Point::second);
    return {{firstLeast.first, secondLeast.second}, {firstGreatest.first, secondGreatest.second}};
}

// Reading.

/// Thrown out of the reading of a record.
struct Unsuitable {
    std::string member;
};

double NumberOf(const Json& json, const std::string& member) {
    if (!json.is_number()) throw Unsuitable{member};
    return json.get<double>();
}

std::int64_t IntegerOf(const Json& json, const std::string& member) {
    const double number = NumberOf(json, member);
    if (std::abs(number) > std::numeric_limits<std::int32_t>::max() ||
        number != std::floor(number)) {
        throw Unsuitable{member};
    }
    return static_cast<std::int64_t>(number);
}

/// A member that may be null or left out.
const Json* Optional(const Json& object, const char* member) {
    const auto found = object.find(member);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

const Json& Required(const Json& object, const char* member) {
    const Json* found = Optional(object, member);
    if (found == nullptr) throw Unsuitable{member};
    return *found;
}

std::vector<double> NumbersOf(const Json& json, const std::string& member, int count) {
    if (!json.is_array() || json.size() != static_cast<std::size_t>(count))
        throw Unsuitable{member};
    std::vector<double> numbers;
    for (const Json& item : json) numbers.push_back(NumberOf(item, member));
    return numbers;
}

std::string StringOf(const Json& object, const char* member) {
    const Json* found = Optional(object, member);
    if (found == nullptr) return {};
    if (!found->is_string()) throw Unsuitable{member};
    return found->get<std::string>();
}

AxisMapping AxesOf(const Json& object, const char* member) {
    if (Optional(object, member) == nullptr) return AxisMapping::kEn;
    const auto axes = AxesNamed(StringOf(object, member));
    if (!axes) throw Unsuitable{member};
    return *axes;
}

std::vector<Point> PointsOf(const Json& json, const char* member) {
    if (!json.is_array()) throw Unsuitable{member};
    std::vector<Point> points;
    for (const Json& item : json) {
        const auto pair = NumbersOf(item, member, 2);
        points.push_back({pair[0], pair[1]});
    }
    return points;
}

/// The hull, or the corners of the extent where only that is known.
std::vector<Point> HullOf(const Json& object) {
    if (const Json* hull = Optional(object, "hull")) return PointsOf(*hull, "hull");
    const Json* extent = Optional(object, "extent");
    if (extent == nullptr) return {};
    const auto corners = PointsOf(*extent, "extent");
    if (corners.size() != 2) throw Unsuitable{"extent"};
    const auto& [least, greatest] = std::pair(corners[0], corners[1]);
    return {least, {greatest.first, least.second}, greatest, {least.first, greatest.second}};
}

std::optional<FitFigures> FitOf(const Json& object) {
    const Json* json = Optional(object, "fit");
    if (json == nullptr) return std::nullopt;
    if (!json->is_object()) throw Unsuitable{"fit"};
    const auto integer = [json](const char* member, int least) {
        const auto value = IntegerOf(Required(*json, member), std::string("fit.") + member);
        if (value < least) throw Unsuitable{std::string("fit.") + member};
        return value;
    };
    const auto number = [json](const char* member) -> std::optional<double> {
        const Json* found = Optional(*json, member);
        if (found == nullptr) return std::nullopt;
        return NumberOf(*found, std::string("fit.") + member);
    };
    constexpr int kAny = std::numeric_limits<std::int32_t>::min();
    return FitFigures{.points = static_cast<std::size_t>(integer("n", 0)),
                      .used = static_cast<std::size_t>(integer("used", 0)),
                      .unknowns = static_cast<int>(integer("unknowns", 0)),
                      .redundancy = static_cast<int>(integer("redundancy", kAny)),
                      .sigma0 = number("s0"),
                      .rms = number("rms")};
}

Transformation TransformationOf(const Json& object) {
    const auto number = IntegerOf(Required(object, "type"), "type");
    Transformation t{.type = static_cast<Type>(number), .a = {}, .b = {}};
    if (!IsNamed(t.type)) throw Unsuitable{"type"};
    if (!IsPolynomial(t.type)) {
        const auto six = NumbersOf(Required(object, "linear"), "linear", 6);
        std::copy_n(six.begin(), 3, t.a.begin());
        std::copy_n(six.begin() + 3, 3, t.b.begin());
        return t;
    }
    const auto origin = NumbersOf(Required(object, "origin"), "origin", 2);
    t.a[0] = origin[0];
    t.b[0] = origin[1];
    std::ranges::copy(NumbersOf(Required(object, "a"), "a", TermCount(t.type)), t.a.begin() + 1);
    std::ranges::copy(NumbersOf(Required(object, "b"), "b", TermCount(t.type)), t.b.begin() + 1);
    return t;
}

ImportedTransformation Refused(ImportProblem problem) {
    return {.record = {}, .problem = std::move(problem)};
}

ImportedTransformation RecordOf(const Json& json) {
    if (!json.is_object() || Optional(json, "format") == nullptr || json["format"] != kFormat)
        throw Unsuitable{"format"};
    const auto version = IntegerOf(Required(json, "version"), "version");
    if (version > kVersion) {
        return Refused({.kind = ImportProblem::Kind::kNewer, .text = std::to_string(version)});
    }
    if (version < 1) throw Unsuitable{"version"};
    return {.record = {.transformation = TransformationOf(json),
                       .sourceAxes = AxesOf(json, "source_axes"),
                       .targetAxes = AxesOf(json, "target_axes"),
                       .sourceCrs = StringOf(json, "source_crs"),
                       .targetCrs = StringOf(json, "target_crs"),
                       .madeFrom = StringOf(json, "made_from"),
                       .fit = FitOf(json),
                       .hull = HullOf(json)}};
}

}  // namespace

std::string JsonRecordText(const TransformationRecord& record) {
    const auto& [type, a, b] = record.transformation;
    const bool polynomial = IsPolynomial(type);
    const auto& hull = record.hull;
    const std::pair<const char*, std::string> members[] = {
        {"format", Quoted(kFormat)},
        {"version", std::to_string(kVersion)},
        {"program", Quoted(std::string("KV_Tr ") + Version())},
        {"type", std::to_string(kv_tr::NumberOf(type))},
        {"type_name", Quoted(TypeName(type, TextsIn(kEnglish)))},
        {"origin", polynomial ? PairText({a[0], b[0]}) : "null"},
        {"a", polynomial ? Coefficients(a, TermCount(type)) : "null"},
        {"b", polynomial ? Coefficients(b, TermCount(type)) : "null"},
        {"linear", polynomial ? "null" : Numbers(std::array{a[0], a[1], a[2], b[0], b[1], b[2]})},
        {"source_axes", Quoted(std::string(AxisWord(record.sourceAxes)))},
        {"target_axes", Quoted(std::string(AxisWord(record.targetAxes)))},
        {"source_crs", QuotedOrNull(record.sourceCrs)},
        {"target_crs", QuotedOrNull(record.targetCrs)},
        {"made_from", QuotedOrNull(record.madeFrom)},
        {"fit", record.fit ? FitText(*record.fit) : "null"},
        {"hull", hull.empty() ? "null" : PointTexts(hull)},
        {"extent", hull.empty() ? "null" : PointTexts(ExtentOf(hull))},
    };
    std::string text;
    for (const auto& [name, value] : members)
        text += (text.empty() ? "" : ",\n  ") + Quoted(name) + ": " + value;
    return "{\n  " + text + "\n}\n";
}

ImportedTransformation ReadJsonRecord(std::string_view text) {
    try {
        return RecordOf(Json::parse(text));
    } catch (const Unsuitable& unsuitable) {
        return Refused({.kind = ImportProblem::Kind::kUnsuitable, .text = unsuitable.member});
    } catch (const Json::parse_error& error) {
        const auto before = text.substr(0, error.byte > 0 ? error.byte - 1 : 0);
        const auto lineBreak = before.rfind('\n');
        return Refused(
            {.kind = ImportProblem::Kind::kNoJson,
             .line = static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1,
             .column = before.size() - (lineBreak == before.npos ? 0 : lineBreak + 1) + 1});
    } catch (const Json::exception&) {  // a number beyond the range of a double
        return Refused({.kind = ImportProblem::Kind::kNotFinite});
    }
}

}  // namespace kv_tr
