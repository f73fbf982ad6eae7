// The component through its tables of functions, as compiled hosts call it: it must give what the
// library gives, bit for bit.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <filesystem>

#include "com/pairs.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/ml_strings.h"

using namespace com_client;

namespace {

/// An engine of the component and one of the library with the same points.
struct Engines {
    ComPtr<_clsTrCalc> com = NewEngine();
    kv_tr::clsTrCalc library{};

    Engines() {
        SAFEARRAY* records = RecordsOf(Points());
        EXPECT_EQ(com->AddXY4Tr(&records, VARIANT_FALSE), S_OK);
        SafeArrayDestroy(records);
        library.AddXY4Tr(Points(), false);
    }
};

bool SameBits(const auto& one, const auto& other) {
    return sizeof one == sizeof other && std::memcmp(&one, &other, sizeof one) == 0;
}

/// Records what a handler of the event sees, and answers with another type.
class Listener final : public IDispatch {
public:
    std::vector<LONG> seen{};

    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
        *out = id == IID_IUnknown || id == IID_IDispatch || id == DIID___clsTrCalc ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        EXPECT_EQ(id, 1);
        EXPECT_EQ(given->cArgs, 1U);
        EXPECT_EQ(given->rgvarg[0].vt, VT_BYREF | VT_I4);
        seen.push_back(*given->rgvarg[0].plVal);
        *given->rgvarg[0].plVal = ::TR_AFFIN;
        return S_OK;
    }
    ULONG references = 1;
};

ComPtr<IConnectionPoint> EventOf(_clsTrCalc* engine) {
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    engine->QueryInterface(IID_IConnectionPointContainer,
                           reinterpret_cast<void**>(container.GetAddressOf()));
    if (container) container->FindConnectionPoint(DIID___clsTrCalc, &point);
    return point;
}

std::wstring TemporaryFile(const wchar_t* name) {
    return (std::filesystem::temp_directory_path() / name).wstring();
}

}  // namespace

TEST(Classes, AreCreatedByName) {
    for (const wchar_t* name : {L"clsTr", L"clsTrCalc", L"clsFile", L"GCommonDialog",
                                L"clsComponent", L"clsDebug", L"clsRec"}) {
        const std::wstring known = std::wstring(L"KV_Tr.") + name;
        const auto object = Create<IDispatch>(known.c_str(), IID_IDispatch);
        ASSERT_TRUE(object) << std::string(known.begin(), known.end());
        ComPtr<ITypeInfo> info;
        Bstr own;
        ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
        info->GetDocumentation(MEMBERID_NIL, &own, nullptr, nullptr, nullptr);
        EXPECT_EQ(own.Text(), std::wstring(L"_") + name);
    }
}

TEST(Classes, LetTheDllGoWithTheLastObject) {
    const auto mayUnload = [] {
        using Function = HRESULT(WINAPI*)();
        const HMODULE module = GetModuleHandleW(L"kv_tr_com.dll");
        const auto function = std::bit_cast<Function>(GetProcAddress(module, "DllCanUnloadNow"));
        return function ? function() : E_FAIL;
    };
    ComPtr<_clsTr> tr = NewTr();
    ASSERT_TRUE(tr);
    ComPtr<_clsTrCalc> engine;
    ASSERT_EQ(tr->get_oCalcTr(&engine), S_OK);
    tr.Reset();
    EXPECT_EQ(mayUnload(), S_FALSE);
    LONG count = -1;
    EXPECT_EQ(engine->get_lFullCnt(&count), S_OK);
    EXPECT_EQ(count, 0);
    engine.Reset();
    EXPECT_EQ(mayUnload(), S_OK);
}

TEST(Engine, FitsEveryTypeAsTheLibraryDoes) {
    Engines engines;
    for (const int type : {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6}) {
        engines.com->put_eTrType(static_cast<::enuTR_TYPE>(type));
        engines.library.eTrType(static_cast<kv_tr::enuTR_TYPE>(type));
        EXPECT_EQ(engines.com->DoCalcTr(), S_OK);
        engines.library.DoCalcTr();
        ::TR_PRM record{};
        EXPECT_EQ(engines.com->get_udtTrPrm(&record), S_OK);
        EXPECT_TRUE(SameBits(record, engines.library.udtTrPrm())) << type;

        double figures[5] = {};
        engines.com->get_dRmsErr(&figures[0]);
        engines.com->get_dRmsErrX(&figures[1]);
        engines.com->get_dRmsErrY(&figures[2]);
        engines.com->get_dMiddleErrX(&figures[3]);
        engines.com->get_dMiddleErrY(&figures[4]);
        const kv_tr::clsTrCalc& library = engines.library;
        const double expected[5] = {library.dRmsErr(), library.dRmsErrX(), library.dRmsErrY(),
                                    library.dMiddleErrX(), library.dMiddleErrY()};
        EXPECT_TRUE(SameBits(figures, expected)) << type;

        double x = 0, y = 0, xOfLibrary = 0, yOfLibrary = 0;
        engines.com->TrXY(600123, 200456, &x, &y);
        library.TrXY(600123, 200456, xOfLibrary, yOfLibrary);
        EXPECT_EQ(x, xOfLibrary);
        EXPECT_EQ(y, yOfLibrary);
    }
}

TEST(Engine, IteratesAsOftenAsItIsTold) {
    Engines engines;
    for (const short passes : {short{0}, short{20}}) {
        short given = passes;
        engines.com->put_eTrType(::TR_HELMERT_3);
        engines.library.eTrType(kv_tr::TR_HELMERT_3);
        EXPECT_EQ(engines.com->DoCalc_Helmert3(&given), S_OK);
        engines.library.DoCalc_Helmert3(passes);
        ::TR_PRM record{};
        engines.com->get_udtTrPrm(&record);
        EXPECT_TRUE(SameBits(record, engines.library.udtTrPrm())) << passes;
    }
}

TEST(Engine, GivesPairsAsArraysOfRecords) {
    Engines engines;
    engines.com->DoCalcTr();
    engines.library.DoCalcTr();
    const auto expected = engines.library.Pairs();
    SAFEARRAY* array = nullptr;
    LONG count = 0;
    ASSERT_EQ(engines.com->GetAllXYs(&array, &count), S_OK);
    ASSERT_EQ(count, static_cast<LONG>(expected.size()));
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const ::typeXYs4Tr& pair = static_cast<::typeXYs4Tr*>(data)[i];
        EXPECT_EQ(std::wstring(pair.sId), Wide(expected[i].sId));
        EXPECT_EQ(pair.dXsour, expected[i].dXsour);
        EXPECT_EQ(pair.dYsour, expected[i].dYsour);
        EXPECT_EQ(pair.dXdest, expected[i].dXdest);
        EXPECT_EQ(pair.dYdest, expected[i].dYdest);
        EXPECT_EQ(pair.dXerr, expected[i].dXerr);
        EXPECT_EQ(pair.dYerr, expected[i].dYerr);
        EXPECT_EQ(pair.bNotUsed, expected[i].bNotUsed ? VARIANT_TRUE : VARIANT_FALSE);
    }
    SafeArrayUnaccessData(array);

    EXPECT_EQ(engines.com->GetXYs(&array, &count, VARIANT_FALSE), S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(array->rgsabound[0].cElements, 1U);
    EXPECT_EQ(engines.com->get_lNotUsedCnt(&count), S_OK);
    EXPECT_EQ(count, 1);
    SafeArrayDestroy(array);

    double extent[4] = {};
    engines.com->GetRect4Dest(&extent[0], &extent[1], &extent[2], &extent[3]);
    double same[4] = {};
    engines.library.GetRect4Dest(same[0], same[1], same[2], same[3]);
    EXPECT_TRUE(SameBits(extent, same));
}

TEST(Engine, TakesArraysFromIndexZeroOnly) {
    const auto engine = NewEngine();
    SAFEARRAY* records = RecordsOf(Points(), 1);
    EXPECT_EQ(engine->AddXY4Tr(&records, VARIANT_FALSE), ErrorOf(9));
    EXPECT_NE(LastError(), L"");
    SafeArrayDestroy(records);
}

TEST(Engine, TransformsArrays) {
    Engines engines;
    engines.com->DoCalcTr();
    engines.library.DoCalcTr();
    SAFEARRAYBOUND bound{3, 0};
    const auto numbers = [&](std::vector<double> values) {
        SAFEARRAY* array = SafeArrayCreate(VT_R8, 1, &bound);
        for (LONG i = 0; i < 3; ++i)
            SafeArrayPutElement(array, &i, &values[static_cast<std::size_t>(i)]);
        return array;
    };
    SAFEARRAY* x = numbers({600001, 600002, 600004});
    SAFEARRAY* y = numbers({200010, 200020, 200050});
    SAFEARRAY* fixed = numbers({0, 0, 0});
    fixed->fFeatures |= FADF_FIXEDSIZE;
    SAFEARRAY* const own = fixed;
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(engines.com->bTrXYArr(&x, &y, &x, &fixed, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(fixed, own);
    std::vector<double> firsts, seconds;
    engines.library.bTrXYArr({600001, 600002, 600004}, {200010, 200020, 200050}, firsts, seconds);
    for (LONG i = 0; i < 3; ++i) {
        double first = 0, second = 0;
        SafeArrayGetElement(x, &i, &first);
        SafeArrayGetElement(fixed, &i, &second);
        EXPECT_EQ(first, firsts[static_cast<std::size_t>(i)]);
        EXPECT_EQ(second, seconds[static_cast<std::size_t>(i)]);
    }

    bound.cElements = 2;
    SAFEARRAY* small = SafeArrayCreate(VT_R8, 1, &bound);
    small->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(engines.com->bTrXYArr(&x, &y, &small, &fixed, &done), DISP_E_ARRAYISLOCKED);
    for (SAFEARRAY* array : {x, y, fixed, small}) {
        array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
        SafeArrayDestroy(array);
    }
}

TEST(Engine, RaisesTypeChanchedAndDoesNotReadTheAnswer) {
    Engines engines;
    const ComPtr<IConnectionPoint> point = EventOf(engines.com.Get());
    ASSERT_TRUE(point);
    Listener listener;
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&listener, &cookie), S_OK);
    engines.com->put_eTrType(::TR_POLI_5);  // 21 points needed, 29 in use
    for (LONG i = 10; i < 18; ++i) engines.com->ExcludeByIx(i, VARIANT_FALSE);
    EXPECT_TRUE(listener.seen.empty());
    engines.com->ExcludeByIx(18, VARIANT_FALSE);
    EXPECT_EQ(listener.seen, std::vector<LONG>{4});

    ::enuTR_TYPE type = ::TR_POLI_1;
    engines.com->get_eTrType(&type);
    EXPECT_EQ(type, ::TR_POLI_4);

    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
    engines.com->put_eTrType(::TR_POLI_5);
    engines.com->ExcludeByIx(20, VARIANT_FALSE);
    EXPECT_EQ(listener.seen.size(), 1U);
    EXPECT_EQ(listener.references, 1U);
}

TEST(Transformation, GivesWhatTheLibraryGives) {
    const auto com = NewTr();
    kv_tr::clsTr library;
    kv_tr::AFFIN_PRM six{
        .eType = kv_tr::TR_AFFIN, .dA0 = 11, .dA1 = 2, .dA2 = 3, .dB1 = -5, .dB0 = 13, .dB2 = 7};
    library.udtTrAffinPrm(six);
    auto record = std::bit_cast<::AFFIN_PRM>(six);
    EXPECT_EQ(com->put_udtTrAffinPrm(&record), S_OK);

    double own[6] = {}, same[6] = {};
    VARIANT_BOOL has = VARIANT_FALSE;
    com->bGetAffinPrm(&own[0], &own[1], &own[2], &own[3], &own[4], &own[5], &has);
    library.bGetAffinPrm(same[0], same[1], same[2], same[3], same[4], same[5]);
    EXPECT_EQ(has, VARIANT_TRUE);
    EXPECT_TRUE(SameBits(own, same));
    com->bGetHelmertPrm(&own[5], &own[4], &own[3], &own[2], &own[1], &own[0], &has);
    EXPECT_EQ(own[5], same[0]);
    EXPECT_EQ(own[0], same[5]);

    EXPECT_EQ(com->bGetInversePrm(&record, &has), S_OK);
    library.bGetInversePrm(six);
    EXPECT_TRUE(SameBits(record, six));

    com->TrXY(17, 19, &own[0], &own[1]);
    library.TrXY(17, 19, same[0], same[1]);
    double length = 250;
    com->TrAngle(1.25, &own[2], 17, 19, &length);
    library.TrAngle(1.25, same[2], 17, 19, 250);
    EXPECT_TRUE(SameBits(own[0], same[0]) && SameBits(own[1], same[1]));
    EXPECT_EQ(own[2], same[2]);

    com->put_udtTrPrmByDAT2M1(::TR_BOV_EOV);
    library.udtTrPrmByDAT2M1(kv_tr::TR_BOV_EOV);
    ::TR_PRM whole{};
    com->get_udtTrPrm(&whole);
    EXPECT_TRUE(SameBits(whole, library.udtTrPrm()));
    com->get_RAD_270(&own[0]);
    com->get_RAD_360(&own[1]);
    EXPECT_EQ(own[0], library.RAD_270);
    EXPECT_EQ(own[1], library.RAD_360);
}

TEST(Transformation, SavesAndLoadsParameters) {
    const auto com = NewTr();
    ::AFFIN_PRM six{::TR_AFFIN, 11, 2, 3, -5, 13, 7};
    com->put_udtTrAffinPrm(&six);
    Bstr name(TemporaryFile(L"kv_tr_com_test.trp"));
    VARIANT_BOOL itr25 = VARIANT_FALSE, done = VARIANT_FALSE;
    EXPECT_EQ(com->bSaveAffinTrPrm(&name, &itr25, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    const auto other = NewTr();
    EXPECT_EQ(other->bLoadAffinTrPrmFromFile(&name, &itr25, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    double a0 = 0, a1 = 0, a2 = 0, b0 = 0, b1 = 0, b2 = 0;
    other->bGetAffinPrm(&a0, &a1, &a2, &b0, &b1, &b2, &done);
    EXPECT_EQ(a2, 3);
    EXPECT_EQ(b1, -5);
    Bstr folder;
    other->get_gName(&folder);
    EXPECT_NE(folder.Text(), L"");
    std::filesystem::remove(name.Text());
}

TEST(Transformation, IsHungarianUntilAHostSaysOtherwise) {
    const auto tr = NewTr();
    Bstr name;
    EXPECT_EQ(tr->get_sTrTypeName(&name), S_OK);
    EXPECT_EQ(name.Text(), L"HELMERT transzformáció");
    ComPtr<_clsTrCalc> engine;
    tr->get_oCalcTr(&engine);
    engine->setLanguageID(kv_tr::kEnglish);
    EXPECT_EQ(tr->get_sTrTypeName(&name), S_OK);
    EXPECT_NE(name.Text(), L"HELMERT transzformáció");
    engine->setLanguageID(kv_tr::kHungarian);
}

TEST(Errors, OfATornDownEngineAreThoseOfAnObjectNotSet) {
    const auto tr = NewTr();
    ComPtr<_clsTrCalc> engine, again;
    ASSERT_EQ(tr->get_oCalcTr(&engine), S_OK);
    tr->get_oCalcTr(&again);
    EXPECT_EQ(engine.Get(), again.Get());
    SAFEARRAY* pairs = RecordsOf(Points());
    engine->AddXY4Tr(&pairs, VARIANT_FALSE);
    EXPECT_EQ(tr->TearDown(), S_OK);
    EXPECT_EQ(tr->get_oCalcTr(&again), ErrorOf(91));
    EXPECT_FALSE(again);
    EXPECT_NE(LastError(), L"");
    LONG count = 0;
    EXPECT_EQ(engine->GetAllXYs(&pairs, &count), ErrorOf(9));
    SafeArrayDestroy(pairs);
    EXPECT_EQ(engine->ResetAllNotUsed(), ErrorOf(9));
}

TEST(Errors, OfASingularRecordAreDivisions) {
    const auto tr = NewTr();
    ::AFFIN_PRM singular{::TR_AFFIN, 1, 2, 3, 2, 1, 3};
    tr->put_udtTrAffinPrm(&singular);
    VARIANT_BOOL has = VARIANT_FALSE;
    EXPECT_EQ(tr->bGetInversePrm(&singular, &has), ErrorOf(11));
}

TEST(SmallClasses, WriteAndReadAFile) {
    const auto file = Create<_clsFile>(L"KV_Tr.clsFile", IID__clsFile);
    ASSERT_TRUE(file);
    const Bstr name(TemporaryFile(L"kv_tr_com_űő-việt.txt"));
    VARIANT_BOOL truth = VARIANT_FALSE;
    EXPECT_EQ(file->OpenIt(name, VARIANT_FALSE, &truth), S_OK);
    EXPECT_EQ(file->get_IsOpen(&truth), S_OK);
    EXPECT_EQ(truth, VARIANT_TRUE);
    short number = 0;
    file->get_FileNr(&number);
    EXPECT_GT(number, 0);
    file->Write(Bstr(L"űrő"));
    file->Print(Bstr(L" 1"));
    EXPECT_EQ(file->CloseIt(), S_OK);
    file->OpenIt(name, VARIANT_TRUE, &truth);
    Bstr line;
    EXPECT_EQ(file->ReadLine(&line), S_OK);
    EXPECT_EQ(line.Text(), L"űrő 1");
    EXPECT_EQ(file->get_AtEnd(&truth), S_OK);
    EXPECT_EQ(truth, VARIANT_TRUE);
    EXPECT_EQ(file->ReadLine(&line), ErrorOf(62));
    file->TearDown();
    EXPECT_EQ(file->Print(Bstr(L"x")), ErrorOf(52));
    std::filesystem::remove(name.Text());
}

TEST(SmallClasses, TellWhichObjectsAreAlive) {
    const auto debug = Create<_clsDebug>(L"KV_Tr.clsDebug", IID__clsDebug);
    const auto component = Create<_clsComponent>(L"KV_Tr.clsComponent", IID__clsComponent);
    ASSERT_TRUE(debug && component);
    const auto tr = NewTr();
    LONG id = 0;
    tr->get_lDebugId(&id);
    Value table;
    ASSERT_EQ(debug->get_colTraceObj(&*table), S_OK);
    ASSERT_EQ(table->vt, VT_ARRAY | VT_VARIANT);
    bool found = false;
    for (LONG row = 0; row < 3; ++row) {
        if (table.At(row, 0).Number() == id) found = table.At(row, 1).Text() == L"clsTr";
    }
    EXPECT_TRUE(found);
    component->put_sAppTitle(Bstr(L"Trial"));
    Bstr title;
    component->get_sAppTitle(&title);
    EXPECT_EQ(title.Text(), L"Trial");
    component->put_sAppTitle(Bstr(L""));
}
