// The component by names of members, as macros and scripts call it.
#include <gtest/gtest.h>

#include "com/pairs.h"
#include "kv_tr/published/clsTr.h"

using namespace com_client;

namespace {

/// A transformation that tells its two coordinates apart.
ComPtr<_clsTr> NewAffine() {
    auto tr = NewTr();
    ::AFFIN_PRM six{::TR_AFFIN, 11, 2, 3, -5, 13, 7};
    tr->put_udtTrAffinPrm(&six);
    return tr;
}
// x' = 11 + 2 x + 3 y, y' = 13 - 5 x + 7 y; A1 belongs to the first coordinate.
constexpr double First(double x, double y) { return 11 + 2 * x + 3 * y; }
constexpr double Second(double x, double y) { return 13 - 5 * x + 7 * y; }

/// Rows of a table as scripts make it.
Value Table(const std::vector<std::vector<Value>>& rows) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows.size()), 0},
                                {static_cast<ULONG>(rows[0].size()), 0}};
    Value table;
    table->vt = VT_ARRAY | VT_VARIANT;
    table->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
    for (LONG i = 0; i < static_cast<LONG>(rows.size()); ++i) {
        for (LONG j = 0; j < static_cast<LONG>(rows[0].size()); ++j) {
            LONG place[2] = {i, j};
            Value cell = rows[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
            SafeArrayPutElement(table->parray, place, &*cell);
        }
    }
    return table;
}

}  // namespace

TEST(CallByName, PutsResultsWhereTheyCameFrom) {
    const auto tr = NewAffine();
    double number = 0;
    Value variable;
    const Outcome mixed = CallMethod(tr.Get(), L"trxy", {1, L"2", &*variable, &number});
    EXPECT_EQ(mixed.code, S_OK);
    EXPECT_EQ(variable->vt, VT_R8);
    EXPECT_EQ(variable.Number(), First(1, 2));
    EXPECT_EQ(number, Second(1, 2));

    short small = 0;  // a variable of another type
    EXPECT_EQ(CallMethod(tr.Get(), L"TrXY", {1, 2, &small, &number}).code, S_OK);
    EXPECT_EQ(small, static_cast<short>(First(1, 2)));
    EXPECT_EQ(CallMethod(tr.Get(), L"TrXY", {1e6, 2, &small, &number}).code, DISP_E_OVERFLOW);
}

TEST(CallByName, TakesNamedArguments) {
    const auto tr = NewAffine();
    double x = 0, y = 0;
    const Outcome outcome =
        CallMethod(tr.Get(), L"TrXY", {1}, {{L"dYtr", &y}, {L"dY", 2}, {L"dXtr", &x}});
    EXPECT_EQ(outcome.code, S_OK);
    EXPECT_EQ(x, First(1, 2));
    EXPECT_EQ(y, Second(1, 2));
    EXPECT_EQ(CallMethod(tr.Get(), L"TrXY", {1, 2, &x, &y}, {{L"dX", 2}}).code,
              DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(CallMethod(tr.Get(), L"TrXY", {1, 2, &x, &y}, {{L"nothing", 2}}).code,
              DISP_E_UNKNOWNNAME);
}

TEST(CallByName, FillsInDefaults) {
    const auto tr = NewAffine();
    kv_tr::clsTr library;
    library.udtTrAffinPrm(
        {.eType = kv_tr::TR_AFFIN, .dA0 = 11, .dA1 = 2, .dA2 = 3, .dB1 = -5, .dB0 = 13, .dB2 = 7});
    double angle = -1, expected = -2, other = -3;
    constexpr double kFar = 1e7;  // where the length shows in differences of single precision
    EXPECT_EQ(CallMethod(tr.Get(), L"TrAngle", {1, &angle, kFar, kFar / 3}).code, S_OK);
    library.TrAngle(1, expected, kFar, kFar / 3, 100);
    library.TrAngle(1, other, kFar, kFar / 3, 99);
    EXPECT_EQ(angle, expected);
    EXPECT_NE(other, expected);
    EXPECT_EQ(CallMethod(tr.Get(), L"TrAngle", {1, &angle, kFar, kFar / 3, Value::Missing()}).code,
              S_OK);
    EXPECT_EQ(angle, expected);
    CallMethod(tr.Get(), L"TrAngle", {1, &angle, kFar, kFar / 3, 99});
    EXPECT_EQ(angle, other);

    const Outcome listing = CallMethod(tr.Get(), L"sListHelmertTrPrm");
    EXPECT_EQ(listing.code, S_OK);
    EXPECT_GT(listing.result.Text().size(), 50U);
    tr->put_udtTrPrmByDAT2M1(::TR_BOV_EOV);
    const std::wstring titled =
        CallMethod(tr.Get(), L"sListPoliTrPrm", {L"Own title"}).result.Text();
    EXPECT_TRUE(titled.starts_with(L"Own title"));
    EXPECT_FALSE(CallMethod(tr.Get(), L"sListPoliTrPrm").result.Text().starts_with(L"Own"));
}

TEST(CallByName, RefusesWhatDoesNotSuit) {
    const auto tr = NewAffine();
    double number = 0;
    EXPECT_EQ(CallMethod(tr.Get(), L"TrXY", {1, 2, &number}).code, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(CallMethod(tr.Get(), L"TearDown", {1}).code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(CallMethod(tr.Get(), L"NoSuchMember").code, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(GetProperty(tr.Get(), L"sInitDir").code, DISP_E_MEMBERNOTFOUND);
    const Outcome wrong = CallMethod(tr.Get(), L"TrXY", {1, L"two", &number, &number});
    EXPECT_EQ(wrong.code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.badArgument, 2U);  // counted from the last one
}

TEST(CallByName, TellsRunTimeErrors) {
    const auto tr = NewTr();
    tr->TearDown();
    const Outcome outcome = GetProperty(tr.Get(), L"oCalcTr");
    EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.error, ErrorOf(91));
    EXPECT_NE(outcome.description, L"");
}

TEST(CallByName, PassesRecords) {
    const auto tr = NewAffine();
    Outcome record = GetProperty(tr.Get(), L"udtTrPrm");
    ASSERT_EQ(record.code, S_OK);
    ASSERT_EQ(record.result->vt, VT_RECORD);
    EXPECT_EQ(static_cast<::TR_PRM*>(record.result->pvRecord)->dB2, 7);
    const auto other = NewTr();
    EXPECT_EQ(PutProperty(other.Get(), L"udtTrPrm", record.result).code, S_OK);
    double x = 0, y = 0;
    other->TrXY(1, 2, &x, &y);
    EXPECT_EQ(y, Second(1, 2));
    EXPECT_EQ(PutProperty(other.Get(), L"udtTrAffinPrm", record.result).code, DISP_E_TYPEMISMATCH);

    Value inverse;
    const Outcome made = CallMethod(tr.Get(), L"bGetInversePrm", {&*inverse});
    EXPECT_EQ(made.result->boolVal, VARIANT_TRUE);
    ASSERT_EQ(inverse->vt, VT_RECORD);
    EXPECT_EQ(PutProperty(other.Get(), L"udtTrAffinPrm", inverse).code, S_OK);
    other->TrXY(First(1, 2), Second(1, 2), &x, &y);
    EXPECT_NEAR(x, 1, 1e-12);
    EXPECT_NEAR(y, 2, 1e-12);
}

TEST(CallByName, TakesArraysOfFieldsForRecords) {
    const auto tr = NewAffine();
    Outcome fields = GetProperty(tr.Get(), L"vTrPrm");
    ASSERT_EQ(fields.code, S_OK);
    ASSERT_EQ(fields.result->parray->rgsabound[0].cElements, 45U);
    EXPECT_EQ(fields.result.At(0).Number(), ::TR_AFFIN);
    EXPECT_EQ(fields.result.At(1).Number(), 11);
    EXPECT_EQ(fields.result.At(25).Number(), 7);  // dB2, behind 22 of A
    const auto other = NewTr();
    EXPECT_EQ(PutProperty(other.Get(), L"vTrPrm", fields.result).code, S_OK);
    double x = 0, y = 0;
    other->TrXY(1, 2, &x, &y);
    EXPECT_EQ(x, First(1, 2));
    EXPECT_EQ(PutProperty(other.Get(), L"udtTrPrm", fields.result).code, S_OK);
    // The fields of the shorter record: dB1 stands before dB0.
    EXPECT_EQ(PutProperty(other.Get(), L"udtTrAffinPrm", {-1, 1, 2, 3, 5, 4, 6}).code, S_OK);
    other->TrXY(10, 100, &x, &y);
    EXPECT_EQ(x, 1 + 20 + 300);
    EXPECT_EQ(y, 4 + 50 + 600);
    EXPECT_EQ(PutProperty(other.Get(), L"vTrPrm", 5).code, DISP_E_EXCEPTION);

    Value inverse{0, 0, 0, 0, 0, 0, 0};  // comes back as an array, since it was one
    EXPECT_EQ(CallMethod(other.Get(), L"bGetInversePrm", {&*inverse}).code, S_OK);
    ASSERT_EQ(inverse->vt, VT_ARRAY | VT_VARIANT);
    EXPECT_NE(inverse.At(4).Number(), 0);
}

TEST(CallByName, TakesPairsAsRecordsArraysAndTables) {
    const auto engine = NewEngine();
    SAFEARRAY* records = RecordsOf(Points());
    EXPECT_EQ(CallMethod(engine.Get(), L"AddXY4Tr", {&records, false}).code, S_OK);
    SafeArrayDestroy(records);
    LONG count = 0;
    engine->get_lFullCnt(&count);
    EXPECT_EQ(count, 30);

    const Value arrays{{L"a", 1, 2, 3, 4, 0, 0, true}, {L"b", 5, L"6", 7, 8}};
    EXPECT_EQ(CallMethod(engine.Get(), L"AddXY4Tr", {arrays, false}).code, S_OK);
    EXPECT_EQ(CallMethod(engine.Get(), L"AddXY4Tr", {Table({{L"c", 9, 10, 11, 12}}), true}).code,
              S_OK);
    Outcome pairs = GetProperty(engine.Get(), L"vXYs");
    ASSERT_EQ(pairs.code, S_OK);
    ASSERT_EQ(SafeArrayGetDim(pairs.result->parray), 2U);
    EXPECT_EQ(pairs.result.At(0, 0).Text(), L"a");
    EXPECT_EQ(pairs.result.At(0, 7)->boolVal, VARIANT_TRUE);
    EXPECT_EQ(pairs.result.At(1, 2).Number(), 6);
    EXPECT_EQ(pairs.result.At(2, 0).Text(), L"c");
    EXPECT_EQ(pairs.result.At(2, 4).Number(), 12);

    Value fixed{{L"d", 1, 2, 3, 4}};  // an array variable of fixed size, which nothing replaces
    fixed->parray->fFeatures |= FADF_FIXEDSIZE;
    Value reference;
    reference->vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
    reference->pparray = &fixed->parray;
    EXPECT_EQ(CallMethod(engine.Get(), L"AddXY4Tr", {&*reference, true}).code, S_OK);
    fixed->parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);

    Value all, number;
    EXPECT_EQ(CallMethod(engine.Get(), L"GetAllXYs", {&*all, &*number}).code, S_OK);
    EXPECT_EQ(number.Number(), 4);
    EXPECT_EQ(all.At(3, 0).Text(), L"d");
    EXPECT_EQ(all.At(1, 0).Text(), L"b");
    EXPECT_EQ(CallMethod(engine.Get(), L"AddXY4Tr", {L"nothing", false}).code, DISP_E_TYPEMISMATCH);
}

TEST(CallByName, TransformsArraysOfScripts) {
    const auto tr = NewAffine();
    const auto engine = NewEngine();
    ::TR_PRM record{};
    tr->get_udtTrPrm(&record);
    engine->put_udtTrPrm(&record);
    Value x{1, 2.5}, y{3, L"4"};
    const Outcome outcome = CallMethod(engine.Get(), L"bTrXYArr", {&*x, &*y, &*x, &*y});
    EXPECT_EQ(outcome.result->boolVal, VARIANT_TRUE);
    EXPECT_EQ(x.At(0).Number(), First(1, 3));
    EXPECT_EQ(x.At(1).Number(), First(2.5, 4));
    EXPECT_EQ(y.At(1).Number(), Second(2.5, 4));
}
