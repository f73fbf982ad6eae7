// Applying a parameter record to points.
#include "model/evaluate.h"

#include <cfloat>

#include "model/transformation_type.h"

static_assert(FLT_EVAL_METHOD == 0, "double arithmetic must round every operation to a double");

namespace kv_tr {

Terms ReducedTerms(enuTR_TYPE type, double u, double v) {
    Terms terms;
    auto& value = terms.value;
    if (type == TR_BILINEAR) {
        value = {1.0, u, v, u * v};
        terms.count = 4;
        return terms;
    }
    value[0] = 1.0;
    std::size_t before = 0;  // where the degree before begins
    std::size_t next = 1;
    const auto order = static_cast<std::size_t>(PolynomialOrder(type));
    for (std::size_t degree = 1; degree <= order; ++degree) {
        value[next++] = value[before] * u;
        for (std::size_t i = 0; i < degree; ++i) value[next++] = value[before + i] * v;
        before += degree;
    }
    terms.count = next;
    return terms;
}

PlanePoint Evaluator::operator()(PlanePoint source) const {
    const auto& [a, b] = coefficients_;
    if (!IsPolynomial(type_)) {
        return {a[0] + a[1] * source.first + a[2] * source.second,
                b[0] + b[1] * source.first + b[2] * source.second};
    }
    const Terms terms = ReducedTerms(type_, source.first - a[0], source.second - b[0]);
    PlanePoint image{a[1], b[1]};
    for (std::size_t k = 1; k < terms.count; ++k) {
        image.first += a[k + 1] * terms.value[k];
        image.second += b[k + 1] * terms.value[k];
    }
    return image;
}

PlanePoint EvalTrPrm(const TR_PRM& record, PlanePoint source) { return Evaluator(record)(source); }

void EvalTrPrmArrays(const TR_PRM& record, std::span<const double> first,
                     std::span<const double> second, std::span<double> firstOut,
                     std::span<double> secondOut) {
    const Evaluator evaluate(record);
    for (std::size_t i = 0; i < first.size(); ++i) {
        const PlanePoint image = evaluate({first[i], second[i]});
        firstOut[i] = image.first;
        secondOut[i] = image.second;
    }
}

}  // namespace kv_tr
