#include "kv_tr/published/type_names.h"

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "kv_tr/published/formula_text.h"

namespace kv_tr {
namespace {

TEST(TypeName, NamesEveryKind) {
    test::RecordingPlatform platform;
    const std::pair<int, const char*> cases[] = {
        {-5, "Meter-fathom transformation"},
        {-3, "AFFINE (5 unknown) transformation"},
        {6, "Bilinear (trapezoid) transformation"},
        {8, "Wrong transformation type!"},
        {33, "EOV-HDR (országos)"},
    };
    for (const auto& [type, name] : cases) {
        EXPECT_EQ(TypeName(static_cast<enuTR_TYPE>(type)), name);
    }
}

TEST(PolyFormulaText, AddsTheTermsOrderByOrder) {
    EXPECT_EQ(PolyFormulaText(TR_AFFIN), "");
    EXPECT_EQ(PolyFormulaText(TR_BILINEAR), " + y*x*a4");
    EXPECT_EQ(PolyFormulaText(TR_STG_BOV),
              " + y^2*a4 + y*x*a5 + x^2*a6 + y^3*a7 + x*y^2*a8 + x^2*y*a9 + x^3*a10"
              "\r\n\t\t+ y^4*a11 + x*y^3*a12 + x^2*y^2*a13 + x^3*y*a14 + x^4*a15"
              "\r\n\t\t+ y^5*a16 + x*y^4*a17 + x^2*y^3*a18 + x^3*y^2*a19 + x^4*y*a20 + x^5*a21");
}

}  // namespace
}  // namespace kv_tr
