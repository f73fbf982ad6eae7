// What is known about a fit as lines and tables of texts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kv_tr/forms/findings_cache.h"

namespace kv_tr {

/// What stands for a figure that is not defined.
inline constexpr const char* kNoFigure = "–";

/// A figure with so many decimals; kNoFigure for one that is not a number, "∞" for infinity.
std::string FixedFigure(double value, int decimals);
/// A figure with two significant digits, otherwise the same.
std::string ShortFigure(double value);

enum class AngleUnit { kDegrees, kGon, kSeconds };
inline constexpr AngleUnit kAngleUnits[] = {AngleUnit::kGon, AngleUnit::kDegrees,
                                            AngleUnit::kSeconds};

/// How a unit of angles is written. Figures are radians times a factor; standard deviations have a
/// finer unit of their own.
struct AngleLook {
    const char* name;
    const char* unit;  ///< behind a figure: the name, after a blank where one belongs
    double factor;
    int decimals;
    double sigmaFactor;
    const char* sigmaUnit;
};
const AngleLook& LookOf(AngleUnit unit);

/// A line of the strip above the table.
struct StripLine {
    enum class Look { kChecked, kNote, kWarning, kSevere };

    Look look = Look::kChecked;
    std::string text;     ///< begins with a word for the look, so that the colour is not needed
    std::string offer{};  ///< the caption of what would help; empty without an offer
    Warning warning{};
};

/// The warnings of the last fit, the gravest first, or one line that says that the fit was checked;
/// none without control points.
std::vector<StripLine> StripOf(FindingsCache& findings);

/// A table whose first column is set to the left and the others to the right.
struct FindingsTable {
    struct Row {
        std::vector<std::string> cells;
        bool isMarked = false;
    };
    std::vector<std::string> headings;
    std::vector<Row> rows{};
};

/// The figures of accuracy, each with the divisor of its sum of squares; then those of the whole
/// fit.
FindingsTable FiguresTable(FindingsCache& findings);
/// The coefficients and what follows from them, each with its standard deviation.
FindingsTable ParametersTable(FindingsCache& findings, AngleUnit unit = AngleUnit::kDegrees);
/// The types of the advice in their order; the advised one is marked, by a star too.
FindingsTable TypesTable(FindingsCache& findings);
/// Which type is advised, in words.
std::string AdviceText(FindingsCache& findings);

}  // namespace kv_tr
