// The least-squares solution of a type in its frame, to all digits that the points determine.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "kv_tr/fit/closed_fit.h"
#include "kv_tr/fit/design.h"
#include "kv_tr/model/control_point.h"

namespace kv_tr {

/// The weighted least-squares solution of a type for the points in use.
///
/// It is found by an orthogonal factorisation in a frame of the points, or by a closed formula, and
/// stays in that frame, where nothing cancels. Statistics belong to this solution.
/// docs/mathematics.md derives it. The object is a value and shares nothing.
class AdjustedModel {
public:
    /// Of the points in use; standard deviations of their destination coordinates, metres, a pair a
    /// point, excluded ones included, or none. They must be positive, and both of a pair the same
    /// where the coordinates share unknowns: otherwise std::invalid_argument.
    AdjustedModel(std::span<const ControlPoint> points, Type type,
                  std::span<const Point> sigmas = {});

    Type Model() const { return design_.Model(); }
    const Frame& InFrame() const { return design_.InFrame(); }
    const Design& Rows() const { return design_; }
    /// Of the rows of a coordinate, 0 or 1; the same one unless standard deviations differ.
    const TriangularFactor& Factor(std::size_t coordinate = 0) const {
        return coordinate == 1 && secondFactor_ ? *secondFactor_ : factor_;
    }
    /// The cofactors of transformed source points.
    std::vector<Design::PointCofactors> CofactorsAt(std::span<const Point> sources) const;
    /// The matrix and the centroids of the models that share unknowns.
    const std::optional<ClosedFit>& Closed() const { return closed_; }

    int Unknowns() const { return UnknownsOf(Model()); }  ///< of both coordinates together
    int Rank() const;                                     ///< how many the points determine
    int Redundancy() const { return 2 * static_cast<int>(sources_.size()) - Rank(); }
    /// Whether the solution exists, unique.
    bool IsDetermined() const;

    /// The points in use, in their order.
    std::span<const Point> Sources() const { return sources_; }
    std::span<const Point> Destinations() const { return destinations_; }
    /// The weights of their coordinates, 1 without standard deviations, 1/σ² with them.
    std::span<const Point> Weights() const { return weights_; }
    /// Computed less measured, metres.
    std::span<const Point> Residuals() const { return residuals_; }
    /// The weighted sum of the squares of the residuals: of the first coordinate, and the second.
    Point SquareSums() const;
    double SquareSum() const { return SquareSums().first + SquareSums().second; }

    /// The images of points, of which nothing is lost by coefficients that cancel.
    std::vector<Point> Images(std::span<const Point> sources) const;

    /// The coefficients of the solution, of a polynomial about an origin. They are rounded to
    /// doubles: where they cancel, the record cannot hold the solution, and CheckFit tells.
    Transformation Record(Type type, Point origin) const;

private:
    std::vector<double> WeightsOf(double Point::*coordinate) const;
    std::vector<double> RootsOf(double Point::*coordinate) const;
    /// How the unknowns that remove what is missing move points of the frame.
    Transformation Explain(std::span<const Point> missing) const;
    void Solve();
    /// The images, less the centroid of the destinations.
    std::vector<Point> ReducedImages(std::span<const Point> sources) const;

    std::vector<Point> sources_;
    std::vector<Point> destinations_;
    std::vector<Point> weights_;
    bool sameWeights_;
    std::optional<ClosedFit> closed_;
    Design design_;
    std::vector<Point> inFrame_;
    Point destination_;  // the centroid
    TriangularFactor factor_;
    std::optional<TriangularFactor> secondFactor_;
    Transformation solution_;  // from the frame to differences from that centroid
    std::vector<Point> residuals_;
};

}  // namespace kv_tr
