// The adjustment engine: from control points to the parameters of a transformation.
#include "kv_tr/published/clsTrCalc.h"

#include "kv_tr/files/transformation_log.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/control_point_chooser.h"
#include "kv_tr/published/control_point_file.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/matrix_routines.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr {

clsTrCalc::clsTrCalc()
    : hostLanguage_(FollowHostLanguage()), fileCaption_(Translated(Text::kPointsFilter)) {
    adjustment_.SetResult({.a = {}, .b = {}});
    LoadInitDir();
}

clsTrCalc::~clsTrCalc() {
    try {
        SaveInitDir();
    } catch (...) {  // nobody can be told; the folder remembered before stays
    }
}

const Adjustment& clsTrCalc::Held() const {
    if (released_ && released_->full > 0) {
        throw RuntimeError(ErrorNumber::kSubscript, "The control points have been released");
    }
    return adjustment_;
}

Adjustment& clsTrCalc::Held() {
    std::as_const(*this).Held();
    return adjustment_;
}

void clsTrCalc::TearDown() {
    released_ = {lFullCnt(), lNotUsedCnt()};
    adjustment_.Assign({});
    files_.clear();
}

std::int32_t clsTrCalc::lFullCnt() const {
    return released_ ? released_->full : static_cast<std::int32_t>(adjustment_.Points().size());
}

std::int32_t clsTrCalc::lNotUsedCnt() const {
    return released_ ? released_->notUsed : static_cast<std::int32_t>(adjustment_.ExcludedCount());
}

void clsTrCalc::AddXY4Tr(std::span<const typeXYs4Tr> tXY4Tr, bool bAppend) {
    std::vector<ControlPoint> points;
    std::vector<Residual> residuals;
    for (const typeXYs4Tr& pair : tXY4Tr) {
        points.push_back(ControlPointOf(pair));
        residuals.push_back({pair.dXerr, pair.dYerr});
    }
    Take(points, bAppend);
    adjustment_.SetLastResiduals(residuals);
}

void clsTrCalc::Take(std::span<const ControlPoint> points, bool append) {
    if (append) {
        Held().Append(points);  // not to pairs that have been released
    } else {
        adjustment_.Assign(points);
        files_.clear();
    }
    released_.reset();
}

std::vector<typeXYs4Tr> clsTrCalc::Pairs() const {
    const auto points = Held().Points();
    std::vector<typeXYs4Tr> pairs;
    pairs.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        pairs.push_back(PairOf(points[i], adjustment_.Residuals()[i]));
    return pairs;
}

void clsTrCalc::GetAllXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt) const {
    tXY = Pairs();
    lCnt = lFullCnt();
}

void clsTrCalc::GetXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt, bool bUsed) const {
    lCnt = bUsed ? lFullCnt() - lNotUsedCnt() : lNotUsedCnt();
    if (lCnt == 0) return;
    tXY = Pairs();
    std::erase_if(tXY, [bUsed](const typeXYs4Tr& pair) { return pair.bNotUsed == bUsed; });
}

void clsTrCalc::GetRect4Dest(double& dXmin, double& dYmin, double& dXmax, double& dYmax) const {
    constexpr double kAllEnclosing = 100000000.0;  // until points are added
    const auto [least, greatest] = adjustment_.DestinationExtent().value_or(
        Extent{{-kAllEnclosing, -kAllEnclosing}, {kAllEnclosing, kAllEnclosing}});
    dXmin = least.first;
    dYmin = least.second;
    dXmax = greatest.first;
    dYmax = greatest.second;
}

void clsTrCalc::SwapSourDest() { Held().Swap(); }

void clsTrCalc::ResetAllNotUsed() {
    Held().UseAll();
    DoCalcTr();
}

void clsTrCalc::ExcludeByIx(std::int32_t lIx, bool bRecalc) {
    if (lIx < 0 || lIx >= lFullCnt()) return;
    if (!Held().Toggle(static_cast<std::size_t>(lIx))) {
        ShowMessage(Translated(Text::kFewerThanTwoPoints), Icon::kExclamation);
        return;
    }
    while (const auto lower = adjustment_.LowerType()) {
        enuTR_TYPE announced = PublishedType(*lower);
        TypeChanched.Raise(announced);
    }
    if (bRecalc) DoCalcTr();
}

enuTR_TYPE clsTrCalc::eTrType() const { return PublishedType(adjustment_.FitType()); }

void clsTrCalc::eTrType(enuTR_TYPE type) { adjustment_.SetType(TypeOf(type)); }

Transformation clsTrCalc::Current() const {
    Transformation current = adjustment_.Result();
    current.type = adjustment_.FitType();
    return current;
}

TR_PRM clsTrCalc::udtTrPrm() const { return RecordOf(Current()); }

void clsTrCalc::udtTrPrm(const TR_PRM& record) { adjustment_.SetResult(TransformationOf(record)); }

bool clsTrCalc::bTypeIsPolinom() const { return IsPolynomial(eTrType()); }

bool clsTrCalc::bXYCntIsValid4TrType(enuTR_TYPE eTrType4Check) const {
    return lFullCnt() - lNotUsedCnt() >= MinimumPoints(eTrType4Check);
}

void clsTrCalc::DoCalcTr() { Calculate({}); }

void clsTrCalc::DoCalc_Helmert3(std::int16_t iterCntMax) {
    Calculate({.passLimit = eTrType() == TR_HELMERT_3 ? std::optional(iterCntMax) : std::nullopt});
}

void clsTrCalc::DoCalc_Affin5(std::int16_t iterCntMax) {
    Calculate({.passLimit = eTrType() == TR_AFFIN_5 ? std::optional(iterCntMax) : std::nullopt});
}

void clsTrCalc::Calculate(FitOptions options) {
    if (lFullCnt() == 0) return;
    options.solution = solution_;
    const FitOutcome outcome = Held().Fit(options);
    if (outcome.trouble == FitTrouble::kNoStart) {
        throw RuntimeError(ErrorNumber::kDivisionByZero, "Division by zero");
    }
    if (eTrType() > TR_EOV_HDR_10e) {
        for (std::size_t used = adjustment_.UsedCount(); used > 0; --used)
            ShowMessage("KORVANEL --> mudtTR_PRM.eType=" + std::to_string(eTrType()));
    }
    for (int system = 0; system < outcome.singularSystems; ++system) ReportSingularMatrix();
    if (!outcome.converged) ReportNotConverged(TypeOf(eTrType()));
}

void clsTrCalc::TrXY(double dXsour, double dYsour, double& dXdest, double& dYdest) const {
    const Point image = Current().Apply({dXsour, dYsour});
    dXdest = image.first;
    dYdest = image.second;
}

bool clsTrCalc::bTrXYArr(const std::vector<double>& dX, const std::vector<double>& dY,
                         std::vector<double>& dXtr, std::vector<double>& dYtr) const {
    if (dX.size() != dY.size()) return false;
    dXtr.resize(dX.size());
    dYtr.resize(dY.size());
    Current().Apply(dX, dY, dXtr, dYtr);
    return true;
}

std::string clsTrCalc::sListXYs() const {
    return ListControlPoints(Held().Points(), ComponentNumberStyle());
}

bool clsTrCalc::bSaveXYs4Tr(const std::string& sFileName) {
    const std::string listing = sListXYs();
    clsFile file;
    file.OpenIt(sFileName);
    file.Print(listing);
    file.CloseIt();
    return true;
}

bool clsTrCalc::bLoadXYsFromFile(const std::string& sFileXYs, bool bAppend) {
    const LoadedPoints loaded = LoadControlPoints(sFileXYs);
    ReportFailure(loaded);
    Take(loaded.points, bAppend);
    if (!loaded.points.empty()) files_.push_back(loaded.source);
    return loaded.accepted;
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
    WriteTextFile(sLogFileName, LogText(Held(), ComponentTexts(), ComponentNumberStyle()));
}

bool clsTrCalc::bDoModal(bool bShowApplyButton) {
    return OpenDialogs().Adjust(*this, bShowApplyButton);
}

void clsTrCalc::sInitDir(const std::string& folder) { InitDir(folder); }

void clsTrCalc::setLanguageID(std::int32_t LanguageID) { SetMlLanguage(LanguageID, {}); }

}  // namespace kv_tr
