#include "model/evaluate.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kv_tr {
namespace {

struct Powers {
    int u;
    int v;
};
constexpr Powers kTermPowers[] = {{0, 0}, {1, 0}, {0, 1}, {2, 0}, {1, 1}, {0, 2}, {3, 0},
                                  {2, 1}, {1, 2}, {0, 3}, {4, 0}, {3, 1}, {2, 2}, {1, 3},
                                  {0, 4}, {5, 0}, {4, 1}, {3, 2}, {2, 3}, {1, 4}, {0, 5}};

/// A record with origin (100, 200) and one coefficient: 7 in the A series, -7 in B.
TR_PRM OneTerm(enuTR_TYPE type, std::size_t k) {
    Coefficients only;
    only.a[0] = 100.0;
    only.b[0] = 200.0;
    only.a[k] = 7.0;
    only.b[k] = -7.0;
    return MakeRecord(type, only);
}

TEST(EvalTrPrm, GivesEachCoefficientItsOwnTerm) {
    for (std::size_t k = 1; k <= std::size(kTermPowers); ++k) {
        SCOPED_TRACE(k);
        const auto [u, v] = kTermPowers[k - 1];
        const double expected = 7.0 * std::pow(3.0, u) * std::pow(2.0, v);
        for (const enuTR_TYPE type : {TR_POLI_5, TR_STG_HER, TR_EOV_HDR_10e, enuTR_TYPE{8}}) {
            const PlanePoint image = EvalTrPrm(OneTerm(type, k), {103.0, 202.0});
            EXPECT_EQ(image.first, expected);
            EXPECT_EQ(image.second, -expected);
        }
    }
}

TEST(EvalTrPrm, IgnoresCoefficientsBeyondTheOrder) {
    const struct {
        enuTR_TYPE type;
        std::size_t last;
    } cases[] = {
        {TR_POLI_1, 3}, {TR_POLI_2, 6}, {TR_POLI_3, 10}, {TR_POLI_4, 15}, {TR_BILINEAR, 4}};
    for (const auto& [type, last] : cases) {
        for (std::size_t k = 1; k <= 21; ++k) {
            SCOPED_TRACE(testing::Message() << "type " << type << ", coefficient " << k);
            EXPECT_EQ(EvalTrPrm(OneTerm(type, k), {103.0, 202.0}).first != 0.0, k <= last);
        }
    }
    EXPECT_EQ(EvalTrPrm(OneTerm(TR_BILINEAR, 4), {103.0, 202.0}).first, 7.0 * 3.0 * 2.0);
}

TEST(EvalTrPrm, AppliesTheSixParametersOfEveryLinearType) {
    for (int type = TR_METER_OL; type <= TR_HELMERT; ++type) {
        TR_PRM record{.eType = static_cast<enuTR_TYPE>(type)};
        record.dA0 = 1, record.dA1 = 2, record.dA2 = 3;
        record.dB0 = 4, record.dB1 = 5, record.dB2 = 6;
        record.dA3 = record.dB4 = 99;  // belong to other types
        const PlanePoint image = EvalTrPrm(record, {10.0, 100.0});
        EXPECT_EQ(image.first, 321.0);
        EXPECT_EQ(image.second, 654.0);
    }
}

TEST(ReducedTerms, MultipliesPowersFromLeftToRight) {
    const double u = 0.1;
    const double v = 0.3;
    const Terms terms = ReducedTerms(TR_POLI_5, u, v);
    ASSERT_EQ(terms.count, 21u);
    EXPECT_EQ(terms.value[8], u * v * v);
    EXPECT_EQ(terms.value[12], u * u * v * v);
    EXPECT_EQ(terms.value[18], u * u * v * v * v);
    EXPECT_EQ(terms.value[20], v * v * v * v * v);
}

TEST(Records, KeepTheirFieldsThroughTheArrays) {
    Coefficients numbers;
    for (std::size_t k = 0; k < 22; ++k) {
        numbers.a[k] = static_cast<double>(k);
        numbers.b[k] = -static_cast<double>(k);
    }
    const TR_PRM record = MakeRecord(TR_POLI_3, numbers);
    const double a10 = record.dA10;
    const double b21 = record.dB21;
    EXPECT_EQ(record.eType, TR_POLI_3);
    EXPECT_EQ(a10, 10.0);
    EXPECT_EQ(b21, -21.0);
    EXPECT_EQ(CoefficientsOf(record).b, numbers.b);

    const Bool16 yes = true;
    std::int16_t bits = 0;
    std::memcpy(&bits, &yes, sizeof bits);
    EXPECT_EQ(bits, -1);
}

}  // namespace
}  // namespace kv_tr
