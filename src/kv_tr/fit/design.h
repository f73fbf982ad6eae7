// The design of a model in the frame of its points.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "kv_tr/fit/frame.h"
#include "kv_tr/fit/triangular_factor.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// The rotation, radians, and the scales at which a model that is not linear is taken.
struct Linearisation {
    double rotation = 0;
    double scaleFirst = 1;
    double scaleSecond = 1;
};
/// Those of a linear transformation.
Linearisation LinearisationAt(const Transformation& transformation);

/// The rows of a model, one a point where each coordinate has unknowns of its own, otherwise one
/// for each coordinate of a point.
///
/// With coordinates (p, q) in the frame the rows of Helmert are (1, 0, p, -q) and (0, 1, q, p); of
/// Helmert with 3 and affine with 5 unknowns the derivatives at a rotation and two scales; of the
/// others the terms of evaluate.h, 1, p, q, p², ...
class Design {
public:
    using Block = OrthogonalReduction::Block;

    Design(Type model, const Frame& frame, const Linearisation& at = {});

    Type Model() const { return model_; }
    const Frame& InFrame() const { return frame_; }
    /// The columns of a row.
    std::size_t Columns() const { return columns_; }
    std::size_t RowsPerPoint() const { return SharesUnknowns(model_) ? 2 : 1; }

    /// Sets the columns of a block to the rows of a coordinate, 0 or 1, of points in the frame, as
    /// many as a block has rows at most. Both coordinates have the same rows unless the model
    /// shares unknowns.
    void Fill(std::span<const Point> inFrame, std::size_t coordinate, Block& block) const;

    /// The factor of the rows of points in the frame, each multiplied by the root of its weight
    /// where there are weights, with what is right of the equals sign: a vector for each point.
    TriangularFactor Factor(std::span<const Point> inFrame, std::span<const Point> right,
                            std::span<const double> rootWeights = {}) const;

    /// How unknowns move points: what their rows add, as a polynomial of frame coordinates about 0.
    /// Where the coordinates share no unknowns, those of the second come by themselves.
    Transformation Change(std::span<const double> unknowns, std::span<const double> ofSecond) const;
    /// The same of a solution.
    Transformation Change(const TriangularFactor& factor) const;

    /// The cofactors of both coordinates of a transformed point, in the frame.
    struct PointCofactors {
        double first = 0;
        double mixed = 0;
        double second = 0;

        double Greatest() const;  ///< eigenvalue
    };
    std::vector<PointCofactors> CofactorsAt(const TriangularFactor& factor,
                                            std::span<const Point> inFrame) const;

private:
    using Column = std::array<double, OrthogonalReduction::kRows>;

    void FillTerms(const Column& p, const Column& q, Block& block) const;
    void FillShared(const Column& p, const Column& q, std::size_t coordinate, Block& block) const;

    Type model_;
    Frame frame_;
    std::size_t columns_;
    double sine_;
    double cosine_;
    double scaleFirst_;
    double scaleSecond_;
};

/// Points as they stand in a frame.
std::vector<Point> Into(const Frame& frame, std::span<const Point> points);

/// The images of points.
std::vector<Point> ImagesOf(const Transformation& transformation, std::span<const Point> points);

}  // namespace kv_tr
