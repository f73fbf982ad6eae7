// A plan as marks in the order in which they are painted, without a toolkit.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "kv_tr/forms/colour.h"
#include "kv_tr/model/point.h"

namespace kv_tr {

/// What a mark stands for, which decides its colour.
enum class PlanInk {
    kText,
    kFaint,
    kCoordinate,
    kGood,
    kOverLimit,
    kSuspect,
    kExcluded,
    kSelected,
    kHull,
    kEllipse,
    kDistortion,
};

enum class PlanPaper { kLight, kDark };

/// Colours that people who do not tell red from green can tell apart.
Colour ColourOf(PlanInk ink, PlanPaper paper);

/// Lines of one kind.
struct PlanLines {
    struct Segment {
        Point from;
        Point to;
    };
    PlanInk ink = PlanInk::kText;
    double width = 1;
    bool isDashed = false;
    std::vector<Segment> segments{};
};

/// Marks of one shape. The size reaches from the middle to the rim.
struct PlanSymbols {
    enum class Shape { kDisc, kTriangle, kDiamond, kCircle };  ///< the circle alone is hollow
    Shape shape = Shape::kDisc;
    PlanInk ink = PlanInk::kText;
    double size = 3;
    double width = 1;  ///< of the rim
    std::vector<Point> places{};
};

/// The corners of a triangle or a diamond of size 1.
std::span<const Point> CornersOf(PlanSymbols::Shape shape);

struct PlanText {
    enum class Anchor { kStart, kMiddle, kEnd };
    Point base;  ///< on the base line of the letters
    std::string text{};
    Anchor anchor = Anchor::kStart;
    PlanInk ink = PlanInk::kText;
    double size = 11;  ///< of the font
    bool isBold = false;
};

using PlanItem = std::variant<PlanLines, PlanSymbols, PlanText>;

struct PlanRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
    bool Contains(Point point) const {
        return point.first >= left && point.first <= right && point.second >= top &&
               point.second <= bottom;
    }
};

/// Units are those of a screen, 96 to the inch; the second axis runs downwards.
struct PlanPicture {
    double width = 0;
    double height = 0;
    PlanRect frame{};                 ///< of the plan itself
    std::vector<PlanItem> inside{};   ///< cut off at the frame
    std::vector<PlanItem> outside{};  ///< legend, title
    std::size_t shown = 0;            ///< how many pairs have a mark
};

/// The height of the letters of names and legend.
inline constexpr double kPlanText = 11;

/// About the space that a text takes.
PlanRect BoxOf(const PlanText& text);

/// About how wide a text is.
double PlanTextWidth(const std::string& text, double size = kPlanText);

}  // namespace kv_tr
