// Lines of points: two coordinates replaced, every other byte kept.
#include "common/coordinate_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <tuple>

#include "kv_tr/model/hull.h"
#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::app {
namespace {

/// Whether a field stands before another one of its line.
bool ByPlace(std::string_view field, std::string_view other) { return field.data() < other.data(); }

/// Appends the standard deviations of a transformed point, separated as its coordinates are, and
/// notes whether it lies outside the control points.
void AppendPrecision(const CoordinateFields& fields, const CoordinateOptions& options,
                     TransformedLines& done) {
    const NumberStyle style{options.decimalComma ? ',' : '.'};
    const auto [earlier, later] = std::minmax(fields.first, fields.second, ByPlace);
    const std::string_view separator(
        earlier.data() + earlier.size(),
        static_cast<std::size_t>(later.data() - earlier.data()) - earlier.size());
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

/// A line, and what was found in it.
struct ReadLine {
    std::string_view text;
    std::string_view ending;
    LineKind kind;
    CoordinateFields fields;
};

/// The end of a text on its way: bytes are gathered here and appended many at once.
class Gathered {
public:
    explicit Gathered(std::string& text) : text_(text) {}
    ~Gathered() = default;
    Gathered(const Gathered&) = delete;
    Gathered& operator=(const Gathered&) = delete;

    void Write(const char* begin, const char* end) {
        const auto size = static_cast<std::size_t>(end - begin);
        if (size > Room()) Flush();
        if (size > Room()) {
            text_.append(begin, end);
        } else {
            place_ = std::copy(begin, end, place_);
        }
    }

    void WriteNumber(double value, int decimals, NumberStyle style) {
        if (Room() < kMostFixed) Flush();
        if (char* const end = WriteFixed(place_, value, decimals, style)) {
            place_ = end;
        } else {
            Flush();
            AppendFixed(text_, value, decimals, style);
        }
    }

    /// Appends what has been gathered; the text may then be changed otherwise too.
    void Flush() {
        text_.append(buffer_.data(), place_);
        place_ = buffer_.data();
    }

private:
    std::size_t Room() const {
        return static_cast<std::size_t>(buffer_.data() + buffer_.size() - place_);
    }

    std::string& text_;
    std::array<char, 4096> buffer_;
    char* place_ = buffer_.data();
};

/// Lines that are read together, so that their points are mapped as one array.
class Batch {
public:
    explicit Batch(const PointMap& map, const CoordinateOptions& options)
        : map_(map), options_(options) {}

    /// Takes lines off the text, maps their points and appends the lines to what is done. False
    /// when a bad line ended the work.
    bool TakeFrom(std::string_view& text, TransformedLines& done) {
        Read(text);
        MapPairs(map_, std::span(points_).first(2 * pointCount_),
                 std::span(images_).first(2 * pointCount_),
                 std::span(troubles_).first(pointCount_));
        Gathered gathered(done.text);
        std::size_t point = 0;
        bool goOn = true;
        for (const ReadLine& line : std::span(lines_).first(lineCount_)) {
            const std::size_t index = line.kind == LineKind::kPoint ? point++ : kLines;
            goOn = Append(line, index, done, gathered);
            if (!goOn) break;
        }
        gathered.Flush();
        return goOn;
    }

private:
    static constexpr std::size_t kLines = 128;

    void Read(std::string_view& text) {
        pointCount_ = 0;
        for (lineCount_ = 0; lineCount_ < kLines && !text.empty(); ++lineCount_) {
            ReadLine& line = lines_[lineCount_];
            const auto [words, ending] = TakeLine(text);
            line.text = words;
            line.ending = ending;
            line.kind = ReadCoordinates(words, options_, line.fields);
            if (line.kind != LineKind::kPoint) continue;
            points_[2 * pointCount_] = line.fields.point.first;
            points_[2 * pointCount_ + 1] = line.fields.point.second;
            ++pointCount_;
        }
    }

    /// Appends a line whose point has this index, transformed; false for a bad one that ends the
    /// work.
    bool Append(const ReadLine& line, std::size_t index, TransformedLines& done,
                Gathered& text) const {
        const char* const begin = line.text.data();
        const char* const end = begin + line.text.size();
        ++done.lines;
        if (index < kLines && std::isfinite(images_[2 * index])) {
            AppendPoint(line, {images_[2 * index], images_[2 * index + 1]}, done, text);
        } else if (line.kind == LineKind::kNoFields) {
            text.Write(begin, end);
        } else {
            const NoSource trouble = index < kLines && std::holds_alternative<ExactInverse>(map_)
                                         ? troubles_[index]
                                         : NoSource::kNone;
            done.mayHaveDecimalCommas |= SeemsToHaveDecimalCommas(line.text, options_);
            if (!options_.keepGoing) {
                done.stoppedAt = line.text;
                done.stoppedBecause = trouble;
                return false;
            }
            ++done.badLines;
            if (done.named.size() < kMostNamed)
                done.named.push_back({done.lines, std::string(line.text), trouble});
            done.lost[static_cast<std::size_t>(trouble)] += 1;
            text.Write(begin, end);
        }
        text.Write(end, end + line.ending.size());
        done.bytes += line.text.size() + line.ending.size();
        return true;
    }

    void AppendPoint(const ReadLine& line, Point image, TransformedLines& done,
                     Gathered& text) const {
        const auto& [id, first, second, point] = line.fields;
        const NumberStyle style{options_.decimalComma ? ',' : '.'};
        const bool inOrder = ByPlace(first, second);
        const auto& [earlier, later] = inOrder ? std::tie(first, second) : std::tie(second, first);
        text.Write(line.text.data(), earlier.data());
        text.WriteNumber(inOrder ? image.first : image.second, options_.decimals, style);
        text.Write(earlier.data() + earlier.size(), later.data());
        text.WriteNumber(inOrder ? image.second : image.first, options_.decimals, style);
        text.Write(later.data() + later.size(), line.text.data() + line.text.size());
        if (!options_.precision) return CountOutside(point, done);
        text.Flush();
        AppendPrecision(line.fields, options_, done);
    }

    void CountOutside(Point point, TransformedLines& done) const {
        if (!options_.hull) return;
        const double distance = DistanceOutside(*options_.hull, point);
        if (distance > 0) done.outside.Add({.count = 1, .farthest = distance});
    }

    const PointMap& map_;
    const CoordinateOptions& options_;
    std::size_t lineCount_ = 0;
    std::size_t pointCount_ = 0;
    std::array<ReadLine, kLines> lines_{};
    std::array<double, 2 * kLines> points_{};
    std::array<double, 2 * kLines> images_{};
    std::array<NoSource, kLines> troubles_{};
};

}  // namespace

namespace {

LineKind ReadColumns(std::string_view line, const CoordinateOptions& options,
                     CoordinateFields& fields) {
    const auto [firstColumn, secondColumn] = *options.columns;
    fields.id = {};
    for (std::size_t i = 0; i <= std::max(firstColumn, secondColumn); ++i) {
        const std::string_view field = NextField(line, options.decimalComma);
        if (field.empty()) return i == 0 ? LineKind::kNoFields : LineKind::kBad;
        if (i == firstColumn) fields.first = field;
        if (i == secondColumn) fields.second = field;
    }
    const auto first = ParseNumber(fields.first, options.decimalComma);
    const auto second = ParseNumber(fields.second, options.decimalComma);
    if (!first || !second || firstColumn == secondColumn) return LineKind::kBad;
    fields.point = {*first, *second};
    return LineKind::kPoint;
}

}  // namespace

bool SeemsToHaveDecimalCommas(std::string_view line, const CoordinateOptions& options) {
    if (options.decimalComma || line.find(',') == line.npos) return false;
    return HasDecimalCommas(line, 2) ||
           (!options.noId && HasDecimalCommas(WithoutIdentifier(line), 2));
}

LineKind ReadCoordinates(std::string_view line, const CoordinateOptions& options,
                         CoordinateFields& fields) {
    if (SeemsToHaveDecimalCommas(line, options)) return LineKind::kBad;
    if (options.columns) return ReadColumns(line, options, fields);
    auto rest = line;
    fields.id = options.noId ? std::string_view() : NextField(rest, options.decimalComma);
    auto first = NextNumber(rest, options.decimalComma);
    auto second = NextNumber(rest, options.decimalComma);
    if (second.text.empty() && !options.noId) {  // the line's only two
        second = first;
        first = {fields.id, ParseNumber(fields.id, options.decimalComma)};
        fields.id = {};
    }
    if (first.text.empty()) return LineKind::kNoFields;
    if (!first.value || !second.value) return LineKind::kBad;
    fields.first = first.text;
    fields.second = second.text;
    fields.point = {*first.value, *second.value};
    return LineKind::kPoint;
}

TransformedLines TransformLines(std::string_view text, const PointMap& map,
                                const CoordinateOptions& options) {
    TransformedLines done;
    done.text.reserve(text.size() + text.size() / 4);
    Batch batch(map, options);
    while (!text.empty() && batch.TakeFrom(text, done)) {
    }
    return done;
}

}  // namespace kv_tr::app
