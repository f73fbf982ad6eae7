// Control points as GeoJSON: a feature collection of points at the destination.
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "kv_tr/interchange/point_readers.h"

namespace kv_tr {
namespace {

using Json = nlohmann::json;

/// A member of an object; null where there is none.
const Json& Member(const Json& object, const char* name) {
    static const Json kNull;
    if (!object.is_object()) return kNull;
    const auto found = object.find(name);
    return found == object.end() ? kNull : *found;
}

std::optional<double> NumberIn(const Json& value) {
    if (!value.is_number()) return std::nullopt;
    const auto number = value.get<double>();
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::string TextIn(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    return value.is_number() || value.is_boolean() ? value.dump() : std::string();
}

bool IsUsed(const Json& value) {
    if (value.is_boolean()) return value.get<bool>();
    const auto number = NumberIn(value);
    return !number || *number > 0.0;
}

/// The point of a feature, which has an identifier already in case the feature lacks one, with
/// standard deviations if it has them; false for any other feature.
bool TakeFeature(const Json& feature, ControlPoint& point, std::optional<Point>& sigma) {
    const Json& geometry = Member(feature, "geometry");
    const Json& coordinates = Member(geometry, "coordinates");
    if (Member(geometry, "type") != "Point" || !coordinates.is_array() || coordinates.size() < 2)
        return false;
    const Json& properties = Member(feature, "properties");
    if (!properties.is_object()) return false;
    std::optional<double> sourceFirst, sourceSecond, sigmaFirst, sigmaSecond;
    if (const Json& id = Member(feature, "id"); !id.is_null()) point.id = TextIn(id);
    for (const auto& [name, value] : properties.items()) {
        const auto column = ColumnNamed(name);
        if (column == "id") point.id = TextIn(value);
        if (column == "use") point.used = IsUsed(value);
        if (column == "src_first") sourceFirst = NumberIn(value);
        if (column == "src_second") sourceSecond = NumberIn(value);
        if (column == "sigma_first") sigmaFirst = NumberIn(value);
        if (column == "sigma_second") sigmaSecond = NumberIn(value);
    }
    const auto first = NumberIn(coordinates[0]);
    const auto second = NumberIn(coordinates[1]);
    if (!sourceFirst || !sourceSecond || !first || !second) return false;
    point.source = {*sourceFirst, *sourceSecond};
    point.destination = {*first, *second};
    if (sigmaFirst) sigma = {*sigmaFirst, sigmaSecond.value_or(*sigmaFirst)};
    return true;
}

/// The whole letter that a byte of a text is part of; empty at the end.
std::string_view LetterAt(std::string_view text, std::size_t at) {
    const auto continues = [text](std::size_t i) {
        return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    };
    while (at > 0 && continues(at)) --at;
    std::size_t end = std::min(at + 1, text.size());
    while (continues(end)) ++end;
    return text.substr(at, end - at);
}

}  // namespace

void ReadGeoJson(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"id", "src_first", "src_second", "dst_first", "dst_second", "use"};
    Json document;
    try {
        document = Json::parse(text);
    } catch (const Json::parse_error& error) {
        const std::size_t at = std::min(error.byte > 0 ? error.byte - 1 : 0, text.size());
        taker.Add(Problem::Kind::kDamaged, LetterAt(text, at));
        return;
    } catch (const Json::exception&) {  // a number beyond the range of a double
        taker.Add(Problem::Kind::kNotANumber, text.substr(0, 0));
        return;
    }
    const Json& features = Member(document, "features");
    if (Member(document, "type") != "FeatureCollection" || !features.is_array()) {
        taker.Add(Problem::Kind::kDamaged, text.substr(0, 0));
        return;
    }
    file.crs = TextIn(Member(Member(Member(document, "crs"), "properties"), "name"));
    for (const Json& feature : features) {
        ControlPoint point;
        point.id = std::to_string(file.points.size() + 1);
        std::optional<Point> sigma;
        if (!TakeFeature(feature, point, sigma)) {
            ++file.skipped;
            continue;
        }
        file.points.push_back(std::move(point));
        const bool positive = sigma && sigma->first > 0.0 && sigma->second > 0.0;
        if (positive) file.sigmas.push_back(*sigma);
    }
    if (file.sigmas.size() == file.points.size() && !file.sigmas.empty()) {
        file.layout.columns.insert(file.layout.columns.end(), {"sigma_first", "sigma_second"});
    } else if (!file.sigmas.empty()) {  // some points have none
        taker.Add(Problem::Kind::kNotPositive, text.substr(0, 0));
    }
}

}  // namespace kv_tr
