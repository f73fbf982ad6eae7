// Applying a parameter record to points.
#include "kv_tr/published/eval_tr_prm.h"

#include <stdexcept>

#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/errors.h"

namespace kv_tr {
namespace {

/// Calls a function; arrays that do not fit together are the published error of a subscript.
void WithPublishedErrors(const auto& apply) {
    try {
        apply();
    } catch (const std::invalid_argument& error) {
        throw RuntimeError(ErrorNumber::kSubscript, error.what());
    }
}

}  // namespace

PlanePoint EvalTrPrm(const TR_PRM& record, PlanePoint source) {
    return TransformationOf(record).Apply(source);
}

void EvalTrPrmArrays(const TR_PRM& record, std::span<const double> first,
                     std::span<const double> second, std::span<double> firstOut,
                     std::span<double> secondOut) {
    WithPublishedErrors(
        [&] { TransformationOf(record).Apply(first, second, firstOut, secondOut); });
}

void EvalTrPrmPairs(const TR_PRM& record, std::span<const double> pairs,
                    std::span<double> pairsOut) {
    WithPublishedErrors([&] { TransformationOf(record).ApplyToPairs(pairs, pairsOut); });
}

}  // namespace kv_tr
