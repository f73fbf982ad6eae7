#include "model/evaluate.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace kv_tr {
namespace {

TEST(EvalTrPrm, GivesEachCoefficientOfTheOrderItsOwnTerm) {
    // By coefficient: the exponents of u = 3 and v = 2, as two digits.
    constexpr int kExponents[] = {0,  10, 1,  20, 11, 2,  30, 21, 12, 3, 40,
                                  31, 22, 13, 4,  50, 41, 32, 23, 14, 5};
    const struct {
        enuTR_TYPE type;
        std::size_t last;
    } cases[] = {{TR_POLI_1, 3},   {TR_POLI_2, 6},       {TR_POLI_3, 10},
                 {TR_POLI_4, 15},  {TR_POLI_5, 21},      {TR_BILINEAR, 4},
                 {TR_STG_HER, 21}, {TR_EOV_HDR_10e, 21}, {enuTR_TYPE{8}, 21}};
    for (const auto& [type, last] : cases) {
        for (std::size_t k = 1; k <= 21; ++k) {
            SCOPED_TRACE(testing::Message() << "type " << type << ", coefficient " << k);
            Coefficients only{.a = {100.0}, .b = {200.0}};
            only.a[k] = 7.0;
            only.b[k] = -7.0;
            const int exponents = type == TR_BILINEAR && k == 4 ? 11 : kExponents[k - 1];
            const double term = std::pow(3.0, exponents / 10) * std::pow(2.0, exponents % 10);
            const PlanePoint image = EvalTrPrm(MakeRecord(type, only), {103.0, 202.0});
            EXPECT_EQ(image.first, k <= last ? 7.0 * term : 0.0);
            EXPECT_EQ(image.second, -image.first);
        }
    }
}

TEST(ReducedTerms, MultipliesPowersFromLeftToRight) {
    const double u = 0.1;
    const double v = 0.3;
    const Terms terms = ReducedTerms(TR_POLI_5, u, v);
    EXPECT_EQ(terms.value[18], u * u * v * v * v);
    EXPECT_EQ(terms.value[20], v * v * v * v * v);
}

TEST(Records, HoldMinusOneForTrueAndTheirCoefficientsInOrder) {
    Coefficients numbers;
    numbers.b[21] = -21.0;
    EXPECT_EQ(MakeRecord(TR_POLI_3, numbers).dB21 + 0.0, -21.0);
    EXPECT_EQ(std::bit_cast<std::int16_t>(Bool16{true}), -1);
}

}  // namespace
}  // namespace kv_tr
