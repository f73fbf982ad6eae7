// What hosts read in the type library before they call anything.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>

#include "com/pairs.h"

using namespace com_client;

namespace {

constexpr GUID IdOf(unsigned char number) {
    return {0x5bb3fed9, 0x84b0, 0x431d, {0x80, 0x47, 0x1a, 0x6f, 0xf7, 0x97, 0, number}};
}

std::wstring NameOf(ITypeInfo& info, MEMBERID member) {
    Bstr name;
    info.GetDocumentation(member, &name, nullptr, nullptr, nullptr);
    return name.Text();
}

/// The names of a member and of its arguments.
std::vector<std::wstring> NamesOf(ITypeInfo& info, MEMBERID member) {
    BSTR names[20] = {};
    UINT count = 0;
    info.GetNames(member, names, 20, &count);
    std::vector<std::wstring> texts;
    for (UINT i = 0; i < count; ++i) {
        texts.emplace_back(names[i]);
        SysFreeString(names[i]);
    }
    return texts;
}

/// The fields of a record, or the names of an enumeration, with offsets or values.
std::map<std::wstring, long> VariablesOf(REFGUID id) {
    std::map<std::wstring, long> variables;
    const ComPtr<ITypeInfo> info = TypeOf(id);
    TYPEATTR* attributes = nullptr;
    if (!info || FAILED(info->GetTypeAttr(&attributes))) return variables;
    for (UINT i = 0; i < attributes->cVars; ++i) {
        VARDESC* variable = nullptr;
        info->GetVarDesc(i, &variable);
        const bool constant = variable->varkind == VAR_CONST;
        variables[NameOf(*info.Get(), variable->memid)] =
            constant ? variable->lpvarValue->lVal : static_cast<long>(variable->oInst);
        info->ReleaseVarDesc(variable);
    }
    info->ReleaseTypeAttr(attributes);
    return variables;
}

ULONG SizeOf(REFGUID record) {
    ULONG size = 0;
    const ComPtr<IRecordInfo> info = RecordOf(record);
    if (info) info->GetSize(&size);
    return size;
}

/// The members of a dual interface in the order of its table, without those of IDispatch. A
/// property that is read and written stands there twice.
ComPtr<ITypeInfo> VtableOf(REFIID id) {
    ComPtr<ITypeInfo> vtable;
    HREFTYPE reference = 0;
    const ComPtr<ITypeInfo> info = TypeOf(id);
    if (info && SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) {
        info->GetRefTypeInfo(reference, &vtable);
    }
    return vtable;
}

/// Calls use(FUNCDESC) for each member.
void ForMembers(ITypeInfo& info, auto use) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info.GetTypeAttr(&attributes))) return;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* member = nullptr;
        info.GetFuncDesc(i, &member);
        use(*member);
        info.ReleaseFuncDesc(member);
    }
    info.ReleaseTypeAttr(attributes);
}

std::wstring Described(const VARIANT& value) {
    switch (value.vt) {
        case VT_R8: return L"double " + std::to_wstring(value.dblVal);
        case VT_I4: return L"long " + std::to_wstring(value.lVal);
        case VT_I2: return L"short " + std::to_wstring(value.iVal);
        case VT_BOOL: return L"boolean " + std::to_wstring(value.boolVal);
        case VT_BSTR: return L"text " + std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
        default: return L"type " + std::to_wstring(value.vt);
    }
}

/// All defaults of an interface, as "member.argument".
std::map<std::wstring, std::wstring> DefaultsOf(REFIID id) {
    std::map<std::wstring, std::wstring> defaults;
    const ComPtr<ITypeInfo> info = VtableOf(id);
    if (!info) return defaults;
    ForMembers(*info.Get(), [&](const FUNCDESC& member) {
        const auto names = NamesOf(*info.Get(), member.memid);
        for (int i = 0; i < member.cParams; ++i) {
            const PARAMDESC& argument = member.lprgelemdescParam[i].paramdesc;
            if ((argument.wParamFlags & PARAMFLAG_FHASDEFAULT) == 0) continue;
            EXPECT_NE(argument.wParamFlags & PARAMFLAG_FOPT, 0);
            defaults[names[0] + L"." + names[static_cast<std::size_t>(i) + 1]] =
                Described(argument.pparamdescex->varDefaultValue);
        }
    });
    return defaults;
}

}  // namespace

TEST(TypeLibrary, HasRecordsAsTheCompilerPacksThem) {
    EXPECT_EQ(SizeOf(IdOf(2)), sizeof(kv_tr::TR_PRM));
    EXPECT_EQ(SizeOf(IdOf(3)), sizeof(kv_tr::AFFIN_PRM));
    EXPECT_EQ(SizeOf(IdOf(4)), sizeof(::typeXYs4Tr));

    auto fields = VariablesOf(IdOf(2));
    EXPECT_EQ(fields.size(), 45U);
    EXPECT_EQ(fields[L"dA0"], long{offsetof(kv_tr::TR_PRM, dA0)});
    EXPECT_EQ(fields[L"dA21"], long{offsetof(kv_tr::TR_PRM, dA21)});
    EXPECT_EQ(fields[L"dB0"], long{offsetof(kv_tr::TR_PRM, dB0)});
    EXPECT_EQ(fields[L"dB21"], long{offsetof(kv_tr::TR_PRM, dB21)});
    fields = VariablesOf(IdOf(3));
    EXPECT_EQ(fields[L"dA2"], long{offsetof(kv_tr::AFFIN_PRM, dA2)});
    EXPECT_EQ(fields[L"dB1"], long{offsetof(kv_tr::AFFIN_PRM, dB1)});
    EXPECT_EQ(fields[L"dB0"], long{offsetof(kv_tr::AFFIN_PRM, dB0)});
    fields = VariablesOf(IdOf(4));
    EXPECT_EQ(fields[L"dXsour"], long{offsetof(::typeXYs4Tr, dXsour)});
    EXPECT_EQ(fields[L"bNotUsed"], long{offsetof(::typeXYs4Tr, bNotUsed)});
}

TEST(TypeLibrary, HasTheNumbersOfTheTypes) {
    auto types = VariablesOf(IdOf(1));
    EXPECT_EQ(types.size(), 36U);
    EXPECT_EQ(types[L"TR_METER_OL"], kv_tr::TR_METER_OL);
    EXPECT_EQ(types[L"TR_AFFIN_5"], kv_tr::TR_AFFIN_5);
    EXPECT_EQ(types[L"TR_HELMERT_3"], kv_tr::TR_HELMERT_3);
    EXPECT_EQ(types[L"TR_BILINEAR"], kv_tr::TR_BILINEAR);
    EXPECT_EQ(types[L"TR_STG_HER"], kv_tr::TR_STG_HER);
    EXPECT_EQ(types[L"TR_HKR_BOV"], kv_tr::TR_HKR_BOV);
    EXPECT_EQ(types[L"TR_EOV_HDR_10e"], kv_tr::TR_EOV_HDR_10e);
}

TEST(TypeLibrary, HasTheMembersOfClsTrInTheirOrder) {
    const std::vector<std::wstring> expected{L"gName",
                                             L"gId",
                                             L"PI",
                                             L"RAD_90",
                                             L"RAD_180",
                                             L"RAD_270",
                                             L"RAD_360",
                                             L"lDebugId",
                                             L"TearDown",
                                             L"lNumberOfParameters",
                                             L"udtTrPrm",
                                             L"udtTrAffinPrm",
                                             L"udtTrPrmByDAT2M1",
                                             L"bLoadByDAT2M1",
                                             L"bGetAffinPrm",
                                             L"bGetHelmertPrm",
                                             L"bGetInversePrm",
                                             L"sTrTypeName",
                                             L"TrXY",
                                             L"bChooseFile4LoadAffinTrPrm",
                                             L"bChooseFile4SaveAffinTrPrm",
                                             L"bChooseFile4LoadPoliTrPrm",
                                             L"bChooseFile4SavePoliTrPrm",
                                             L"bTypeIsPolinom",
                                             L"bChooseTrPrm",
                                             L"bChooseFileAndSaveTrPrm",
                                             L"bSaveAffinTrPrm",
                                             L"bLoadAffinTrPrmFromFile",
                                             L"bLoadPoliTrPrmFromFile",
                                             L"bSavePoliTrPrm",
                                             L"sListHelmertTrPrm",
                                             L"sListPoliTrPrm",
                                             L"bShowAffinTrPrm",
                                             L"bShowPoliTrPrm",
                                             L"bShowXYs4Tr",
                                             L"TrAngle",
                                             L"oCalcTr",
                                             L"sInitDir",
                                             L"vTrPrm"};
    const ComPtr<ITypeInfo> info = VtableOf(IID__clsTr);
    ASSERT_TRUE(info);
    std::vector<std::wstring> names;
    int place = 7 * static_cast<int>(sizeof(void*));  // behind IDispatch
    ForMembers(*info.Get(), [&](const FUNCDESC& member) {
        EXPECT_EQ(member.oVft, place);
        place += static_cast<int>(sizeof(void*));
        const std::wstring name = NameOf(*info.Get(), member.memid);
        if (names.empty() || names.back() != name) names.push_back(name);
    });
    EXPECT_EQ(names, expected);
}

TEST(TypeLibrary, NamesTheArguments) {
    const ComPtr<ITypeInfo> info = VtableOf(IID__clsTr);
    ASSERT_TRUE(info);
    constexpr MEMBERID kGetInversePrm = 17, kTrXY = 19, kLoad = 20, kSave = 27, kTrAngle = 36;
    using Names = std::vector<std::wstring>;
    EXPECT_EQ(NamesOf(*info.Get(), kTrXY), (Names{L"TrXY", L"dX", L"dY", L"dXtr", L"dYtr"}));
    EXPECT_EQ(NamesOf(*info.Get(), kTrAngle),
              (Names{L"TrAngle", L"dAngle", L"dAngleTr", L"dX", L"dY", L"dLength"}));
    EXPECT_EQ(NamesOf(*info.Get(), kGetInversePrm)[1], L"udtInvAFFIN_PRM");
    EXPECT_EQ(NamesOf(*info.Get(), kLoad)[2], L"sInitDir");
    EXPECT_EQ(NamesOf(*info.Get(), kSave)[2], L"bItr25Format");
}

TEST(TypeLibrary, HasTheDefaultsOfArgumentsWithTheirTypes) {
    using Defaults = std::map<std::wstring, std::wstring>;
    EXPECT_EQ(DefaultsOf(IID__clsTr),
              (Defaults{{L"TrAngle.dLength", L"double 100.000000"},
                        {L"bChooseFile4LoadAffinTrPrm.Owner", L"long -1"},
                        {L"bChooseFile4LoadPoliTrPrm.Owner", L"long -1"},
                        {L"bChooseFile4SaveAffinTrPrm.Owner", L"long -1"},
                        {L"bChooseFile4SavePoliTrPrm.Owner", L"long -1"},
                        {L"bChooseFileAndSaveTrPrm.Owner", L"long -1"},
                        {L"bLoadAffinTrPrmFromFile.bItr25Format", L"boolean 0"},
                        {L"bSaveAffinTrPrm.bItr25Format", L"boolean 0"}}));
    EXPECT_EQ(DefaultsOf(IID__clsTrCalc),
              (Defaults{{L"DoCalc_Affin5.iterCntMax", L"short 50"},
                        {L"DoCalc_Helmert3.iterCntMax", L"short 20"},
                        {L"SaveLog.LanguageID", L"long 0"},
                        {L"bChooseFile4LoadXYs4Tr.Owner", L"long -1"},
                        {L"bChooseFile4SaveXYs4Tr.Owner", L"long -1"}}));
    EXPECT_EQ(DefaultsOf(IID__clsFile), (Defaults{{L"OpenIt.bInput", L"boolean 0"}}));
    auto choosers = DefaultsOf(IID__GCommonDialog);
    EXPECT_EQ(choosers.size(), 21U);
    EXPECT_EQ(choosers[L"VBGetOpenFileName.FileTitle"], L"text ");
    EXPECT_EQ(choosers[L"VBGetOpenFileName.FileMustExist"], L"boolean -1");
    EXPECT_EQ(choosers[L"VBGetOpenFileName.MultiSelect"], L"boolean 0");
    EXPECT_EQ(choosers[L"VBGetOpenFileName.Filter"], L"text All (*.*)| *.*");
    EXPECT_EQ(choosers[L"VBGetOpenFileName.FilterIndex"], L"long 1");
    EXPECT_EQ(choosers[L"VBGetOpenFileName.DefaultExt"], L"text ");
    EXPECT_EQ(choosers[L"VBGetSaveFileName.OverWritePrompt"], L"boolean -1");
    EXPECT_EQ(choosers[L"VBGetSaveFileName.Filter"], L"text All (*.*)| *.*");
    EXPECT_EQ(choosers[L"VBGetSaveFileName.Owner"], L"long -1");
}
