// Control points in every format: problems name lines that exist, and what is written reads back to
// the same doubles.
#include <sstream>

#include "fuzz/fuzz.h"
#include "kv_tr/interchange/point_lists.h"
#include "kv_tr/text/code_page.h"

namespace kv_tr::test {
namespace {

/// An empty text has one line, on which what a format needs is missing.
std::uint64_t LinesOf(std::string_view bytes) {
    return std::max<std::uint64_t>(1, LineCount(FromUtf16(bytes).value_or(std::string(bytes))));
}

void CheckProblems(const std::vector<Problem>& problems, std::string_view bytes) {
    Require(problems.size() <= PointReading::kMostProblems, "there are not too many problems");
    for (const Problem& problem : problems) {
        Require(problem.line <= LinesOf(bytes), "the line of a problem exists");
        Require(problem.otherLine <= LinesOf(bytes), "the line that it contradicts exists");
        Require(problem.line > 0 || problem.column == 0, "a column belongs to a line");
        Require(IsUtf8(problem.text), "what a problem quotes is valid");
    }
}

void CheckWriting(const PointFile& read, const PointReadingOptions& options, PointFormat format) {
    const PointText written = WritePoints({.points = read.points,
                                           .sigmas = read.sigmas,
                                           .crs = read.crs,
                                           .sourceAxes = options.sourceAxes,
                                           .targetAxes = options.targetAxes},
                                          format);
    Require(IsUtf8(written.text), "what is written is valid");
    if (written.refusal != PointText::Refusal::kNone || written.text.empty()) return;
    const PointFile again =
        ReadPoints(written.text, {.format = format,
                                  .sigmas = format == PointFormat::kListing && !read.sigmas.empty(),
                                  .sourceAxes = options.sourceAxes,
                                  .targetAxes = options.targetAxes});
    Require(again.Complete(), "what is written can be read");
    std::vector<ControlPoint> expected;
    for (const ControlPoint& point : read.points) {
        if (point.used || written.excludedLeftOut == 0) expected.push_back(point);
    }
    Require(again.points.size() == expected.size(), "no point is lost unsaid");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const ControlPoint& one = expected[i];
        const ControlPoint& other = again.points[i];
        Require(one.source == other.source && one.destination == other.destination,
                "coordinates read back to the same doubles");
        if (format == PointFormat::kCsv || format == PointFormat::kGeoJson)
            Require(one.used == other.used, "so does the mark of use");
    }
    Require(written.sigmasLeftOut || again.sigmas == read.sigmas, "so do standard deviations");
}

void CheckLists(std::string_view bytes, const PointReadingOptions& options) {
    const std::size_t half = bytes.size() / 2;
    const PointList source = ReadPointList(bytes.substr(0, half), options);
    const PointList destination = ReadPointList(bytes.substr(half), options);
    CheckProblems(source.problems, bytes.substr(0, half));
    const JoinedLists joined = JoinByIdentifier(source, destination);
    Require(joined.points.size() + joined.onlyInSource.size() <= source.points.size(),
            "a point is joined once");
    Require(joined.sigmas.empty() || joined.sigmas.size() == joined.points.size(),
            "each joined point has its standard deviations");
}

void CheckListing(std::string_view bytes, const PointReadingOptions& options) {
    std::istringstream stream{std::string(bytes)};
    const PointReading plain = ReadControlPoints(
        stream, {.codePage = options.codePage, .comma = options.comma, .sigmas = options.sigmas});
    auto listing = options;
    listing.format = PointFormat::kListing;
    const PointFile file = ReadPoints(bytes, listing);
    Require(plain.points == file.points && plain.problems == file.problems,
            "a listing is one listing, whoever reads it");
    Require(plain.Complete() != plain.partial.has_value() || plain.problems.front().line == 0,
            "a bad line has a point in part");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    PointReadingOptions options;
    const int kind = input.Byte();
    if (kind < 128) {  // most letters, as files that serve as seeds end with, mean recognition
        options.comma = static_cast<Comma>(kind % 3);
    } else {
        options.format = kPointFormats[static_cast<std::size_t>(kind) % kPointFormats.size()];
        options.codePage = static_cast<CodePage>(input.Below(2));
        options.comma = static_cast<Comma>(input.Below(3));
        options.sigmas = input.Flag();
        options.sourceAxes = static_cast<AxisMapping>(input.Below(8));
        options.targetAxes = static_cast<AxisMapping>(input.Below(8));
    }
    const std::string_view bytes = input.Rest();
    const PointFile read = ReadPoints(bytes, options);
    CheckProblems(read.problems, bytes);
    Require(read.sigmas.empty() || read.sigmas.size() == read.points.size(),
            "each point has its standard deviations");
    for (const ControlPoint& point : read.points) {
        Require(IsUtf8(point.id), "identifiers are valid");
        for (const double number : {point.source.first, point.source.second,
                                    point.destination.first, point.destination.second})
            Require(std::isfinite(number), "coordinates are numbers");
    }
    if (read.Complete()) {
        for (const PointFormat format : kPointFormats) CheckWriting(read, options, format);
    }
    if (!FromUtf16(bytes)) CheckListing(bytes, options);  // which only the other reader knows
    CheckLists(bytes, options);
    return 0;
}

}  // namespace kv_tr::test
