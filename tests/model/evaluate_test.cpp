#include "kv_tr/model/evaluate.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "kv_tr/model/direction.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/eval_tr_prm.h"

namespace kv_tr {
namespace {

TEST(Transformation, GivesEachCoefficientOfTheOrderItsOwnTerm) {
    // By coefficient: the exponents of u = 3 and v = 2, as two digits.
    constexpr int kExponents[] = {0,  10, 1,  20, 11, 2,  30, 21, 12, 3, 40,
                                  31, 22, 13, 4,  50, 41, 32, 23, 14, 5};
    const struct {
        Type type;
        std::size_t last;
    } cases[] = {{Type::kPolynomial1, 3},    {Type::kPolynomial2, 6},   {Type::kPolynomial3, 10},
                 {Type::kPolynomial4, 15},   {Type::kPolynomial5, 21},  {Type::kBilinear, 4},
                 {Type::kFirstNational, 21}, {Type::kLastNational, 21}, {Type{8}, 21}};
    for (const auto& [type, last] : cases) {
        for (std::size_t k = 1; k <= 21; ++k) {
            SCOPED_TRACE(testing::Message() << "type " << NumberOf(type) << ", coefficient " << k);
            Transformation only{.type = type, .a = {100.0}, .b = {200.0}};
            only.a[k] = 7.0;
            only.b[k] = -7.0;
            const int exponents = type == Type::kBilinear && k == 4 ? 11 : kExponents[k - 1];
            const double term = std::pow(3.0, exponents / 10) * std::pow(2.0, exponents % 10);
            const Point image = only.Apply({103.0, 202.0});
            EXPECT_EQ(image.first, k <= last ? 7.0 * term : 0.0);
            EXPECT_EQ(image.second, -image.first);
        }
    }
}

TEST(ReducedTerms, MultipliesPowersFromLeftToRight) {
    const double u = 0.1;
    const double v = 0.3;
    const Terms terms = ReducedTerms(Type::kPolynomial5, u, v);
    EXPECT_EQ(terms.value[18], u * u * v * v * v);
    EXPECT_EQ(terms.value[20], v * v * v * v * v);
}

/// Bits that can be compared: compilers may choose which of two nan they pass on.
std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(std::isnan(value) ? std::nan("") : value);
}

void ExpectImages(const Transformation& t, InstructionSet set, const std::vector<double>& first,
                  const std::vector<double>& second) {
    SCOPED_TRACE(testing::Message() << "type " << NumberOf(t.type) << ", instruction set "
                                    << static_cast<int>(set) << ", " << first.size() << " points");
    std::vector<double> firstOut(first.size());
    std::vector<double> swapped = first;  // also takes the second results
    std::vector<double> pairs;
    for (std::size_t i = 0; i < first.size(); ++i) pairs.insert(pairs.end(), {first[i], second[i]});
    ApplyWith(set, t, swapped, second, firstOut, swapped);
    ApplyToPairsWith(set, t, pairs, pairs);
    for (std::size_t i = 0; i < first.size(); ++i) {
        const Point image = t.Apply({first[i], second[i]});
        ASSERT_EQ(Bits(firstOut[i]), Bits(image.first)) << i;
        ASSERT_EQ(Bits(swapped[i]), Bits(image.second)) << i;
        ASSERT_EQ(Bits(pairs[2 * i]), Bits(image.first)) << i;
        ASSERT_EQ(Bits(pairs[2 * i + 1]), Bits(image.second)) << i;
    }
}

TEST(Transformation, GivesArraysTheBitsOfPointsWithEveryInstructionSet) {
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
                Transformation t{.type = Type{type}};
                const unsigned extremes = count % 2 == 0 ? 1000000 : 20;
                for (double& coefficient : t.a) coefficient = number(extremes, 1.0);
                for (double& coefficient : t.b) coefficient = number(extremes, 1.0);
                std::vector<double> first(count);
                std::vector<double> second(count);
                for (double& coordinate : first) coordinate = number(10, 1e5);
                for (double& coordinate : second) coordinate = number(10, 1e5);
                ExpectImages(t, set, first, second);
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

/// A transformation of the type whose coefficients are all different.
Transformation Sample(Type type) {
    Transformation t{.type = type, .a = {10.0, 0.9, 0.2}, .b = {20.0, -0.1, 1.2}};
    double size = 1.0;
    for (std::size_t k = IsPolynomial(type) ? 1 : 22; k < t.a.size(); ++k) {
        size *= k == 4 || k == 7 || k == 11 || k == 16 ? 0.02 : 1.0;
        t.a[k] = size * (1.3 - 0.21 * static_cast<double>(k % 5));
        t.b[k] = size * (0.3 + 0.17 * static_cast<double>(k % 7));
    }
    return t;
}

TEST(Transformation, TakesDirectionsAlongItsDerivative) {
    for (const Type type : {Type::kHelmert, Type::kBilinear, Type::kPolynomial1, Type::kPolynomial3,
                            Type::kPolynomial5, Type::kFirstNational}) {
        const Transformation t = Sample(type);
        for (const double angle : {0.3, 2.0, 4.4, 6.0}) {
            constexpr double kStep = 1e-4;  // the difference misses the derivative by its square
            const auto image = [&](double step) {
                return t.Apply({13.0 + step * std::cos(angle), 18.5 + step * std::sin(angle)});
            };
            const Point to = image(kStep);
            const Point from = image(-kStep);
            EXPECT_NEAR(t.Direction(angle, {13.0, 18.5}).value(),
                        DirectionOf(to.first - from.first, to.second - from.second), 1e-8)
                << NumberOf(type);
        }
    }
    EXPECT_FALSE(Transformation({.a = {}, .b = {}}).Direction(1.0, {0, 0}));
    EXPECT_FALSE(Transformation({.a = {0, HUGE_VAL}}).Direction(1.0, {0, 0}));
}

TEST(Transformation, HasAnInverseWhereItIsLinearAndOneToOne) {
    const Transformation t = Sample(Type::kAffine);
    const Point back = t.Inverse().value().Apply(t.Apply({1234.5, -77.25}));
    EXPECT_NEAR(back.first, 1234.5, 1e-9);
    EXPECT_NEAR(back.second, -77.25, 1e-9);
    EXPECT_EQ(t.Inverse()->type, Type::kAffine);
    EXPECT_FALSE(Sample(Type::kPolynomial1).Inverse());
    EXPECT_FALSE(Transformation({.a = {0, 1, 2}, .b = {0, 2, 4}}).Inverse());
    EXPECT_FALSE(Transformation({.a = {0, 1e-200}, .b = {0, 0, 1e-200}}).Inverse());
}

TEST(Records, HoldMinusOneForTrueAndTheirCoefficientsInOrder) {
    Coefficients numbers;
    numbers.b[21] = -21.0;
    EXPECT_EQ(MakeRecord(TR_POLI_3, numbers).dB21 + 0.0, -21.0);
    EXPECT_EQ(std::bit_cast<std::int16_t>(Bool16{true}), -1);
}

}  // namespace
}  // namespace kv_tr
