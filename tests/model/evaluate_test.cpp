#include "kv_tr/model/evaluate.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <vector>

#include "kv_tr/model/direction.h"
#include "kv_tr/model/national.h"
#include "kv_tr/model/type_name.h"
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
    EXPECT_EQ(ReducedTerms(Type::kAffine, u, v).count, 3U);
}

TEST(EvalTrPrmArrays, RefusesArraysOfDifferentLengths) {
    std::vector<double> three(3);
    std::vector<double> four(4);
    EXPECT_THROW(EvalTrPrmArrays({}, three, three, three, four), RuntimeError);
    EXPECT_THROW(EvalTrPrmArrays({}, three, three, four, three), RuntimeError);
    EXPECT_THROW(EvalTrPrmArrays({}, three, four, three, three), RuntimeError);
    EXPECT_THROW(EvalTrPrmPairs({}, three, three), RuntimeError);
    EXPECT_THROW(EvalTrPrmPairs({}, four, three), RuntimeError);
}

TEST(DirectionOf, FoldsEachOctantWithItsConstants) {
    const AngleConstants other{.pi = 20.0, .rightAngle = 10.0, .fullTurn = 50.0};
    const double third = std::atan(1.0 / 3.0);
    for (const auto& [first, second, direction] : {std::tuple{3.0, 1.0, third},
                                                   {1.0, 3.0, 10.0 - third},
                                                   {-1.0, 3.0, 10.0 + third},
                                                   {-3.0, 1.0, 20.0 - third},
                                                   {-3.0, -1.0, 20.0 + third},
                                                   {-1.0, -3.0, 30.0 - third},
                                                   {1.0, -3.0, 40.0 + third},
                                                   {3.0, -1.0, 50.0 - third},
                                                   {0.0, 0.0, 0.0},
                                                   {2.0, 0.0, 0.0},
                                                   {-2.0, 0.0, 20.0},
                                                   {0.0, 2.0, 10.0},
                                                   {1.0, -1e-300, 0.0}})
        EXPECT_DOUBLE_EQ(DirectionOf(first, second, other), direction) << first << " " << second;
    EXPECT_EQ(DirectionOf(-1.0, 0.0), std::acos(-1.0));
}

TEST(Transformation, HasNoDirectionAndNoInverseWhereItIsNotOneToOne) {
    EXPECT_FALSE(Transformation({.a = {}, .b = {}}).Direction(1.0, {0, 0}));
    EXPECT_FALSE(Transformation({.a = {0, HUGE_VAL}}).Direction(1.0, {0, 0}));
    EXPECT_EQ(Transformation().Direction(0.0, {0, 0}), 0.0);
    EXPECT_EQ(Transformation({.a = {}, .b = {0, 1}}).Direction(0.0, {0, 0}), std::acos(0.0));
    EXPECT_FALSE(Transformation({.a = {0, 1, 2}, .b = {0, 2, 4}}).Inverse());
    EXPECT_FALSE(Transformation({.a = {0, 1e-200}, .b = {0, 0, 1e-200}}).Inverse());
    EXPECT_FALSE(Transformation({.b = {HUGE_VAL, 0, 1}}).Inverse());
}

TEST(Type, TellsWhatItNeedsAndWhatIsBelowIt) {
    const std::tuple<int, int, int> cases[] = {
        // type, points, the type below or 99
        {-5, 21, 99}, {-4, 21, 99}, {-3, 3, 0},  {-2, 2, 0},  {-1, 3, 0}, {0, 2, 99},
        {1, 3, 0},    {2, 6, 6},    {3, 10, 2},  {4, 15, 3},  {5, 21, 4}, {6, 4, 1},
        {7, 21, 99},  {9, 21, 99},  {10, 21, 4}, {33, 21, 4}, {34, 21, 4}};
    for (const auto& [type, points, below] : cases) {
        EXPECT_EQ(MinimumPoints(Type{type}), points) << type;
        EXPECT_EQ(StepDown(Type{type}).value_or(Type{99}), Type{below}) << type;
    }
}

TEST(TypeName, NamesEveryType) {
    const TextLookup texts = TextsIn(kEnglish);
    std::string names;
    for (int type = -6; type <= 7; ++type) names += TypeName(Type{type}, texts) + "/";
    EXPECT_EQ(names,
              "Wrong transformation type!/Meter-fathom transformation/Fathom-meter transformation/"
              "AFFINE (5 unknown) transformation/HELMERT (3 unknowns) transformation/"
              "AFFINE transformation/HELMERT transformation/1. order of polynomial transformation/"
              "2. order of polynomial transformation/3. order of polynomial transformation/"
              "4. order of polynomial transformation/5. order of polynomial transformation/"
              "Bilinear (trapezoid) transformation/Wrong transformation type!/");
    for (const NationalInfo& info : NationalInfos()) {
        const std::string systems = info.source + std::string("-") + info.destination;
        EXPECT_TRUE(TypeName(Type{info.type}, texts).starts_with(systems)) << systems;
    }
    EXPECT_EQ(TypeName(Type{34}, texts), "Wrong transformation type!");
}

TEST(Records, HoldMinusOneForTrueAndTheirCoefficientsInOrder) {
    Coefficients numbers;
    numbers.b[21] = -21.0;
    EXPECT_EQ(MakeRecord(TR_POLI_3, numbers).dB21 + 0.0, -21.0);
    EXPECT_EQ(std::bit_cast<std::int16_t>(Bool16{true}), -1);
}

}  // namespace
}  // namespace kv_tr
