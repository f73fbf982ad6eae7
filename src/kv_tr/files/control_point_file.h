// Control points as text: one point a line, an identifier and four coordinates.
#pragma once

#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/files/point_source.h"
#include "kv_tr/files/problem.h"
#include "kv_tr/model/control_point.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

/// What a comma is among the numbers of a file.
enum class Comma {
    kSeparator,    ///< it ends a field
    kDecimalSign,  ///< it is a decimal sign; other signs end fields
    kSuspect,      ///< it ends a field, but numbers that seem to have decimal commas are a problem
};

/// How a file of control points is read.
struct PointFileStyle {
    CodePage codePage = CodePage::kWindows1250;  ///< of a file that is not UTF-8
    Comma comma = Comma::kSuspect;
    /// Whether each line goes on with a standard deviation of its destination coordinates, metres,
    /// or with one for each of them.
    bool sigmas = false;
};

/// The points of a file, or what is wrong with it.
struct PointReading {
    static constexpr std::size_t kMostProblems = 20;

    std::vector<ControlPoint> points;  ///< those above the first problem
    PointSource source{};              ///< the file, if the points were read by its name
    std::vector<Point> sigmas;         ///< a pair a point, when they were asked for
    std::vector<Problem> problems;     ///< in the order of their lines, not more than kMostProblems
    /// The point of the first problem as far as it could be read; nothing where no line is wrong.
    std::optional<ControlPoint> partial;

    bool Complete() const { return problems.empty(); }
};

/// Reads control points. Each line has an identifier and the source and destination coordinates, in
/// metres. Blanks, tabs, commas, semicolons, apostrophes and double quotes separate fields, in any
/// mixture; fields beyond the fifth are ignored, as are empty lines.
///
/// Nothing is shown or thrown but std::bad_alloc, and any number of threads may read at once.
PointReading ReadControlPoints(std::istream& file, const PointFileStyle& style = {});
/// The same with a file by its name.
PointReading ReadControlPointFile(const std::string& fileName, const PointFileStyle& style = {});

/// Reads one line into a point, field by field; what is wrong, if anything, with its column. What
/// was read before that stays.
std::optional<Problem> ReadControlPoint(std::string_view line, Comma comma, ControlPoint& point);

/// An identifier as the reader takes it for one field: what would separate fields, a control
/// character, and an empty identifier become "_".
std::string IdentifierField(const std::string& id);

/// The listing of points, one line each, lines ended by CR LF: the identifier right-aligned in 20
/// columns, then the four coordinates with three decimals in 15 columns each, without further
/// separators. Excluded points are listed like the others.
std::string ListControlPoints(std::span<const ControlPoint> points, NumberStyle style = {});

}  // namespace kv_tr
