// Lines of points: two coordinates replaced, every other byte kept.
#include "common/coordinate_lines.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/model/transformation.h"
#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::app {
namespace {

/// Whether the coordinates of a line, or its only two fields, seem to have decimal commas.
bool SeemsToHaveDecimalCommas(std::string_view line, bool noId) {
    return HasDecimalCommas(line, 2) || (!noId && HasDecimalCommas(WithoutIdentifier(line), 2));
}

/// Appends a line, transformed; false, with nothing appended, for a bad one.
bool AppendTransformed(std::string& text, std::string_view line,
                       const Transformation& transformation, const CoordinateOptions& options) {
    std::array<std::string_view, 3> fields;
    std::size_t count = 0;
    auto rest = line;
    for (const std::size_t wanted = options.noId ? 2 : 3; count < wanted; ++count) {
        fields[count] = NextField(rest, options.decimalComma);
        if (fields[count].empty()) break;
    }
    if (count == 0) {
        text += line;
        return true;
    }
    if (count == 1) return false;
    const std::string_view first = fields[count - 2];
    const std::string_view second = fields[count - 1];
    const auto firstNumber = ParseNumber(first, options.decimalComma);
    const auto secondNumber = ParseNumber(second, options.decimalComma);
    if (!firstNumber || !secondNumber) return false;
    const Point image = transformation.Apply({*firstNumber, *secondNumber});
    if (!std::isfinite(image.first) || !std::isfinite(image.second)) return false;

    const NumberStyle style{options.decimalComma ? ',' : '.'};
    const auto between = [&text](const char* begin, const char* end) { text.append(begin, end); };
    between(line.data(), first.data());
    AppendFixed(text, image.first, options.decimals, style);
    between(first.data() + first.size(), second.data());
    AppendFixed(text, image.second, options.decimals, style);
    between(second.data() + second.size(), line.data() + line.size());
    return true;
}

}  // namespace

TransformedLines TransformLines(std::string_view text, const Transformation& transformation,
                                const CoordinateOptions& options) {
    TransformedLines done;
    done.text.reserve(text.size() + text.size() / 4);
    while (!text.empty()) {
        const auto [line, ending] = TakeLine(text);
        ++done.lines;
        const bool commas = !options.decimalComma && SeemsToHaveDecimalCommas(line, options.noId);
        if (commas || !AppendTransformed(done.text, line, transformation, options)) {
            done.mayHaveDecimalCommas |= commas;
            if (!options.keepGoing) {
                done.stoppedAt = line;
                break;
            }
            ++done.badLines;
            done.text += line;
        }
        done.text += ending;
        done.bytes += line.size() + ending.size();
    }
    return done;
}

}  // namespace kv_tr::app
