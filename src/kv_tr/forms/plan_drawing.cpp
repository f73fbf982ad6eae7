// A plan of control points on a surface or a page, as marks.
#include "kv_tr/forms/plan_drawing.h"

#include <algorithm>
#include <iterator>

#include "kv_tr/forms/plan_layers.h"
#include "kv_tr/forms/plan_legend.h"

namespace kv_tr {
namespace {

/// Moves a mark by so much downwards.
void MoveDown(PlanItem& item, double by) {
    if (auto* lines = std::get_if<PlanLines>(&item)) {
        for (auto& [from, to] : lines->segments) {
            from.second += by;
            to.second += by;
        }
    } else if (auto* symbols = std::get_if<PlanSymbols>(&item)) {
        for (Point& place : symbols->places) place.second += by;
    } else {
        std::get<PlanText>(item).base.second += by;
    }
}

/// What texts take of a frame.
PlanRoom RoomOf(const std::vector<PlanItem>& items, const PlanRect& frame) {
    PlanRoom room(frame);
    for (const PlanItem& item : items) {
        if (const auto* text = std::get_if<PlanText>(&item)) room.Take(BoxOf(*text));
    }
    return room;
}

}  // namespace

PlanPicture DrawPlan(const PlanIndex& index, const PlanWords& words, const PlanOptions& options,
                     const PlanView& view, std::span<const std::size_t> selected) {
    const PlanData& data = index.Data();
    PlanPicture picture{.width = view.width, .frame = view.Frame()};
    picture.height = view.height + LegendHeight(index, words, options, view.width);
    constexpr PlanKind kGood[] = {PlanKind::kGood};
    constexpr PlanKind kOthers[] = {PlanKind::kExcluded, PlanKind::kOverLimit, PlanKind::kSuspect};
    constexpr std::size_t kFirstNames = 60;  // for which good pairs make room
    constexpr std::size_t kMostNames = 3000;
    ShownPairs shown = PairsToShow(index, view, selected);
    LegendFigures figures{.metresPerUnit = view.metresPerUnit,
                          .vectors = VectorScaleOf(index, view, options)};
    PlanRoom room(picture.frame);
    auto& layers = picture.inside;
    std::vector<PlanItem> good;
    std::vector<PlanItem> others;
    std::vector<PlanItem> texts;
    const auto addMarks = [&](std::vector<PlanItem>& items, std::span<const PlanKind> kinds) {
        PlanMarks marks(room, index, figures.vectors, shown.pairs, kinds);
        if (options.showsEllipses) marks.AddEllipses(items);
        if (options.showsVectors && marks.AddVectors(items)) figures.isAnyCut = true;
        marks.AddSymbols(items);
    };
    const auto addNames = [&](std::size_t first, std::size_t beyond) {
        if (!options.showsLabels || first >= beyond) return;
        AddNames(texts, room, index, std::span(shown.pairs).subspan(first, beyond - first));
    };
    AddAxes(texts, room, view, data, words);
    if (options.showsGrid) AddGrid(layers, texts, room, view, data, words.numbers);
    addMarks(others, kOthers);
    const std::size_t early = shown.isThinned ? std::min(kFirstNames, shown.important) : 0;
    addNames(0, early);
    LeaveRoom(shown, RoomOf(texts, picture.frame));
    addMarks(good, kGood);
    if (options.showsHull) AddHull(layers, room, view, data.hull);
    addNames(early, std::min(kMostNames, shown.pairs.size()));
    if (options.showsDistortion) AddIsolines(layers, room, view, index.Isolines(), words.numbers);
    for (auto* above : {&good, &others, &texts}) {
        std::ranges::move(*above, std::back_inserter(layers));
    }
    picture.shown = figures.shown = shown.pairs.size();
    AddLegend(picture.outside, index, words, options, figures, {0, view.height}, view.width);
    return picture;
}

PlanPicture DrawPlanPage(const PlanIndex& index, const PlanWords& words,
                         const PlanOptions& options) {
    constexpr double kLongSide = 297 / 25.4 * 96 - 2 * kPageMargin;
    constexpr double kShortSide = 210 / 25.4 * 96 - 2 * kPageMargin;
    constexpr double kTitle = 18;
    constexpr double kNote = 12;
    constexpr double kStep = 17;
    const double head = kStep * (static_cast<double>(words.notes.size()) + 1) + 12;
    const auto viewOn = [&](double width, double height) {
        constexpr double kLeastHeight = 100;  // however many notes there are
        const double legend = LegendHeight(index, words, options, width);
        return ViewOf(index.Extent(), width, std::max(kLeastHeight, height - head - legend));
    };
    const PlanView lying = viewOn(kLongSide, kShortSide);
    const PlanView upright = viewOn(kShortSide, kLongSide);
    PlanPicture page = DrawPlan(index, words, options,
                                upright.metresPerUnit < lying.metresPerUnit ? upright : lying);
    for (auto* items : {&page.inside, &page.outside}) {
        for (PlanItem& item : *items) MoveDown(item, head);
    }
    page.frame.top += head;
    page.frame.bottom += head;
    page.height += head;
    double base = kTitle;
    page.outside.emplace_back(
        PlanText{.base = {0, base}, .text = words.title, .size = kTitle, .isBold = true});
    for (const std::string& note : words.notes) {
        base += kStep;
        page.outside.emplace_back(PlanText{.base = {0, base}, .text = note, .size = kNote});
    }
    return page;
}

}  // namespace kv_tr
