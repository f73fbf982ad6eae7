// What a user does with a set of control points: exclude, lower the type, swap, fit again.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "kv_tr/fit/fit.h"
#include "kv_tr/fit/point_sums.h"

namespace kv_tr {

/// The least and the greatest coordinates of points.
struct Extent {
    Point least;
    Point greatest;
};

/// A set of control points, the type that is fitted to them, and the last fit.
///
/// An adjustment is a value: copies are independent, it shows nothing and knows no global. One
/// object belongs to one thread at a time; different ones may be used in different threads.
///
///     kv_tr::Adjustment adjustment(points, kv_tr::Type::kAffine);
///     adjustment.Toggle(7);  // excludes the eighth point and lowers the type if it has to
///     if (adjustment.Fit().Succeeded()) Use(adjustment.Result());
class Adjustment {
public:
    Adjustment() = default;
    explicit Adjustment(std::span<const ControlPoint> points, Type type = Type::kHelmert)
        : type_(type) {
        Append(points);
    }

    // Control points.

    std::span<const ControlPoint> Points() const { return points_; }
    std::size_t UsedCount() const { return points_.size() - excludedCount_; }
    std::size_t ExcludedCount() const { return excludedCount_; }
    /// The centroids of all points, excluded ones included; of an empty set those of the points
    /// before.
    PointMeans Means() const { return means_; }
    /// The extent of all destination coordinates; of an empty set that of the points before.
    std::optional<Extent> DestinationExtent() const { return extent_; }

    /// Adds copies behind the points that are there; they may be points of this set. Points may be
    /// added one by one.
    void Append(std::span<const ControlPoint> points);
    /// Takes points in the place of those that are there.
    void Assign(std::span<const ControlPoint> points);
    /// Replaces one point, its mark included. The index must exist.
    void Replace(std::size_t index, const ControlPoint& point);

    /// Excludes a point, or takes one back. False for an index beyond the points, and for a point
    /// that is one of exactly two in use; nothing changes then.
    bool Toggle(std::size_t index);
    /// Takes all points back.
    void UseAll();
    /// Takes the excluded points out of the set.
    void RemoveExcluded();
    /// Exchanges source and destination of all points. Result and residuals stay.
    void Swap();
    /// Whether they are exchanged. Points assigned in the place of others are not; who assigns the
    /// same points again says that they still are.
    bool IsSwapped() const { return swapped_; }
    void SetSwapped(bool swapped) { swapped_ = swapped; }

    // The type.

    /// The type that the next fit fits.
    Type FitType() const { return type_; }
    void SetType(Type type) { type_ = type; }
    /// Whether enough points are in use for a type.
    bool IsEnoughFor(Type type) const;
    /// Lowers the type by one step when too few points are in use for it; the new type, or nothing
    /// when none was needed or there is none below.
    std::optional<Type> LowerType();

    // The fit.

    /// Fits the type to the points in use and updates result, residuals and figures. They stay as
    /// they are when nothing can be computed.
    FitOutcome Fit(const FitOptions& options = {});
    /// The transformation of the last fit, of its type. Coefficients that the type does not have
    /// are those of an earlier fit of one that has them; no image depends on them.
    const Transformation& Result() const { return result_; }
    /// Takes a transformation and its type; residuals and figures stay.
    void SetResult(const Transformation& transformation);
    /// One a point, in their order; zero for points that were added since the last fit.
    std::span<const Residual> Residuals() const { return residuals_; }
    /// Sets the residuals of the last points, as many as are given: those that came with them.
    void SetLastResiduals(std::span<const Residual> residuals);
    /// Accuracy figures of the last fit over the points then in use, 0 before the first.
    const Statistics& Figures() const { return figures_; }
    /// Whether the last fit was right when it was made.
    const TruthCheck& Check() const { return check_; }
    /// What became of the last fit that computed something, and which solution it computed.
    const FitOutcome& Outcome() const { return outcome_; }
    Solution FittedSolution() const { return solution_; }

private:
    void Add(std::vector<ControlPoint> points);
    void Widen(std::span<const ControlPoint> points);
    void SumUp();

    std::vector<ControlPoint> points_;
    std::vector<Residual> residuals_;
    std::size_t excludedCount_ = 0;
    bool swapped_ = false;
    PointSums sums_;
    PointMeans means_;
    std::optional<Extent> extent_;
    Type type_ = Type::kHelmert;
    Transformation result_;
    Statistics figures_;
    TruthCheck check_;
    FitOutcome outcome_;
    Solution solution_ = Solution::kDocumented;
};

}  // namespace kv_tr
