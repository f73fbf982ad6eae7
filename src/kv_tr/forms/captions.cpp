// The captions and tool tips of the controls of a form.
#include "kv_tr/forms/captions.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

// clang-format off
constexpr Caption kTrCaptions[] = {
    //control           id    text                                 tool tip
    {"frmTr",            31, "Transzformáció"},
    {"Grid1",             0, "",                                     87},
    {"opMode(0)",        35, "Táblázat"},
    {"opMode(1)",        34, "Szerkesztés"},
    {"opMode(2)",        33, "Grafika"},
    {"frmTrType",        43, "Transzformáció tipusa"},
    {"RadioTrType(0)",   51, "HELMERT"},
    {"RadioTrType(1)",   52, "AFFIN"},
    {"RadioTrType(2)",   53, "1. fokú"},
    {"RadioTrType(3)",   54, "2. fokú"},
    {"RadioTrType(4)",   55, "3. fokú"},
    {"RadioTrType(5)",   56, "4. fokú"},
    {"RadioTrType(6)",   57, "5. fokú"},
    {"RadioTrType(7)",   49, "Affin(5i)",                            50},
    {"RadioTrType(8)",   46, "Helmert(3i)",                          47},
    {"RadioTrType(9)",   44, "Trapéz",                               45},
    {"chkInverz",        48, "Inverz"},
    {"frmDsp",           37, "Kijelzés"},
    {"chkNr",            41, "Psz."},
    {"chkDx",            40, "Dy"},  // crosswise: surveyors call the fields named X Y
    {"chkDy",            39, "Dx"},
    {"chkRad",            0, "Dxy"},
    {"frmRes",           60, "Statisztika"},
    {"Label1",           65, "Középhibák [m]:"},
    {"lblKh",            69, "Kh [m]:"},
    {"lblCnt",           67, "Számított:"},
    {"lblExtCnt",        66, "Kizárt:"},
    {"lblLimit",         68, "Hibahatár[m]:"},
    {"txtLimit",          0, "",                                     64},
    {"cmdRemoveExt",     61, " Kizárt pontok végleges törlése"},
    {"cmsResetExt",      62, " Kizárt pontok visszavétele"},
    {"cmdSaveLog",       36, "Jegyzőkönyv mentése"},
    {"cmdSavePrm",       59, "Tr. paraméterek mentése"},
    {"cmdApplyResult",   27, "OK"},
    {"cmdExit",          42, "Mégsem"},
    {"PicBox",            0, "",                                     58},
    {"cmdPrint",       1110, "Nyomtatás..."},
    {"cmdSavePicture", 1111, "Kép mentése..."},
};

constexpr Caption kAffinTrPrmCaptions[] = {
    {"frmAffinTrPrm",     1, " Transzformációs együtthatók"},
    {"frmPrm",            4, "Transzformációs együtthatók"},
    {"lblTrPrm(0)",      12, "A0"},
    {"lblTrPrm(1)",      11, "A1"},
    {"lblTrPrm(2)",      10, "A2"},
    {"lblTrPrm(3)",       9, "B0"},
    {"lblTrPrm(4)",       8, "B1"},
    {"lblTrPrm(5)",       7, "B2"},
    {"frmSample",        13, "Minta"},
    {"lblSample(0)",     15, " Y' = A0+ A1 * Y + A2 * X"},
    {"lblSample(1)",     14, " X' = B0+ B1 * Y + B2 * X"},
    {"cmdMeterOl",        2, "Méter-öl"},
    {"cmdOlMeter",        3, "Öl-méter"},
    {"cmdLoad",          17, "Tallózás"},
    {"cmdSave",          16, "Mentés"},
    {"cmdOk",            19, "Ok"},
    {"cmdNok",           18, "Mégse"},
};

constexpr Caption kPoliTrPrmCaptions[] = {
    {"frmPoliTrPrm",     20, " 1-5 fokú polinom együtthatók"},
    {"cmdDAT2M1",        21, "DAT2-M1..."},
    {"cmdLoad",          17, "Tallózás"},
    {"cmdSave",          16, "Mentés"},
    {"cmdOk",            19, "Ok"},
    {"cmdNok",           18, "Mégse"},
};

constexpr Caption kChoosePrmCaptions[] = {
    {"frmChoosePrm",     26, " Együtthatók választása"},
    {"cmdAffin",          0, "Helmert/Affin",                      1153},
    {"cmdPoli",          29, "Polinom (DAT2-M1)",                  1154},
    {"cmdCalc",          28, "Közös pontok alapján",               1155},
    {"cmdOk",            27, "OK",                                 1156},
    {"cmdNok",           18, "Mégse"},
};

constexpr Caption kChooseDAT2M1Captions[] = {
    {"frmChooseDAT2M1",  25, " DAT2-M1 polinom tr. állandók"},
    {"lstTr",             0, "",                                   1157},
    {"cmdOk",            19, "Ok"},
    {"cmdNok",           18, "Mégse"},
};

constexpr Caption kXY4TrCaptions[] = {
    {"frmXY4Tr",         22, " Közös pontok"},
    {"cmdLoad",          24, "Betöltés..."},
    {"cmdSave",          23, "Mentés..."},
    {"cmdOk",            19, "Ok"},
    {"cmdNok",           18, "Mégse"},
};
// clang-format on

std::string TextOf(int id, std::string_view text) {
    return id == 0 ? std::string(text) : GetMlString(id, text);
}

}  // namespace

void Captions::SetText(std::string_view control, std::function<std::string()> text) {
    texts_[Row(control).control] = std::move(text);
}

std::string Captions::Text(std::string_view control) const {
    if (const auto text = texts_.find(control); text != texts_.end()) return text->second();
    return TextOf(Row(control).captionId, Row(control).text);
}

std::string Captions::ToolTip(std::string_view control) const {
    return TextOf(Row(control).toolTipId, {});
}

const Caption& Captions::Row(std::string_view control) const {
    const auto row = std::ranges::find(rows_, control, &Caption::control);
    if (row == rows_.end()) throw std::out_of_range(std::string(control));
    return *row;
}

Caption& Captions::Row(std::string_view control) {
    return const_cast<Caption&>(std::as_const(*this).Row(control));
}

std::span<const Caption> TrCaptions() { return kTrCaptions; }
std::span<const Caption> AffinTrPrmCaptions() { return kAffinTrPrmCaptions; }
std::span<const Caption> PoliTrPrmCaptions() { return kPoliTrPrmCaptions; }
std::span<const Caption> ChoosePrmCaptions() { return kChoosePrmCaptions; }
std::span<const Caption> ChooseDAT2M1Captions() { return kChooseDAT2M1Captions; }
std::span<const Caption> XY4TrCaptions() { return kXY4TrCaptions; }

}  // namespace kv_tr
