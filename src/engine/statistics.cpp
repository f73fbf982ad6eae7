// Residuals and accuracy figures of a fit.
#include "engine/statistics.h"

#include <cmath>

#include "model/evaluate.h"

namespace kv_tr {

double ResidualLength(const typeXYs4Tr& pair) {
    return std::sqrt(pair.dXerr * pair.dXerr + pair.dYerr * pair.dYerr);
}

Statistics UpdateResiduals(std::span<typeXYs4Tr> pairs, const TR_PRM& record) {
    const Evaluator evaluate(record);
    double count = 0.0;
    PlanePoint sum;
    PlanePoint squares;
    for (typeXYs4Tr& pair : pairs) {
        const PlanePoint image = evaluate({pair.dXsour, pair.dYsour});
        pair.dXerr = image.first - pair.dXdest;
        pair.dYerr = image.second - pair.dYdest;
        if (pair.bNotUsed) continue;
        count += 1.0;
        squares.first += pair.dXerr * pair.dXerr;
        squares.second += pair.dYerr * pair.dYerr;
        sum.first += pair.dXerr;
        sum.second += pair.dYerr;
    }
    return {.rms = std::sqrt((squares.first + squares.second) / (count - 1.0)),
            .rmsFirst = std::sqrt(squares.first / (count - 1.0)),
            .rmsSecond = std::sqrt(squares.second / (count - 1.0)),
            .meanFirst = sum.first / count,
            .meanSecond = sum.second / count};
}

}  // namespace kv_tr
