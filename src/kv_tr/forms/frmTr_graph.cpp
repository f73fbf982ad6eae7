// The residual graph of the adjustment dialog.
#include "kv_tr/forms/frmTr.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

void frmTr::Resize(double width, double height) {
    constexpr double kLeastSize = 13;
    if (width < kLeastSize || height < kLeastSize) return;
    surfaceWidth_ = width;
    surfaceHeight_ = height;
    CalcScale4Pic();
    Activate();
    ShowResult();
}

void frmTr::CalcScale4Pic() { scale_ = ScaleFor(engine_->Held(), surfaceWidth_, surfaceHeight_); }

const std::vector<GraphMark>& frmTr::Marks() const {
    if (!marksAreCurrent_) {
        marks_ = GraphMarks(engine_->Held(), engine_->gdErrLimit, scale_, labels_);
        marksAreCurrent_ = true;
    }
    return marks_;
}

bool frmTr::PicBoxMouseUp(double x, double y) {
    if (!pickArmed_) return false;
    pickArmed_ = false;
    const auto nearest = NearestPair(engine_->Held().Points(), scale_.ToDestination({x, y}));
    if (!nearest) {
        ShowMessage(GetMlString(96, "Közelebb!"), Icon::kInformation);
        return false;
    }
    Fit([&] { engine_->ExcludeByIx(*nearest, true); });
    SelectTypeOf(engine_->eTrType());
    ShowResult();
    return true;
}

GraphPage frmTr::PicturePage(double width, double height) const {
    return PageOf(engine_->Held(), engine_->gdErrLimit, labels_, width, height);
}

void frmTr::ToggleLabel(bool& label) {
    label = !label;
    ShowResult();
}

}  // namespace kv_tr
