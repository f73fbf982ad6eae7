// Control points as text: one pair a line, an identifier and four coordinates.
#include "kv_tr/published/control_point_file.h"

#include <algorithm>
#include <array>

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

constexpr std::array kCoordinates{&typeXYs4Tr::dXsour, &typeXYs4Tr::dYsour, &typeXYs4Tr::dXdest,
                                  &typeXYs4Tr::dYdest};

/// Reads pairs to the end of the file; false when a line is no pair, which is then the last one.
bool ReadPairs(clsFile& file, std::vector<typeXYs4Tr>& pairs) {
    while (!file.AtEnd()) {
        const std::string line = file.ReadLine();
        if (line.empty()) continue;
        if (!ReadPair(line, pairs.emplace_back())) return false;
    }
    return true;
}

/// An identifier as the reader takes it for one field.
std::string IdentifierField(std::string_view id) {
    if (id.empty()) return "_";
    std::string field = WithoutControls(id);
    for (const char separator : {' ', ',', ';', '\'', '"'}) {
        std::ranges::replace(field, separator, '_');
    }
    return field;
}

}  // namespace

std::string ListPairs(std::span<const typeXYs4Tr> pairs) {
    std::string listing;
    for (const typeXYs4Tr& pair : pairs) {
        listing += PadLeft(IdentifierField(pair.sId), 20);
        for (const auto coordinate : kCoordinates) listing += FormatFixed(pair.*coordinate, 3, 15);
        listing += "\r\n";
    }
    return listing;
}

bool ReadPair(std::string_view line, typeXYs4Tr& pair, bool commaIsDecimal) {
    pair.sId = NextField(line, commaIsDecimal);
    for (const auto coordinate : kCoordinates) {
        const auto number = ParseNumber(NextField(line, commaIsDecimal), commaIsDecimal);
        if (!number) return false;
        pair.*coordinate = *number;
    }
    return true;
}

ControlPointReading ReadControlPoints(const std::string& fileName) {
    ControlPointReading reading;
    auto& pairs = reading.pairs;
    bool pairFailed = false;
    try {
        clsFile file;
        file.OpenIt(fileName, true);
        pairFailed = !ReadPairs(file, pairs);
        reading.failed = pairFailed;
    } catch (const RuntimeError&) {  // not open, or the system could not read on
        reading.failed = true;
    }
    if (!reading.failed) return reading;

    auto complete = pairs.size();
    if (pairFailed) {
        complete -= complete > 1 ? 2 : 1;
        if (complete > 0) pairs.pop_back();
    }
    reading.accepted = complete > 0;
    reading.lineShown = static_cast<std::int32_t>(complete) + 1;
    return reading;
}

}  // namespace kv_tr
