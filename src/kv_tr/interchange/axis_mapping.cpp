// What the two coordinates of a system mean on a map.
#include "kv_tr/interchange/axis_mapping.h"

#include <algorithm>
#include <array>

namespace kv_tr {
namespace {

/// How map coordinates come from those of a system: x is the first one, or the second where they
/// are swapped, times its sign.
struct Row {
    AxisMapping axes;
    std::string_view word;
    bool swapped;
    int signOfX;
    int signOfY;
};
constexpr std::array kRows{
    Row{AxisMapping::kEn, "en", false, 1, 1},   Row{AxisMapping::kNe, "ne", true, 1, 1},
    Row{AxisMapping::kWs, "ws", false, -1, -1}, Row{AxisMapping::kSw, "sw", true, -1, -1},
    Row{AxisMapping::kEs, "es", false, 1, -1},  Row{AxisMapping::kWn, "wn", false, -1, 1},
    Row{AxisMapping::kSe, "se", true, 1, -1},   Row{AxisMapping::kNw, "nw", true, -1, 1},
};

const Row& RowOf(AxisMapping axes) { return *std::ranges::find(kRows, axes, &Row::axes); }

std::string Order(int first, int second) {
    return std::to_string(first) + "," + std::to_string(second);
}

}  // namespace

std::string_view AxisWord(AxisMapping axes) { return RowOf(axes).word; }

std::optional<AxisMapping> AxesNamed(std::string_view word) {
    const auto* row = std::ranges::find(kRows, word, &Row::word);
    return row == kRows.end() ? std::nullopt : std::optional(row->axes);
}

std::string AxisWords() {
    std::string words;
    for (const Row& row : kRows) words += (words.empty() ? "" : ", ") + std::string(row.word);
    return words;
}

Point OnMap(AxisMapping axes, Point point) {
    const Row& row = RowOf(axes);
    const auto& [first, second] = point;
    return {row.signOfX * (row.swapped ? second : first),
            row.signOfY * (row.swapped ? first : second)};
}

Point FromMap(AxisMapping axes, Point onMap) {
    const Row& row = RowOf(axes);
    const double x = row.signOfX * onMap.first;
    const double y = row.signOfY * onMap.second;
    return row.swapped ? Point{y, x} : Point{x, y};
}

Transformation BetweenMaps(const Transformation& linear, AxisMapping source, AxisMapping target) {
    const Row& from = RowOf(source);
    const Row& to = RowOf(target);
    const auto ofMap = [&from](const Transformation::Series& c, int sign) {
        const double byX = from.signOfX * (from.swapped ? c[2] : c[1]);
        const double byY = from.signOfY * (from.swapped ? c[1] : c[2]);
        return Transformation::Series{sign * c[0], sign * byX, sign * byY};
    };
    return {.type = linear.type,
            .a = ofMap(to.swapped ? linear.b : linear.a, to.signOfX),
            .b = ofMap(to.swapped ? linear.a : linear.b, to.signOfY)};
}

std::string SwapFromMap(AxisMapping axes) {
    const Row& row = RowOf(axes);
    return row.swapped ? Order(2 * row.signOfY, row.signOfX) : Order(row.signOfX, 2 * row.signOfY);
}

std::string SwapToMap(AxisMapping axes) {
    const Row& row = RowOf(axes);
    return row.swapped ? Order(2 * row.signOfX, row.signOfY) : SwapFromMap(axes);
}

}  // namespace kv_tr
