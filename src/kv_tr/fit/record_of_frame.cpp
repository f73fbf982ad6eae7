// From coefficients in a frame to those of a record.
#include "kv_tr/fit/record_of_frame.h"

#include <cstddef>

namespace kv_tr {
namespace {

constexpr int kMostDegree = 5;

/// A polynomial of two variables, by their exponents.
using Polynomial = std::array<std::array<DoubleDouble, kMostDegree + 1>, kMostDegree + 1>;

struct Linear {
    DoubleDouble constant;
    DoubleDouble byFirst;
    DoubleDouble bySecond;
};

/// polynomial · linear; the degree of the product is at most kMostDegree.
Polynomial Times(const Polynomial& polynomial, const Linear& linear) {
    Polynomial product{};
    for (std::size_t i = 0; i <= kMostDegree; ++i) {
        for (std::size_t j = 0; i + j <= kMostDegree; ++j) {
            product[i][j] += polynomial[i][j] * linear.constant;
            if (i + j == kMostDegree) continue;
            product[i + 1][j] += polynomial[i][j] * linear.byFirst;
            product[i][j + 1] += polynomial[i][j] * linear.bySecond;
        }
    }
    return product;
}

/// Where the term with these exponents stands among the coefficients from 1 on.
std::size_t IndexOf(Type type, std::size_t i, std::size_t j) {
    if (type == Type::kBilinear) return i * j == 1 ? 4 : 1 + i + 2 * j;
    const std::size_t degree = i + j;
    return 1 + degree * (degree + 1) / 2 + j;
}

bool HasTerm(Type type, std::size_t i, std::size_t j) {
    if (type == Type::kBilinear) return i <= 1 && j <= 1;
    return i + j <= static_cast<std::size_t>(PolynomialOrder(type));
}

}  // namespace

void LongSeries::Add(const Transformation& inFrame, const Frame& frame, Point origin) {
    const Type type = inFrame.type;
    const DoubleDouble first = DoubleDouble::Sum(origin.first, -frame.origin.first);
    const DoubleDouble second = DoubleDouble::Sum(origin.second, -frame.origin.second);
    const auto axis = [&](double byFirst, double bySecond, double perMetre) {
        const DoubleDouble u = DoubleDouble::Product(byFirst, perMetre);
        const DoubleDouble v = DoubleDouble::Product(bySecond, perMetre);
        return Linear{u * first + v * second, u, v};
    };
    const Linear p = axis(frame.cosine, frame.sine, frame.perMetre.first);
    const Linear q = axis(-frame.sine, frame.cosine, frame.perMetre.second);

    Polynomial powerOfP{};
    powerOfP[0][0] = 1.0;
    for (std::size_t i = 0; HasTerm(type, i, 0); ++i) {
        Polynomial term = powerOfP;
        for (std::size_t j = 0; HasTerm(type, i, j); ++j) {
            const std::size_t from = IndexOf(type, i, j);
            for (std::size_t k = 0; k <= kMostDegree; ++k) {
                for (std::size_t l = 0; k + l <= kMostDegree; ++l) {
                    if (!HasTerm(type, k, l)) continue;
                    const std::size_t to = IndexOf(type, k, l);
                    a[to] += term[k][l] * inFrame.a[from];
                    b[to] += term[k][l] * inFrame.b[from];
                }
            }
            if (HasTerm(type, i, j + 1)) term = Times(term, q);
        }
        if (HasTerm(type, i + 1, 0)) powerOfP = Times(powerOfP, p);
    }
}

}  // namespace kv_tr
