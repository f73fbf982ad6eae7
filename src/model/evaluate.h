// Applying a parameter record to points.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "model/coefficients.h"
#include "model/records.h"

namespace kv_tr {

/// What the coefficients 1, 2, 3, ... of a reduced record multiply: 1, u, v, u², uv, v², ...
///
/// Within a degree the powers of u fall and those of v rise. Order n has (n + 1)(n + 2) / 2 terms,
/// TR_BILINEAR the four terms 1, u, v, uv; any other type counts as the nearest order. A power is
/// the product of its factors from left to right, u·u·v·v. The fits take their design rows from
/// here too, so fit and evaluation cannot disagree.
struct Terms {
    std::array<double, 21> value{};
    std::size_t count = 0;
};
Terms ReducedTerms(enuTR_TYPE type, double u, double v);

/// A record made ready for many points: the same operations as EvalTrPrm, point by point.
class Evaluator {
public:
    explicit Evaluator(const TR_PRM& record)
        : type_(record.eType), coefficients_(CoefficientsOf(record)) {}

    PlanePoint operator()(PlanePoint source) const;

private:
    enuTR_TYPE type_;
    Coefficients coefficients_;
};

/// Maps a point from the source to the destination system. All coordinates in metres.
///
///     below TR_POLI_1    first' = A0 + A1 first + A2 second
///     TR_POLI_1 and up   first' = A1 t1 + A2 t2 + ...    t = ReducedTerms(first - A0, second - B0)
///
/// and second' likewise with B. Terms are added in coefficient order; the function cannot fail.
PlanePoint EvalTrPrm(const TR_PRM& record, PlanePoint source);

/// EvalTrPrm for many points, to the same bits. The four spans have one length; the results may
/// be the sources themselves.
void EvalTrPrmArrays(const TR_PRM& record, std::span<const double> first,
                     std::span<const double> second, std::span<double> firstOut,
                     std::span<double> secondOut);

}  // namespace kv_tr
