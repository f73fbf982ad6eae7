#include "model/evaluate.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "model/coefficients.h"
#include "support/errors.h"

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

/// Bits that can be compared: compilers may choose which of two nan they pass on.
std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(std::isnan(value) ? std::nan("") : value);
}

void ExpectImages(const TR_PRM& record, InstructionSet set, const std::vector<double>& first,
                  const std::vector<double>& second) {
    SCOPED_TRACE(testing::Message() << "type " << record.eType << ", instruction set "
                                    << static_cast<int>(set) << ", " << first.size() << " points");
    std::vector<double> firstOut(first.size());
    std::vector<double> swapped = first;  // also takes the second results
    std::vector<double> pairs;
    for (std::size_t i = 0; i < first.size(); ++i) pairs.insert(pairs.end(), {first[i], second[i]});
    EvalTrPrmArrays(record, swapped, second, firstOut, swapped, set);
    EvalTrPrmPairs(record, pairs, pairs, set);
    for (std::size_t i = 0; i < first.size(); ++i) {
        const PlanePoint image = EvalTrPrm(record, {first[i], second[i]});
        ASSERT_EQ(Bits(firstOut[i]), Bits(image.first)) << i;
        ASSERT_EQ(Bits(swapped[i]), Bits(image.second)) << i;
        ASSERT_EQ(Bits(pairs[2 * i]), Bits(image.first)) << i;
        ASSERT_EQ(Bits(pairs[2 * i + 1]), Bits(image.second)) << i;
    }
}

TEST(EvalTrPrmArrays, GivesTheBitsOfEvalTrPrmWithEveryInstructionSet) {
    using Limits = std::numeric_limits<double>;
    constexpr double kExtremes[] = {
        0.0,           -0.0,           Limits::infinity(),   -Limits::infinity(), Limits::max(),
        Limits::min(), -Limits::min(), Limits::denorm_min(), Limits::quiet_NaN(), 1e-200};
    std::mt19937_64 random(5);
    const auto number = [&](unsigned oneExtremeIn, double size) {
        if (random() % oneExtremeIn == 0) return kExtremes[random() % std::size(kExtremes)];
        return std::uniform_real_distribution(-size, size)(random);
    };
    EXPECT_TRUE(IsAvailable(WidestInstructionSet()));
    for (const auto set :
         {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512}) {
        if (!IsAvailable(set)) continue;
        for (int type = TR_METER_OL; type <= TR_STG_HER; ++type) {
            for (std::size_t count = 0; count < 40; ++count) {
                Coefficients c;
                const unsigned extremes = count % 2 == 0 ? 1000000 : 20;
                for (double& coefficient : c.a) coefficient = number(extremes, 1.0);
                for (double& coefficient : c.b) coefficient = number(extremes, 1.0);
                std::vector<double> first(count);
                std::vector<double> second(count);
                for (double& coordinate : first) coordinate = number(10, 1e5);
                for (double& coordinate : second) coordinate = number(10, 1e5);
                ExpectImages(MakeRecord(enuTR_TYPE{type}, c), set, first, second);
            }
        }
    }
}

TEST(EvalTrPrmArrays, RefusesArraysOfDifferentLengths) {
    std::vector<double> three(3);
    std::vector<double> four(4);
    EXPECT_THROW(EvalTrPrmArrays({}, three, three, three, four), RuntimeError);
    EXPECT_THROW(EvalTrPrmArrays({}, three, four, three, three), RuntimeError);
    EXPECT_THROW(EvalTrPrmPairs({}, three, three), RuntimeError);
    EXPECT_THROW(EvalTrPrmPairs({}, four, three), RuntimeError);
}

TEST(Records, HoldMinusOneForTrueAndTheirCoefficientsInOrder) {
    Coefficients numbers;
    numbers.b[21] = -21.0;
    EXPECT_EQ(MakeRecord(TR_POLI_3, numbers).dB21 + 0.0, -21.0);
    EXPECT_EQ(std::bit_cast<std::int16_t>(Bool16{true}), -1);
}

}  // namespace
}  // namespace kv_tr
