// Control points in the formats of other programs: recognised by content, read and written.
#pragma once

#include <array>
#include <cstddef>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/point_source.h"
#include "kv_tr/files/problem.h"
#include "kv_tr/fit/statistics.h"
#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/control_point.h"

namespace kv_tr {

/// How a file holds control points. docs/file-formats.md has each of them field by field.
enum class PointFormat {
    kListing,   ///< our own: identifier and four coordinates a line
    kCsv,       ///< fields in columns, with or without a header
    kQgis,      ///< .points of the QGIS georeferencer; destination first
    kGdal,      ///< -gcp options of GDAL, in an option file or on a command line
    kVrt,       ///< GCPList of a GDAL virtual raster
    kEsriLink,  ///< link file: source and destination, with or without an identifier
    kCadWorld,  ///< CAD world file: one or two lines "from_x,from_y to_x,to_y"
    kGrass,     ///< POINTS of GRASS: source, destination, status
    kGeoJson,   ///< a feature collection of points at the destination
};

inline constexpr std::array kPointFormats{
    PointFormat::kListing,  PointFormat::kCsv,   PointFormat::kQgis,
    PointFormat::kGdal,     PointFormat::kVrt,   PointFormat::kEsriLink,
    PointFormat::kCadWorld, PointFormat::kGrass, PointFormat::kGeoJson};

/// The word for a format on command lines and in scripts: listing, csv, qgis, gcp, vrt, link, cad,
/// grass, geojson.
std::string_view WordOf(PointFormat format);
/// The format of a word; nothing for any other word.
std::optional<PointFormat> PointFormatNamed(std::string_view word);
/// The format that the ending of a file name stands for (.dat and .lst, .csv, .points, .vrt, .wld,
/// .geojson and .json); nothing for any other ending.
std::optional<PointFormat> PointFormatOfName(std::string_view fileName);

/// Whether a format means map coordinates, x to the east and y to the north: all but listings and
/// CSV, which have the first and the second coordinate of each system. GeoJSON has map coordinates
/// for the destination only.
bool IsOnMaps(PointFormat format);

/// The format of a file with these bytes. What ReadControlPoints takes is a listing unless the
/// bytes bear the signs of another format; so is what no format takes.
PointFormat RecognisePointFormat(std::string_view bytes);

/// How control points are read.
struct PointReadingOptions {
    std::optional<PointFormat> format{};         ///< recognised by content where there is none
    CodePage codePage = CodePage::kWindows1250;  ///< of a file that is not UTF-8
    /// A listing obeys this. Columns have decimal commas when this says so, or the numbers do.
    Comma comma = Comma::kSuspect;
    /// Whether one or two standard deviations of the destination follow the coordinates of a
    /// listing or of columns without a header.
    bool sigmas = false;
    /// Where the axes of the systems point to. Obeyed where a format is on maps, so that the points
    /// have the first and the second coordinate of their systems.
    AxisMapping sourceAxes = AxisMapping::kEn;
    AxisMapping targetAxes = AxisMapping::kEn;
    /// How columns are divided, whether the first line names them, and what they are (the names of
    /// PointLayout::columns); found out where there is nothing. Columns beyond those that are named
    /// are not read. Lists of one system obey the separator only.
    std::optional<char> separator{};
    std::optional<bool> header{};
    std::vector<std::string> columns{};
};

/// What was understood of a file besides its points.
struct PointLayout {
    std::string encoding;   ///< UTF-8, UTF-16, windows-1250 or windows-1258
    char separator = '\0';  ///< of columns; a blank for any run of blanks
    char decimalSign = '.';
    bool header = false;               ///< whether the first line named the columns
    std::vector<std::string> columns;  ///< in the order of the file; "-" is one that is not read
};

/// The control points of a file, or what is wrong with it.
struct PointFile {
    PointFormat format = PointFormat::kListing;
    PointLayout layout;
    std::vector<ControlPoint> points;  ///< those above the first problem, with their marks of use
    /// Standard deviations of the destinations, metres, a pair a point: where the file names such
    /// columns, or the options ask for them; otherwise empty.
    std::vector<Point> sigmas;
    std::string crs;                ///< the destination system as the file names it, or nothing
    std::size_t skipped = 0;        ///< features of a GeoJSON file that are no control points
    std::vector<Problem> problems;  ///< not more than PointReading::kMostProblems
    PointSource source{};           ///< of a file that was read by its name

    bool Complete() const { return problems.empty(); }
};

/// Reads control points in any format. Residual columns are ignored; identifiers that a format
/// lacks are "1", "2", ...
///
/// Nothing is shown or thrown but std::bad_alloc, and any number of threads may read at once. A
/// listing is read as ReadControlPoints reads it, with the same problems.
PointFile ReadPoints(std::istream& stream, const PointReadingOptions& options = {});
PointFile ReadPoints(std::string_view bytes, const PointReadingOptions& options = {});
PointFile ReadPointsOfFile(const std::string& fileName, const PointReadingOptions& options = {});

/// What is written. Residuals and standard deviations are a pair a point, or empty.
struct PointsToWrite {
    std::span<const ControlPoint> points;
    std::span<const Residual> residuals{};
    std::span<const Point> sigmas{};
    /// The destination system: WKT, or a code such as "EPSG:23700"; or nothing.
    std::string crs{};
    /// As for PointReadingOptions.
    AxisMapping sourceAxes = AxisMapping::kEn;
    AxisMapping targetAxes = AxisMapping::kEn;
};

/// A file of control points as text, and what its format could not hold.
struct PointText {
    enum class Refusal {
        kNone,
        kNotFinite,      ///< a number is infinite or undefined
        kTooManyPoints,  ///< a CAD world file has one or two points
    };

    std::string text;  ///< UTF-8; empty after a refusal
    Refusal refusal = Refusal::kNone;
    std::size_t excludedLeftOut = 0;  ///< points, because the format has no mark for them
    bool identifiersLeftOut = false;  ///< and they were others than "1", "2", ...
    bool sigmasLeftOut = false;
    bool crsLeftOut = false;
};

/// Writes control points. Each number is the shortest text that reads back to the same double.
PointText WritePoints(const PointsToWrite& what, PointFormat format);

/// Writes the residuals, which must be there, as a GeoJSON collection of lines, each from the
/// measured destination to where the residual times the scale, which must be finite, leads on the
/// map. The properties are those of the points, and the scale.
PointText WriteResidualVectors(const PointsToWrite& what, double scale);

}  // namespace kv_tr
