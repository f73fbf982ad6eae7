#include "model/transformation_type.h"

#include <gtest/gtest.h>

#include <cmath>

#include "helpers/recording_platform.h"
#include "model/direction.h"
#include "model/formula_text.h"
#include "model/type_names.h"

namespace kv_tr {
namespace {

constexpr auto kType = [](int code) { return static_cast<enuTR_TYPE>(code); };

TEST(TransformationType, KnowsPointsTermsAndTheStepDown) {
    constexpr int kNone = -99;
    const struct {
        int type;
        bool polynomial;
        int points, lower;
    } cases[] = {
        {-5, false, 21, kNone}, {-4, false, 21, kNone}, {-3, false, 3, 0}, {-2, false, 2, 0},
        {-1, false, 3, 0},      {0, false, 2, kNone},   {1, true, 3, 0},   {2, true, 6, 6},
        {3, true, 10, 2},       {4, true, 15, 3},       {5, true, 21, 4},  {6, true, 4, 1},
        {7, true, 21, kNone},   {9, true, 21, kNone},   {10, true, 21, 4}, {33, true, 21, 4},
        {34, true, 21, 4},
    };
    for (const auto& [type, polynomial, points, lower] : cases) {
        SCOPED_TRACE(type);
        EXPECT_EQ(IsPolynomial(kType(type)), polynomial);
        EXPECT_EQ(MinimumPoints(kType(type)), points);
        EXPECT_EQ(StepDown(kType(type)).value_or(kType(kNone)), lower);
    }
}

TEST(TypeName, NamesEveryTypeInTheCurrentLanguage) {
    test::RecordingPlatform platform;
    const struct {
        int type;
        const char* english;
        const char* hungarian;
    } cases[] = {
        {-5, "Meter-fathom transformation", "Méter-öl transzformáció"},
        {-4, "Fathom-meter transformation", "Öl-méter transzformáció"},
        {-3, "AFFINE (5 unknown) transformation", "Affin(5i) transzformáció"},
        {-2, "HELMERT (3 unknowns) transformation", "HELMERT(3i) transzformáció"},
        {-1, "AFFINE transformation", "Affin transzformáció"},
        {0, "HELMERT transformation", "HELMERT transzformáció"},
        {3, "3. order of polynomial transformation", "3. fokú transzformáció"},
        {6, "Bilinear (trapezoid) transformation", "Bilineáris (trapéz) transzformáció"},
        {8, "Wrong transformation type!", "Hibás transzformáció típus!"},
        {10, "STG-HÉR transzformáció", "STG-HÉR transzformáció"},
        {20, "BOV-EOV (a Fővárosi Földhivatal állandói)",
         "BOV-EOV (a Fővárosi Földhivatal állandói)"},
        {33, "EOV-HDR (országos)", "EOV-HDR (országos)"},
        {40, "Wrong transformation type!", "Hibás transzformáció típus!"},
    };
    for (const auto& [type, english, hungarian] : cases) {
        SetMlLanguage(kEnglish, {});
        EXPECT_EQ(TypeName(kType(type)), english);
        SetMlLanguage(kHungarian, {});
        EXPECT_EQ(TypeName(kType(type)), hungarian);
    }
}

TEST(PolyFormulaText, AddsTheTermsOrderByOrder) {
    const std::string second = " + y^2*a4 + y*x*a5 + x^2*a6";
    const std::string third = " + y^3*a7 + x*y^2*a8 + x^2*y*a9 + x^3*a10";
    const std::string fourth = "\r\n\t\t+ y^4*a11 + x*y^3*a12 + x^2*y^2*a13 + x^3*y*a14 + x^4*a15";
    const std::string fifth =
        "\r\n\t\t+ y^5*a16 + x*y^4*a17 + x^2*y^3*a18 + x^3*y^2*a19 + x^4*y*a20 + x^5*a21";
    EXPECT_EQ(PolyFormulaText(TR_AFFIN), "");
    EXPECT_EQ(PolyFormulaText(TR_POLI_1), "");
    EXPECT_EQ(PolyFormulaText(TR_BILINEAR), " + y*x*a4");
    EXPECT_EQ(PolyFormulaText(TR_POLI_2), second);
    EXPECT_EQ(PolyFormulaText(TR_POLI_3), second + third);
    EXPECT_EQ(PolyFormulaText(TR_POLI_4), second + third + fourth);
    EXPECT_EQ(PolyFormulaText(TR_POLI_5), second + third + fourth + fifth);
    EXPECT_EQ(PolyFormulaText(TR_STG_BOV), second + third + fourth + fifth);
}

TEST(Direction, CountsFromTheFirstAxisTowardsTheSecond) {
    const double pi = 4.0 * std::atan(1.0);
    EXPECT_EQ(Direction(0.0, 0.0), 0.0);
    for (int degrees = 0; degrees < 360; degrees += 15) {
        const double angle = degrees * pi / 180.0;
        EXPECT_NEAR(Direction(5.0 * std::cos(angle), 5.0 * std::sin(angle)), angle, 1e-15 * 6.3)
            << degrees;
    }
    EXPECT_EQ(Direction(-1.0, 0.0), pi);
    EXPECT_EQ(Direction(0.0, -1.0), 2.0 * pi - pi / 2.0);
}

}  // namespace
}  // namespace kv_tr
