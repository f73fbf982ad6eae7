// The adjustment engine: from control points to the parameters of a transformation.
#include "engine/clsTrCalc.h"

#include "engine/control_point_chooser.h"
#include "engine/control_point_file.h"
#include "engine/linear_fit.h"
#include "engine/transformation_log.h"
#include "model/evaluate.h"
#include "model/transformation_type.h"
#include "support/clsFile.h"
#include "support/component.h"
#include "support/message.h"
#include "support/ml_strings.h"
#include "support/settings.h"

namespace kv_tr {

clsTrCalc::clsTrCalc()
    : hostLanguage_(FollowHostLanguage()),
      noInverseText_(GetMlString(182, "A transzformáció nem számítható (inverz matrix)!")),
      fileCaption_(GetMlString(181, "Közös pontok állomány")) {
    LoadInitDir();
}

clsTrCalc::~clsTrCalc() { SaveInitDir(); }

void clsTrCalc::AddXY4Tr(std::span<const typeXYs4Tr> tXY4Tr, bool bAppend) {
    points_.Add(tXY4Tr, bAppend);
    inverse_ = inverse_ && bAppend;
}

void clsTrCalc::GetAllXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt) const {
    const auto all = points_.All();
    tXY.assign(all.begin(), all.end());
    lCnt = lFullCnt();
}

void clsTrCalc::GetXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt, bool bUsed) const {
    lCnt = bUsed ? points_.UsedCount() : points_.NotUsedCount();
    if (lCnt > 0) tXY = points_.Selected(bUsed);
}

void clsTrCalc::GetRect4Dest(double& dXmin, double& dYmin, double& dXmax, double& dYmax) const {
    const auto& [least, greatest] = points_.DestinationExtent();
    dXmin = least.first;
    dYmin = least.second;
    dXmax = greatest.first;
    dYmax = greatest.second;
}

void clsTrCalc::SwapSourDest() {
    points_.Swap();
    inverse_ = !inverse_;
}

void clsTrCalc::ResetAllNotUsed() {
    points_.UseAll();
    DoCalcTr();
}

void clsTrCalc::ExcludeByIx(std::int32_t lIx, bool bRecalc) {
    if (lIx < 0 || lIx >= lFullCnt()) return;
    const bool used = !points_.All()[static_cast<std::size_t>(lIx)].bNotUsed;
    if (used && points_.UsedCount() == 2) {
        ShowMessage(GetMlString(79, "Nem lehet 2-nél kevesebb pont!"), Icon::kExclamation);
        return;
    }
    points_.Toggle(lIx);
    while (!bXYCntIsValid4TrType(record_.eType)) {
        const auto lower = StepDown(record_.eType);
        if (!lower) break;
        record_.eType = *lower;
        enuTR_TYPE announced = *lower;
        TypeChanched.Raise(announced);
    }
    if (bRecalc) DoCalcTr();
}

bool clsTrCalc::bTypeIsPolinom() const { return IsPolynomial(record_.eType); }

bool clsTrCalc::bXYCntIsValid4TrType(enuTR_TYPE eTrType4Check) const {
    return points_.UsedCount() >= MinimumPoints(eTrType4Check);
}

void clsTrCalc::DoCalcTr() {
    if (!points_.HasPoints()) return;
    if (record_.eType == TR_HELMERT_3) return DoCalc_Helmert3();
    if (record_.eType == TR_AFFIN_5) return DoCalc_Affin5();
    if (!FitLinear(points_, record_)) ShowMessage(noInverseText_, Icon::kExclamation);
    statistics_ = UpdateResiduals(points_.All(), record_);
}

void clsTrCalc::DoCalc_Helmert3(std::int16_t iterCntMax) {
    if (!points_.HasPoints()) return;
    if (record_.eType != TR_HELMERT_3) return DoCalcTr();
    FinishIteration(FitHelmert3(points_, iterCntMax, record_), 77,
                    "A transzformáció nem számítható!");
}

void clsTrCalc::DoCalc_Affin5(std::int16_t iterCntMax) {
    if (!points_.HasPoints()) return;
    if (record_.eType != TR_AFFIN_5) return DoCalcTr();
    FinishIteration(FitAffine5(points_, iterCntMax, record_), 76,
                    "A transzformáció nem számítható !");
}

void clsTrCalc::FinishIteration(FitOutcome outcome, int notConvergedId, const char* hungarian) {
    if (outcome == FitOutcome::kSingular) ShowMessage(noInverseText_, Icon::kExclamation);
    if (outcome == FitOutcome::kNotConverged) ShowMessage(GetMlString(notConvergedId, hungarian));
    statistics_ = UpdateResiduals(points_.All(), record_);
}

void clsTrCalc::TrXY(double dXsour, double dYsour, double& dXdest, double& dYdest) const {
    const PlanePoint image = EvalTrPrm(record_, {dXsour, dYsour});
    dXdest = image.first;
    dYdest = image.second;
}

bool clsTrCalc::bTrXYArr(const std::vector<double>& dX, const std::vector<double>& dY,
                         std::vector<double>& dXtr, std::vector<double>& dYtr) const {
    if (dX.size() != dY.size()) return false;
    dXtr.resize(dX.size());
    dYtr.resize(dY.size());
    EvalTrPrmArrays(record_, dX, dY, dXtr, dYtr);
    return true;
}

std::string clsTrCalc::sListXYs() const { return ListPairs(points_.All()); }

bool clsTrCalc::bSaveXYs4Tr(const std::string& sFileName) {
    const std::string listing = sListXYs();
    clsFile file;
    file.OpenIt(sFileName);
    file.Print(listing);
    file.CloseIt();
    return true;
}

bool clsTrCalc::bLoadXYsFromFile(const std::string& sFileXYs, bool bAppend) {
    const ControlPointReading reading = ReadControlPoints(sFileXYs);
    if (reading.failed) {
        ShowMessage(GetMlString(74, "Hibás fájl formátum!") + "\r\n" +
                        std::to_string(reading.lineShown) + GetMlString(153, ".sor"),
                    Icon::kExclamation);
    }
    AddXY4Tr(reading.pairs, bAppend);
    return reading.accepted;
}

bool clsTrCalc::bChooseFile4LoadXYs4Tr(std::string& sFileName, std::string& sInitDir,
                                       std::int32_t Owner) {
    return ChooseControlPointsToLoad(sFileName, sInitDir, Owner, fileCaption_);
}

bool clsTrCalc::bChooseFile4SaveXYs4Tr(std::string& sFileName, std::string& sInitDir,
                                       std::int32_t Owner) {
    return ChooseControlPointsToSave(sFileName, sInitDir, Owner, fileCaption_);
}

void clsTrCalc::SaveLog(const std::string& sLogFileName, std::int32_t LanguageID) {
    if (LanguageID != 0) SetMlLanguage(LanguageID, {});
    const auto pieces = TransformationLog(*this);
    clsFile file;
    file.OpenIt(sLogFileName);
    if (file.IsOpen()) {
        for (const std::string& piece : pieces) file.Print(piece);
    }
    file.TearDown();
}

bool clsTrCalc::bDoModal(bool bShowApplyButton) {
    return OpenDialogs().Adjust(*this, bShowApplyButton);
}

void clsTrCalc::sInitDir(const std::string& folder) { InitDir(folder); }

void clsTrCalc::setLanguageID(std::int32_t LanguageID) { SetMlLanguage(LanguageID, {}); }

}  // namespace kv_tr
