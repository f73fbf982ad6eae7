// The chooser of national transformations without its window.
#include "kv_tr/forms/frmChooseDAT2M1.h"

#include <utility>

#include "kv_tr/model/national.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {

bool frmChooseDAT2M1::bDoModal(enuTR_TYPE& type, const std::function<void()>& showModal) {
    type_ = type;
    confirmed_ = false;
    const int row = type - TR_STG_HER;
    selected_ = row >= 0 && row < std::ssize(NationalInfos()) ? row : -1;
    showModal();
    type = type_;
    return confirmed_;
}

std::vector<std::string> frmChooseDAT2M1::Headings() {
    return {Translated(Text::kNameHeading), Translated(Text::kSourceHeading),
            Translated(Text::kDestinationHeading), Translated(Text::kAccuracyHeading),
            Translated(Text::kAreaHeading)};
}

std::vector<std::vector<std::string>> frmChooseDAT2M1::Rows() {
    std::vector<std::vector<std::string>> rows;
    for (const NationalInfo& info : NationalInfos()) {
        const bool country = info.area == NationalArea::kHungary;
        rows.push_back({TypeName(info.type, ComponentTexts()), info.source, info.destination,
                        FormatFixed(info.accuracy, 3, 0),
                        country ? Translated(Text::kHungary) : Translated(Text::kBudapest)});
    }
    return rows;
}

void frmChooseDAT2M1::lstTr(int row) {
    if (std::exchange(selected_, row) != row) Changed.Raise();
}

std::string frmChooseDAT2M1::Origin() const {
    return selected_ < 0 ? ""
                         : Translated(NationalOrigin(
                               NationalInfos()[static_cast<std::size_t>(selected_)].type));
}

bool frmChooseDAT2M1::cmdOk() {
    if (selected_ < 0) return false;
    type_ = static_cast<enuTR_TYPE>(TR_STG_HER + selected_);
    confirmed_ = true;
    return true;
}

}  // namespace kv_tr
