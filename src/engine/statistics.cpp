// Residuals and accuracy figures of a fit.
#include "engine/statistics.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "model/evaluate.h"

namespace kv_tr {

namespace {

/// The residuals of all pairs: their source points evaluated a block at a time.
void SetResiduals(std::span<typeXYs4Tr> pairs, const TR_PRM& record) {
    std::array<double, 512> coordinates;
    while (!pairs.empty()) {
        const auto block = pairs.first(std::min(pairs.size(), coordinates.size() / 2));
        pairs = pairs.subspan(block.size());
        double* next = coordinates.data();
        for (const typeXYs4Tr& pair : block) {
            *next++ = pair.dXsour;
            *next++ = pair.dYsour;
        }
        const auto used = std::span(coordinates).first(2 * block.size());
        EvalTrPrmPairs(record, used, used);
        next = coordinates.data();
        for (typeXYs4Tr& pair : block) {
            pair.dXerr = *next++ - pair.dXdest;
            pair.dYerr = *next++ - pair.dYdest;
        }
    }
}

}  // namespace

double ResidualLength(const typeXYs4Tr& pair) {
    return std::sqrt(pair.dXerr * pair.dXerr + pair.dYerr * pair.dYerr);
}

Statistics UpdateResiduals(std::span<typeXYs4Tr> pairs, const TR_PRM& record) {
    SetResiduals(pairs, record);
    double count = 0.0;
    PlanePoint sum;
    PlanePoint squares;
    for (const typeXYs4Tr& pair : pairs) {
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
