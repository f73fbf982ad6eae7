// Pairs for plans, spread evenly but in no pattern.
#pragma once

#include <cmath>
#include <string>

#include "kv_tr/forms/plan_data.h"
#include "kv_tr/model/hull.h"

namespace kv_tr::test {

/// Pairs over 4 km by 3 km with residuals of some centimetres. Of each 50 the one with subscript 7
/// is suspect, 20 over the limit and 33 excluded.
inline PlanData SamplePlan(std::size_t count) {
    PlanData data{.limit = 0.05};
    std::vector<Point> places;
    for (std::size_t i = 0; i < count; ++i) {
        const auto part = [i](double factor) {
            double whole = 0;
            return std::modf((static_cast<double>(i) + 1) * factor, &whole);
        };
        PlanPair pair{
            .place = {650000 + 4000 * part(0.7548776662), 250000 + 3000 * part(0.5698402910)},
            .residual = {0.04 * part(0.8191725134) - 0.02, 0.05 * part(0.6710436067) - 0.02},
            .isUsed = i % 50 != 33,
            .id = "P" + std::to_string(i)};
        if (i % 50 == 7) pair.standing = PlanStanding::kSuspect;
        if (i % 50 == 20) pair.standing = PlanStanding::kOverLimit;
        places.push_back(pair.place);
        data.pairs.push_back(std::move(pair));
    }
    data.hull = ConvexHull(places);
    return data;
}

inline PlanWords SampleWords() {
    return {.title = "Residuals <1 & 2>",
            .good = "good",
            .overLimit = "over",
            .suspect = "suspect",
            .excluded = "excluded",
            .shown = "shown",
            .residuals = "residuals",
            .cut = "cut",
            .hull = "hull",
            .ellipses = "ellipses",
            .distortion = "ppm"};
}

}  // namespace kv_tr::test
