// How well a fitted transformation determines the image of a point.
#pragma once

#include <span>
#include <vector>

#include "kv_tr/analysis/assessment.h"

namespace kv_tr {

/// The standard deviation of transformed points, as far as the control points determine it. It
/// assumes that the type is right: a polynomial errs more where the truth is none.
class PointPrecision {
public:
    explicit PointPrecision(AdjustedModel model);

    /// A standard deviation of unit weight: of the fit, or the one known beforehand.
    double Sigma0() const { return sigma0_; }
    void SetSigma0(double sigma0) { sigma0_ = sigma0; }

    /// The covariance of both coordinates of an image, metres².
    struct Covariance {
        double first = 0;
        double mixed = 0;
        double second = 0;

        double SigmaFirst() const;
        double SigmaSecond() const;
        /// The half axes of the ellipse of one standard deviation, metres.
        double Greatest() const;
        double Least() const;
        /// The direction of the greater one, radians from the first axis to the second, [0, π).
        double Direction() const;
    };
    /// Not numbers without redundancy.
    std::vector<Covariance> At(std::span<const Point> sources) const;

    /// The greatest standard deviation of a coordinate there over that of a control point, and over
    /// the area that the control points span.
    std::vector<double> Factors(std::span<const Point> sources) const;
    double HullFactor() const { return hullFactor_; }

    std::span<const Point> Hull() const { return hull_; }

    /// What points outside the hull of the control points are in for.
    struct Extrapolation {
        std::size_t count = 0;      ///< points outside
        double farthest = 0;        ///< from the hull, metres of the source
        double sigma = kUndefined;  ///< the greatest standard deviation of those, metres
        /// Takes in those of other points.
        void Add(const Extrapolation& other);

        bool isFar = false;  ///< a factor above 3, or farther than a tenth of the hull's diameter
    };
    Extrapolation Outside(std::span<const Point> sources) const;

private:
    AdjustedModel model_;
    double sigma0_ = kUndefined;
    double medianWeight_ = 1;
    std::vector<Point> hull_;
    double hullFactor_ = 0;
};

/// By how much an ellipse of one standard deviation is enlarged to hold a probability, with the
/// redundancy that sigma0 comes from.
double ConfidenceFactor(double probability, int redundancy);

}  // namespace kv_tr
