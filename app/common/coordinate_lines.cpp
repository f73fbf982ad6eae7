// Lines of points: two coordinates replaced, every other byte kept.
#include "common/coordinate_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::app {
namespace {

/// Appends the standard deviations of a transformed point, separated as its coordinates are, and
/// notes whether it lies outside the control points.
void AppendPrecision(const CoordinateFields& fields, const CoordinateOptions& options,
                     TransformedLines& done) {
    const NumberStyle style{options.decimalComma ? ',' : '.'};
    const std::string_view separator(
        fields.first.data() + fields.first.size(),
        static_cast<std::size_t>(fields.second.data() - fields.first.data()) - fields.first.size());
    const std::span points(&fields.point, 1);
    const auto covariance = options.precision->At(points).front();
    for (const double sigma : {covariance.SigmaFirst(), covariance.SigmaSecond()}) {
        done.text += separator;
        if (std::isfinite(sigma)) {
            AppendFixed(done.text, sigma, options.decimals, style);
        } else {
            done.text += '-';
        }
    }
    done.outside.Add(options.precision->Outside(points));
}

/// Appends a line, transformed; nothing for a bad one. The trouble is why a point has no inverse.
bool AppendTransformed(TransformedLines& done, std::string_view line, const PointMap& map,
                       const CoordinateOptions& options, NoSource& trouble) {
    std::string& text = done.text;
    CoordinateFields fields;
    const LineKind kind = ReadCoordinates(line, options, fields);
    if (kind == LineKind::kNoFields) text += line;
    if (kind != LineKind::kPoint) return kind == LineKind::kNoFields;
    const auto [image, noImage] = ImageOf(map, fields.point);
    trouble = noImage;
    if (!std::isfinite(image.first) || !std::isfinite(image.second)) return false;

    const auto& [id, first, second, point] = fields;
    const NumberStyle style{options.decimalComma ? ',' : '.'};
    const auto between = [&text](const char* begin, const char* end) { text.append(begin, end); };
    between(line.data(), first.data());
    AppendFixed(text, image.first, options.decimals, style);
    between(first.data() + first.size(), second.data());
    AppendFixed(text, image.second, options.decimals, style);
    between(second.data() + second.size(), line.data() + line.size());
    if (options.precision) AppendPrecision(fields, options, done);
    return true;
}

}  // namespace

bool SeemsToHaveDecimalCommas(std::string_view line, const CoordinateOptions& options) {
    if (options.decimalComma) return false;
    return HasDecimalCommas(line, 2) ||
           (!options.noId && HasDecimalCommas(WithoutIdentifier(line), 2));
}

LineKind ReadCoordinates(std::string_view line, const CoordinateOptions& options,
                         CoordinateFields& fields) {
    if (SeemsToHaveDecimalCommas(line, options)) return LineKind::kBad;
    std::array<std::string_view, 3> found;
    std::size_t count = 0;
    auto rest = line;
    for (const std::size_t wanted = options.noId ? 2 : 3; count < wanted; ++count) {
        found[count] = NextField(rest, options.decimalComma);
        if (found[count].empty()) break;
    }
    if (count == 0) return LineKind::kNoFields;
    if (count == 1) return LineKind::kBad;
    fields = {count == 3 ? found[0] : std::string_view(), found[count - 2], found[count - 1], {}};
    const auto first = ParseNumber(fields.first, options.decimalComma);
    const auto second = ParseNumber(fields.second, options.decimalComma);
    if (!first || !second) return LineKind::kBad;
    fields.point = {*first, *second};
    return LineKind::kPoint;
}

TransformedLines TransformLines(std::string_view text, const PointMap& map,
                                const CoordinateOptions& options) {
    TransformedLines done;
    done.text.reserve(text.size() + text.size() / 4);
    while (!text.empty()) {
        const auto [line, ending] = TakeLine(text);
        ++done.lines;
        NoSource trouble = NoSource::kNone;
        if (!AppendTransformed(done, line, map, options, trouble)) {
            done.mayHaveDecimalCommas |= SeemsToHaveDecimalCommas(line, options);
            if (!options.keepGoing) {
                done.stoppedAt = line;
                done.stoppedBecause = trouble;
                break;
            }
            ++done.badLines;
            done.lost[static_cast<std::size_t>(trouble)] += 1;
            done.text += line;
        }
        done.text += ending;
        done.bytes += line.size() + ending.size();
    }
    return done;
}

}  // namespace kv_tr::app
