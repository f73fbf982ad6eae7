// Six parameters and points as programs of pictures and drawings have them.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

std::string PairText(Point point) {
    return ShortestText(point.first) + "," + ShortestText(point.second);
}

/// Six numbers and nothing else, separated by blanks, line ends and these letters.
std::optional<std::array<double, 6>> SixNumbers(std::string_view text,
                                                std::string_view separators) {
    std::array<double, 6> numbers{};
    std::size_t count = 0;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
        if (text.empty()) break;
        const auto field = text.substr(0, text.find_first_of(separators));
        const auto number = ParseNumber(field);
        if (!number || count == numbers.size()) return std::nullopt;
        numbers[count++] = *number;
        text.remove_prefix(field.size());
    }
    return count == numbers.size() ? std::optional(numbers) : std::nullopt;
}

ImportedTransformation Refused() {
    return {.record = {}, .problem = ImportProblem{.kind = ImportProblem::Kind::kSixNumbers}};
}

}  // namespace

Exported WorldFileText(const Transformation& onMaps) {
    const auto& [type, a, b] = onMaps;
    std::string text;
    for (const double value :
         {a[1], b[1], -a[2], -b[2], a[0] + a[1] / 2 - a[2] / 2, b[0] + b[1] / 2 - b[2] / 2}) {
        if (!std::isfinite(value)) return Refusal::kNotFinite;
        text += ShortestText(value) + "\n";
    }
    return text;
}

ImportedTransformation ReadWorldFile(std::string_view text, Type linearType) {
    const auto numbers = SixNumbers(text, " \t\r\n");
    if (!numbers) return Refused();
    const auto& [a, d, b, e, c, f] = *numbers;
    return {.record = {.transformation = {.type = linearType,
                                          .a = {c - a / 2 - b / 2, a, -b},
                                          .b = {f - d / 2 - e / 2, d, -e}}}};
}

std::string GeotransformText(const Transformation& onMaps) {
    const auto& [type, a, b] = onMaps;
    std::string text;
    for (const double value : {a[0], a[1], -a[2], b[0], b[1], -b[2]}) {
        text += (text.empty() ? "[" : ", ") + ShortestText(value);
    }
    return text + "]\n";
}

ImportedTransformation ReadGeotransform(std::string_view text, Type linearType) {
    const auto numbers = SixNumbers(text, " \t\r\n,[]");
    if (!numbers) return Refused();
    const auto& n = *numbers;
    return {
        .record = {.transformation = {
                       .type = linearType, .a = {n[0], n[1], -n[2]}, .b = {n[3], n[4], -n[5]}}}};
}

/// Two corners of the hull that lie far apart, and their images: the drawing lands where the
/// transformation puts it, not at the measured points.
Exported CadWorldFileText(const TransformationRecord& record) {
    const auto& hull = record.hull;
    if (hull.size() < 2) return Refusal::kNoPlaces;
    const auto farthest = [&hull](Point from) {
        return *std::ranges::max_element(hull, {}, [from](Point corner) {
            return Hypotenuse(corner.first - from.first, corner.second - from.second);
        });
    };
    const Point one = farthest(hull.front());
    const Point other = farthest(one);
    if (one == other) return Refusal::kNoPlaces;
    std::string text;
    for (const Point place : {one, other}) {
        const Point image = record.transformation.Apply(place);
        if (!std::isfinite(image.first + image.second)) return Refusal::kNotFinite;
        text += PairText(OnMap(record.sourceAxes, place)) + " " +
                PairText(OnMap(record.targetAxes, image)) + "\n";
    }
    return text;
}

Exported GcpsText(const TransformationRecord& record) {
    const PointText written = WritePoints(
        {.points = record.points, .sourceAxes = record.sourceAxes, .targetAxes = record.targetAxes},
        PointFormat::kGdal);
    if (written.refusal == PointText::Refusal::kNotFinite) return Refusal::kNotFinite;
    if (written.text.empty()) return Refusal::kNoPoints;
    return written.text;
}

}  // namespace kv_tr
