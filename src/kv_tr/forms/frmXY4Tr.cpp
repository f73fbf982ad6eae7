// The list of control points as text, without its window.
#include "kv_tr/forms/frmXY4Tr.h"

#include <utility>

#include "kv_tr/forms/choose_file.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/control_point_file.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/working_folder.h"
#include "kv_tr/text/decimal_commas.h"

namespace kv_tr {

bool frmXY4Tr::bDoModal(clsTrCalc& engine, const std::string& title,
                        const std::function<void()>& showModal) {
    engine_ = &engine;
    if (!title.empty()) captions_.SetText("frmXY4Tr", [title] { return title; });
    original_ = engine.sListXYs();
    nameLine_.clear();
    Show(original_, original_);
    confirmed_ = false;
    showModal();
    engine_ = nullptr;
    return confirmed_;
}

void frmXY4Tr::cmdLoad() {
    const auto fileName = ChooseFile(*engine_, &clsTrCalc::bChooseFile4LoadXYs4Tr);
    if (!fileName) return;
    LoadedPoints loaded = LoadControlPoints(*fileName, Comma::kSuspect);
    ReportFailure(loaded);
    if (!loaded.accepted) return;
    file_ = loaded.source;
    filePoints_ = std::move(loaded.points);
    nameLine_ = *fileName + "\r\n";
    Show(nameLine_ + ListControlPoints(filePoints_, ComponentNumberStyle()), original_);
}

void frmXY4Tr::cmdSave() {
    const auto fileName = ChooseFile(*engine_, &clsTrCalc::bChooseFile4SaveXYs4Tr, "");
    if (fileName) WriteTextFile(*fileName, rtBox());
}

std::string frmXY4Tr::QuestionTitle() const { return Translated(Text::kPointsQuestionTitle); }

/// Makes the engine's points those of the text, or leaves them as they were when a line is bad: to
/// take only the lines above would lose the points below.
bool frmXY4Tr::TakeText() {
    const bool named = !nameLine_.empty() && rtBox().starts_with(nameLine_);
    const LoadedPoints loaded = LoadControlPoints(WriteWorkingFile(
        "tmp-XYs4Tr.dat",
        WithDecimalPoints(std::string_view(rtBox()).substr(named ? nameLine_.size() : 0))));
    ReportFailure(loaded);
    if (loaded.failed) return false;
    const bool swapped = engine_->Held().IsSwapped() && !named;
    engine_->Take(loaded.points, false);
    engine_->Held().SetSwapped(swapped);
    if (!named) return true;
    PointSource file = file_;
    if (loaded.points != filePoints_) file.changed.reset();
    engine_->Files({file});
    return true;
}

}  // namespace kv_tr
