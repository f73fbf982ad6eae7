// The legend of a plan: what its marks mean, its scale bars, its axes.
#include "kv_tr/forms/plan_legend.h"

#include <algorithm>
#include <functional>

#include "kv_tr/forms/plan_layers.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

constexpr double kRow = 18;
constexpr double kMargin = 6;
constexpr double kEntryGap = 18;   // between entries
constexpr double kScaleBar = 100;  // at most

/// One matter: a sign and a text to its right.
struct Entry {
    double signWidth = 0;                                       // with the gap behind
    std::function<void(std::vector<PlanItem>&, Point)> sign{};  // at the middle of its left edge
    std::string text{};
    double width = 0;  // of both, at most
};

Entry TextEntry(const std::string& text) { return {.text = text, .width = PlanTextWidth(text)}; }

Entry LineEntry(const PlanLines& line, const std::string& text) {
    constexpr double kLength = 22;
    return {kLength + 5,
            [line](std::vector<PlanItem>& items, Point at) {
                PlanLines drawn = line;
                drawn.segments = {{at, {at.first + kLength, at.second}}};
                items.emplace_back(std::move(drawn));
            },
            text, kLength + 5 + PlanTextWidth(text)};
}

/// A bar of a length with upright ends. The entry keeps the same width whatever the length is.
Entry BarEntry(double length, double mostLength, PlanInk ink, const std::string& word,
               const std::string& lengthText) {
    constexpr const char* kLongText = "0.0005 mm";
    return {length + 5,
            [=](std::vector<PlanItem>& items, Point at) {
                const double right = at.first + length;
                items.emplace_back(
                    PlanLines{.ink = ink,
                              .width = 1.5,
                              .segments = {{at, {right, at.second}},
                                           {{at.first, at.second - 4}, {at.first, at.second + 4}},
                                           {{right, at.second - 4}, {right, at.second + 4}}}});
            },
            word + lengthText, mostLength + 5 + PlanTextWidth(word + kLongText)};
}

Entry SymbolEntry(PlanKind kind, const std::string& word, std::size_t count) {
    const std::string text = word + " " + std::to_string(count);
    return {14,
            [kind](std::vector<PlanItem>& items, Point at) {
                PlanSymbols symbols = SymbolsOf(kind);
                symbols.places = {{at.first + 6, at.second}};
                items.emplace_back(std::move(symbols));
            },
            text, 14 + PlanTextWidth(text)};
}

std::vector<Entry> Entries(const PlanIndex& index, const PlanWords& words,
                           const PlanOptions& options, const LegendFigures& figures) {
    const NumberStyle style = words.numbers;
    const PlanData& data = index.Data();
    std::vector<Entry> entries;

    const double plan = RoundBelow(kScaleBar * figures.metresPerUnit);
    entries.push_back(BarEntry(plan / figures.metresPerUnit, kScaleBar, PlanInk::kText, "",
                               RoundLengthText(plan, style)));
    const double bar = figures.vectors.bar;
    if (bar > 0 && (options.showsVectors || options.showsEllipses)) {
        const double round = RoundBelow(bar);
        entries.push_back(BarEntry(kVectorBar * round / bar, kVectorBar, PlanInk::kGood,
                                   words.residuals + " ", RoundLengthText(round, style)));
    }
    const std::string limit =
        data.limit > 0 ? " (" + ShortestText(data.limit, style) + " m)" : std::string();
    entries.push_back(SymbolEntry(PlanKind::kGood, words.good, index.Count(PlanKind::kGood)));
    const std::pair<PlanKind, std::string> others[] = {
        {PlanKind::kOverLimit, words.overLimit + limit},
        {PlanKind::kSuspect, words.suspect},
        {PlanKind::kExcluded, words.excluded}};
    for (const auto& [kind, word] : others) {
        if (index.Count(kind) > 0) entries.push_back(SymbolEntry(kind, word, index.Count(kind)));
    }
    const std::size_t total = data.pairs.size();
    const std::string of = " / " + std::to_string(total);
    entries.push_back(TextEntry(words.shown + " " + std::to_string(figures.shown) + of));
    entries.back().width = PlanTextWidth(words.shown + " " + std::to_string(total) + of);
    if (options.showsHull && !data.hull.empty()) {
        entries.push_back(
            LineEntry({.ink = PlanInk::kHull, .width = 1.2, .isDashed = true}, words.hull));
    }
    if (options.showsEllipses && !data.ellipses.empty()) {
        entries.push_back(LineEntry({.ink = PlanInk::kEllipse}, words.ellipses));
    }
    const bool hasDistortion = options.showsDistortion && !index.Isolines().IsEmpty();
    if (hasDistortion) {
        const auto constant = index.Isolines().constant;
        entries.push_back(LineEntry(
            {.ink = PlanInk::kDistortion},
            words.distortion + (constant ? " " + FixedText(*constant, 2, style) : std::string())));
    }
    if (options.showsVectors && figures.isAnyCut) {
        constexpr double kLength = 22;
        entries.push_back(LineEntry({.ink = PlanInk::kExcluded, .width = 1.2}, words.cut));
        entries.back().sign = [](std::vector<PlanItem>& items, Point at) {
            PlanLines arrow{.ink = PlanInk::kExcluded, .width = 1.2};
            arrow.segments = {{at, {at.first + kLength, at.second}}};
            for (const double tip : {at.first + kLength, at.first + kLength - 6}) {
                AddArrowHead(arrow.segments, {tip, at.second}, {1, 0}, 6);
            }
            items.emplace_back(std::move(arrow));
        };
    }
    return entries;
}

/// Calls what is given with each entry and its place in rows of a width; returns how many rows.
template <class Action>
int Flow(const std::vector<Entry>& entries, double width, const Action& action) {
    double x = kMargin;
    int row = 0;
    for (const Entry& entry : entries) {
        const bool isFirst = x == kMargin;
        if (!isFirst && x + entry.width > width - kMargin) {
            x = kMargin;
            ++row;
        }
        action(entry, Point{x, kMargin + (row + 0.5) * kRow});
        x += entry.width + kEntryGap;
    }
    return row + 1;
}

}  // namespace

double LegendHeight(const PlanIndex& index, const PlanWords& words, const PlanOptions& options,
                    double width) {
    const auto entries =
        Entries(index, words, options,
                {.vectors = {1}, .isAnyCut = true, .shown = index.Data().pairs.size()});
    return Flow(entries, width, [](const Entry&, Point) {}) * kRow + 2 * kMargin;
}

void AddLegend(std::vector<PlanItem>& items, const PlanIndex& index, const PlanWords& words,
               const PlanOptions& options, const LegendFigures& figures, Point corner,
               double width) {
    Flow(Entries(index, words, options, figures), width, [&](const Entry& entry, Point place) {
        const Point at{corner.first + place.first, corner.second + place.second};
        if (entry.sign) entry.sign(items, at);
        items.emplace_back(
            PlanText{.base = {at.first + entry.signWidth, at.second + kPlanText * 0.35},
                     .text = entry.text});
    });
}

void AddAxes(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
             const PlanData& data, const PlanWords& words) {
    constexpr double kLength = 28;
    constexpr double kMost = 1.0 / 3;  // of the frame, where the points need the rest
    constexpr double kEdge = 10;
    const double nameWidth = std::max(PlanTextWidth(data.right.name), PlanTextWidth(data.up.name));
    const double boxWidth = kLength + nameWidth + 2 * kEdge;
    const double boxHeight = kLength + 2 * kPlanText + kEdge;
    if (boxWidth > kMost * view.width || boxHeight > kMost * view.height) return;
    PlanLines lines{.width = 1.5};
    using Anchor = PlanText::Anchor;
    const auto arrow = [&](Point from, Point direction, Anchor anchor, const std::string& name) {
        const Point tip{from.first + kLength * direction.first,
                        from.second + kLength * direction.second};
        lines.segments.push_back({from, tip});
        AddArrowHead(lines.segments, tip, direction, 6);
        items.emplace_back(PlanText{.base = {tip.first + 4 * direction.first,
                                             tip.second + 9 * direction.second + kPlanText * 0.35},
                                    .text = name,
                                    .anchor = anchor,
                                    .isBold = true});
    };
    const double left = view.width - boxWidth;
    const double middle = kEdge + boxHeight / 2;
    if (data.hasNorthArrow) {
        arrow({left + boxWidth / 2, middle + kLength / 2}, {0, -1}, Anchor::kMiddle, words.north);
    } else {
        const double right = data.right.isReversed ? -1 : 1;
        const double down = data.up.isReversed ? 1 : -1;
        const Point origin{right > 0 ? left + kEdge : view.width - kEdge,
                           middle - down * kLength / 2};
        arrow(origin, {right, 0}, right > 0 ? Anchor::kStart : Anchor::kEnd, data.right.name);
        arrow(origin, {0, down}, right > 0 ? Anchor::kStart : Anchor::kEnd, data.up.name);
    }
    items.emplace_back(std::move(lines));
    room.Take({left, 0, view.width, boxHeight + kEdge});
}

}  // namespace kv_tr
