// What the readers of point formats share, and one reader a format.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/interchange/point_formats.h"

namespace kv_tr {

/// Where a part of a text stands.
struct Place {
    std::uint64_t line = 1;
    std::size_t column = 1;  // in letters
};
Place PlaceOf(std::string_view text, std::string_view part);

/// Takes what a reader finds in a text and keeps to the rules of PointFile: points above the first
/// problem, and not too many problems.
class PointTaker {
public:
    PointTaker(std::string_view text, std::vector<Problem>& problems)
        : text_(text), problems_(problems) {}

    bool IsFull() const { return problems_.size() >= PointReading::kMostProblems; }
    bool Complete() const { return problems_.empty(); }
    /// The part must lie in the text.
    void Add(Problem::Kind kind, std::string_view part, std::uint64_t otherLine = 0);
    /// The number that a part is; nothing after the problem was added.
    std::optional<double> Number(std::string_view part);
    /// The point of four numbers, source first; nothing after the problems were added. Less than
    /// four parts are a missing field behind the line.
    std::optional<ControlPoint> PointOf(std::span<const std::string_view> parts,
                                        std::string_view line);
    std::uint64_t LineOf(std::string_view part) const { return PlaceOf(text_, part).line; }

private:
    std::string_view text_;
    std::vector<Problem>& problems_;
};

/// The fields of a line between runs of blanks and tabs, or between single separators, without the
/// blanks around them.
std::vector<std::string_view> BlankFields(std::string_view line);
std::vector<std::string_view> FieldsBetween(std::string_view line, char separator);

bool IsNumber(std::string_view field);

/// The lines of a text that are not empty and, unless told otherwise, do not begin with "#".
enum class Comments { kSkipped, kKept };
std::vector<std::string_view> DataLines(std::string_view text,
                                        Comments comments = Comments::kSkipped);

// Each reads a text of UTF-8.
void ReadCsv(std::string_view text, const PointReadingOptions& options, PointFile& file);
void ReadQgis(std::string_view text, PointFile& file);
void ReadGdal(std::string_view text, PointFile& file);
void ReadVrt(std::string_view text, PointFile& file);
void ReadEsriLinks(std::string_view text, PointFile& file);
void ReadCadWorld(std::string_view text, PointFile& file);
void ReadGrass(std::string_view text, PointFile& file);
void ReadGeoJson(std::string_view text, PointFile& file);

/// Whether columns can be read as CSV: a header names coordinates, or the lines have equally many
/// fields and the first one has numbers in their places.
bool IsCsv(std::string_view text);
/// Whether commas part lines of eight or nine fields whose numbers all are integers, as the halves
/// of four numbers with decimal commas would be.
bool HasHalvedNumbers(std::string_view text);

/// What a column of CSV or a property of GeoJSON is called by a name: id, src_first, ..., use,
/// sigma_first, sigma_second; "-" for any other name.
std::string_view ColumnNamed(std::string_view name);

/// The bytes of a file as UTF-8 without a mark, and which letters they were.
std::string DecodedText(std::string_view bytes, CodePage page, std::string& encoding);

/// Appends the bytes of a stream; not all of them where a line is so long that no reader of lines
/// would take it. False where the system failed in the middle.
bool TakeBytes(std::istream& stream, std::string& bytes);

}  // namespace kv_tr
