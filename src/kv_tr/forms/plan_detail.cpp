// Which of many pairs are drawn, and where there is room for their names.
#include "kv_tr/forms/plan_detail.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

constexpr std::size_t kCrowd = 2000;  // so many pairs of a kind are shown one by one
constexpr double kCell = 2;           // of a room

/// The square cells of a grid over a frame, each of which can be taken once.
class Grid {
public:
    /// One corner of the grid lies at the anchor, wherever that is.
    Grid(const PlanRect& frame, double size, Point anchor)
        : size_(size),
          left_(Before(anchor.first)),
          top_(Before(anchor.second)),
          columns_(CountAlong(frame.Width())),
          taken_(columns_ * CountAlong(frame.Height())) {}

    bool Take(Point at) {
        const auto column = static_cast<std::size_t>((at.first - left_) / size_);
        const auto row = static_cast<std::size_t>((at.second - top_) / size_);
        auto cell = taken_[row * columns_ + column];
        if (cell) return false;
        cell = true;
        return true;
    }

private:
    /// A corner of the grid shortly before the frame.
    double Before(double anchor) const {
        return std::isfinite(anchor) ? std::remainder(anchor, size_) - size_ : -size_;
    }
    std::size_t CountAlong(double length) const {
        return static_cast<std::size_t>(length / size_) + 4;
    }

    double size_;
    double left_;
    double top_;
    std::size_t columns_;
    std::vector<bool> taken_;
};

double CellOf(PlanKind kind, std::size_t countInView) {
    if (countInView > kCrowd && kind == PlanKind::kGood) return 20;
    if (countInView > kCrowd && kind == PlanKind::kOverLimit) return 9;
    return 1;
}

}  // namespace

ShownPairs PairsToShow(const PlanIndex& index, const PlanView& view,
                       std::span<const std::size_t> selected) {
    const PlanRect frame = view.Frame();
    std::vector<bool> isSelected(index.Data().pairs.size());
    for (const std::size_t pair : selected) isSelected[pair] = true;
    std::vector<ShownPair> inView;
    inView.reserve(index.WorstFirst().size());
    std::array<std::size_t, kPlanKinds> counts{};
    for (const auto& [place, length, i, kind] : index.WorstFirst()) {
        const Point at = view.ToSurface(place);
        if (!frame.Contains(at)) continue;
        inView.push_back({i, kind, at, length, isSelected[i]});
        ++counts[static_cast<std::size_t>(kind)];
    }
    if (inView.empty()) return {};

    const Point anchor = view.ToSurface(index.Extent()->least);
    std::vector<Grid> grids;
    for (std::size_t kind = 0; kind < kPlanKinds; ++kind) {
        grids.emplace_back(frame, CellOf(static_cast<PlanKind>(kind), counts[kind]), anchor);
    }
    Grid selectedGrid(frame, 1, anchor);
    std::erase_if(inView, [&](const ShownPair& shown) {
        Grid& grid = shown.isSelected ? selectedGrid : grids[static_cast<std::size_t>(shown.kind)];
        return !grid.Take(shown.at);
    });
    const auto isImportant = [](const ShownPair& pair) {
        return pair.isSelected || pair.kind != PlanKind::kGood;
    };
    std::stable_partition(inView.begin(), inView.end(),
                          [](const ShownPair& pair) { return pair.isSelected; });
    const auto important = std::ranges::find_if_not(inView, isImportant) - inView.begin();
    return {std::move(inView), counts[static_cast<std::size_t>(PlanKind::kGood)] > kCrowd,
            static_cast<std::size_t>(important)};
}

void LeaveRoom(ShownPairs& shown, const PlanRoom& room) {
    if (!shown.isThinned) return;
    constexpr double kReach = 4;  // of the mark of a good pair
    auto& pairs = shown.pairs;
    const auto covers = [&room](const ShownPair& pair) {
        const auto [x, y] = pair.at;
        return room.IsTaken({x - kReach, y - kReach, x + kReach, y + kReach});
    };
    const auto begin = pairs.begin() + static_cast<std::ptrdiff_t>(shown.important);
    pairs.erase(std::remove_if(begin, pairs.end(), covers), pairs.end());
}

PlanRoom::PlanRoom(const PlanRect& frame)
    : frame_(frame),
      columns_(static_cast<int>(frame.Width() / kCell) + 1),
      rows_(static_cast<int>(frame.Height() / kCell) + 1),
      taken_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)) {}

PlanRoom::Cells PlanRoom::CellsOf(const PlanRect& rect) const {
    const auto cell = [](double from, int count) {
        return static_cast<int>(std::clamp(from / kCell, 0.0, double{1} * count));
    };
    return {cell(rect.left - frame_.left, columns_), cell(rect.top - frame_.top, rows_),
            cell(rect.right - frame_.left + kCell, columns_),
            cell(rect.bottom - frame_.top + kCell, rows_)};
}

void PlanRoom::Take(const PlanRect& rect) {
    const auto [left, top, right, bottom] = CellsOf(rect);
    for (int row = top; row < bottom; ++row) {
        const auto begin = taken_.begin() + static_cast<std::ptrdiff_t>(row) * columns_;
        std::fill(begin + left, begin + right, true);
    }
}

void PlanRoom::TakeAlong(const PlanLines::Segment& segment) {
    const auto [from, to] = segment;
    const double length = Hypotenuse(to.first - from.first, to.second - from.second);
    const int steps = static_cast<int>(length / kCell) + 1;
    for (int i = 0; i <= steps; ++i) {
        const double part = double{1} * i / steps;
        const double x = from.first + part * (to.first - from.first);
        const double y = from.second + part * (to.second - from.second);
        if (!frame_.Contains({x, y})) continue;
        const auto column = static_cast<std::size_t>((x - frame_.left) / kCell);
        const auto row = static_cast<std::size_t>((y - frame_.top) / kCell);
        taken_[row * static_cast<std::size_t>(columns_) + column] = true;
    }
}

bool PlanRoom::IsTaken(const PlanRect& rect) const {
    const auto [left, top, right, bottom] = CellsOf(rect);
    for (int row = top; row < bottom; ++row) {
        const auto begin = taken_.begin() + static_cast<std::ptrdiff_t>(row) * columns_;
        if (std::find(begin + left, begin + right, true) != begin + right) return true;
    }
    return false;
}

bool PlanRoom::IsFree(const PlanRect& rect) const {
    return rect.left >= frame_.left && rect.right <= frame_.right && rect.top >= frame_.top &&
           rect.bottom <= frame_.bottom && !IsTaken(rect);
}

}  // namespace kv_tr
