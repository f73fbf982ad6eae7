// A plan as marks in the order in which they are painted, without a toolkit.
#include "kv_tr/forms/plan_picture.h"

#include "kv_tr/text/code_page.h"

namespace kv_tr {

Colour ColourOf(PlanInk ink, PlanPaper paper) {
    const bool light = paper == PlanPaper::kLight;
    switch (ink) {
        case PlanInk::kText: return light ? Colour{32, 32, 32} : Colour{230, 230, 230};
        case PlanInk::kFaint: return light ? Colour{205, 205, 205} : Colour{75, 75, 75};
        case PlanInk::kCoordinate: return light ? Colour{105, 105, 105} : Colour{165, 165, 165};
        case PlanInk::kGood: return light ? Colour{0, 98, 168} : Colour{96, 182, 240};
        case PlanInk::kOverLimit: return light ? Colour{190, 116, 0} : Colour{240, 178, 50};
        case PlanInk::kSuspect: return light ? Colour{200, 20, 60} : Colour{255, 110, 120};
        case PlanInk::kExcluded: return light ? Colour{115, 115, 115} : Colour{160, 160, 160};
        case PlanInk::kSelected: return light ? Colour{0, 0, 0} : Colour{255, 255, 255};
        case PlanInk::kHull: return light ? Colour{120, 140, 120} : Colour{120, 150, 120};
        case PlanInk::kEllipse: return light ? Colour{130, 90, 160} : Colour{190, 150, 220};
        case PlanInk::kDistortion: return light ? Colour{0, 125, 100} : Colour{70, 190, 160};
    }
    return {};
}

std::span<const Point> CornersOf(PlanSymbols::Shape shape) {
    static constexpr Point kTriangle[] = {{0, -1.15}, {1, 0.75}, {-1, 0.75}};
    static constexpr Point kDiamond[] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
    if (shape == PlanSymbols::Shape::kTriangle) return kTriangle;
    return kDiamond;
}

PlanRect BoxOf(const PlanText& text) {
    using Anchor = PlanText::Anchor;
    const double width = PlanTextWidth(text.text, text.size);
    const double before = text.anchor == Anchor::kStart ? 0
                          : text.anchor == Anchor::kEnd ? width
                                                        : width / 2;
    const auto [x, y] = text.base;
    return {x - before, y - 0.85 * text.size, x - before + width, y + 0.15 * text.size};
}

double PlanTextWidth(const std::string& text, double size) {
    constexpr double kLetter = 0.64;  // of a digit in wide fonts
    return kLetter * size * static_cast<double>(DisplayWidth(text));
}

}  // namespace kv_tr
