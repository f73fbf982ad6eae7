// The set of control points that an engine fits to.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/records.h"

namespace kv_tr {

/// Control points in the order they were added, with their used and excluded counts, and the
/// means and the extent that are kept up to date whenever the set changes.
class ControlPoints {
public:
    /// The least and greatest coordinates; all-enclosing until points are added.
    struct Extent {
        PlanePoint least{-100000000.0, -100000000.0};
        PlanePoint greatest{100000000.0, 100000000.0};
    };

    /// Adds copies of the pairs behind the ones that are there, or in their place.
    void Add(std::span<const typeXYs4Tr> pairs, bool append);

    /// Lets the pairs go but keeps the counts; until Add replaces the set, asking for pairs is
    /// RuntimeError kSubscript.
    void Release();

    std::span<const typeXYs4Tr> All() const;
    std::span<typeXYs4Tr> All();
    std::vector<typeXYs4Tr> Selected(bool used) const;

    std::int32_t FullCount() const { return fullCount_; }
    std::int32_t NotUsedCount() const { return notUsedCount_; }
    std::int32_t UsedCount() const { return fullCount_ - notUsedCount_; }
    /// Whether the last Add left any pair in the set.
    bool HasPoints() const { return fullCount_ != 0; }

    /// Means over all pairs, excluded ones included.
    PlanePoint SourceMean() const { return sourceMean_; }
    PlanePoint DestinationMean() const { return destinationMean_; }
    const Extent& DestinationExtent() const { return extent_; }

    /// Exchanges source and destination of every pair. Residuals and marks stay.
    void Swap();
    void UseAll();
    /// Excludes a used pair, includes an excluded one. The index must exist.
    void Toggle(std::int32_t index);

private:
    // Both continue where the pairs before ended, so that adding pairs one by one costs no more
    // than adding them at once, and yields the same bits.
    void UpdateMeans(std::span<const typeXYs4Tr> added);
    void Widen(std::span<const typeXYs4Tr> added);

    std::vector<typeXYs4Tr> pairs_;
    std::int32_t fullCount_ = 0;
    std::int32_t notUsedCount_ = 0;
    PlanePoint sourceSum_;  // in the order of the pairs
    PlanePoint destinationSum_;
    PlanePoint sourceMean_;
    PlanePoint destinationMean_;
    Extent extent_;
};

}  // namespace kv_tr
