// The set of control points that an engine fits to.
#include "engine/control_points.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "support/errors.h"

namespace kv_tr {

void ControlPoints::Add(std::span<const typeXYs4Tr> pairs, bool append) {
    if (append) {
        std::as_const(*this).All();  // not to pairs that have been released
    } else {
        notUsedCount_ = 0;
    }
    std::vector<typeXYs4Tr> added(pairs.begin(), pairs.end());  // they may be pairs of this set
    if (append) {
        pairs_.insert(pairs_.end(), std::make_move_iterator(added.begin()),
                      std::make_move_iterator(added.end()));
    } else {
        pairs_ = std::move(added);
    }
    const auto before = append ? static_cast<std::size_t>(fullCount_) : 0;
    fullCount_ = static_cast<std::int32_t>(pairs_.size());
    const auto fresh = std::span<const typeXYs4Tr>(pairs_).subspan(before);
    notUsedCount_ += static_cast<std::int32_t>(
        std::ranges::count_if(fresh, [](const typeXYs4Tr& pair) { return bool{pair.bNotUsed}; }));
    if (fresh.empty()) return;
    if (before == 0) {
        sourceSum_ = destinationSum_ = {};
        extent_.least = extent_.greatest = {fresh[0].dXdest, fresh[0].dYdest};
    }
    UpdateMeans(fresh);
    Widen(fresh);
}

void ControlPoints::Release() {
    pairs_.clear();
    pairs_.shrink_to_fit();
}

std::span<const typeXYs4Tr> ControlPoints::All() const {
    if (pairs_.size() != static_cast<std::size_t>(fullCount_)) {
        throw RuntimeError(ErrorNumber::kSubscript, "The control points have been released");
    }
    return pairs_;
}

std::span<typeXYs4Tr> ControlPoints::All() {
    std::as_const(*this).All();
    return pairs_;
}

std::vector<typeXYs4Tr> ControlPoints::Selected(bool used) const {
    std::vector<typeXYs4Tr> selected;
    std::ranges::copy_if(All(), std::back_inserter(selected),
                         [used](const typeXYs4Tr& pair) { return pair.bNotUsed != used; });
    return selected;
}

void ControlPoints::Swap() {
    for (typeXYs4Tr& pair : All()) {
        std::swap(pair.dXsour, pair.dXdest);
        std::swap(pair.dYsour, pair.dYdest);
    }
    std::swap(sourceSum_, destinationSum_);
    std::swap(sourceMean_, destinationMean_);
    if (pairs_.empty()) return;
    extent_.least = extent_.greatest = {pairs_.front().dXdest, pairs_.front().dYdest};
    Widen(pairs_);
}

void ControlPoints::UseAll() {
    for (typeXYs4Tr& pair : All()) pair.bNotUsed = false;
    notUsedCount_ = 0;
}

void ControlPoints::Toggle(std::int32_t index) {
    typeXYs4Tr& pair = All()[static_cast<std::size_t>(index)];
    pair.bNotUsed = !pair.bNotUsed;
    notUsedCount_ += pair.bNotUsed ? 1 : -1;
}

void ControlPoints::UpdateMeans(std::span<const typeXYs4Tr> added) {
    for (const typeXYs4Tr& pair : added) {
        sourceSum_.first += pair.dXsour;
        sourceSum_.second += pair.dYsour;
        destinationSum_.first += pair.dXdest;
        destinationSum_.second += pair.dYdest;
    }
    const double count = fullCount_;
    sourceMean_ = {sourceSum_.first / count, sourceSum_.second / count};
    destinationMean_ = {destinationSum_.first / count, destinationSum_.second / count};
}

void ControlPoints::Widen(std::span<const typeXYs4Tr> pairs) {
    for (const typeXYs4Tr& pair : pairs) {
        extent_.least.first = std::min(extent_.least.first, pair.dXdest);
        extent_.least.second = std::min(extent_.least.second, pair.dYdest);
        extent_.greatest.first = std::max(extent_.greatest.first, pair.dXdest);
        extent_.greatest.second = std::max(extent_.greatest.second, pair.dYdest);
    }
}

}  // namespace kv_tr
