// The captions and tool tips of the controls of a form.
#include "ui/captions.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "support/ml_strings.h"

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
    {"chkDx",            40, "Dy"},  // deliberately crosswise: the fields named X are shown as Y
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
// clang-format on

std::string TextOf(int id, std::string_view text) {
    return id == 0 ? std::string(text) : GetMlString(id, text);
}

}  // namespace

void Captions::SetText(std::string_view control, std::string text) {
    texts_[Row(control).control] = std::move(text);
}

std::string Captions::Text(std::string_view control) const {
    if (const auto text = texts_.find(control); text != texts_.end()) return text->second;
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

}  // namespace kv_tr
