// Parameters in use: the entry point of the component for host programs.
#include "kv_tr/published/clsTr.h"

#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/model/national.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/map_direction.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/parameter_chooser.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

LinearFormat FormatOf(bool itr25) { return itr25 ? LinearFormat::kItr25 : LinearFormat::kNative; }

}  // namespace

clsTr::clsTr() : hostLanguage_(FollowHostLanguage()), engine_(std::make_shared<clsTrCalc>()) {}

void clsTr::TearDown() {
    if (engine_) engine_->TearDown();
    engine_.reset();
}

std::int32_t clsTr::lNumberOfParameters() const {
    if (held_.type == Type::kHelmert3 || held_.type == Type::kAffine5) return 3;
    return bTypeIsPolinom() && held_.type <= Type::kBilinear ? TermCount(held_.type) : 0;
}

TR_PRM clsTr::udtTrPrm() const { return RecordOf(held_); }

void clsTr::udtTrPrm(const TR_PRM& record) { held_ = TransformationOf(record); }

void clsTr::udtTrAffinPrm(const AFFIN_PRM& record) { held_ = WithAffine(held_, record); }

void clsTr::udtTrPrmByDAT2M1(enuTR_TYPE type) {
    held_ = NationalTransformation(TypeOf(type)).value_or(held_);
}

bool clsTr::bLoadByDAT2M1() {
    enuTR_TYPE type = PublishedType(held_.type);
    if (!OpenDialogs().ChooseNational(type)) return false;
    held_.type = TypeOf(type);
    udtTrPrmByDAT2M1(type == TR_HER_STG ? TR_STG_HKR : type);
    return false;
}

bool clsTr::bGetAffinPrm(double& a0, double& a1, double& a2, double& b0, double& b1,
                         double& b2) const {
    return bGetHelmertPrm(a0, a1, a2, b0, b1, b2);
}

bool clsTr::bGetHelmertPrm(double& a0, double& a1, double& a2, double& b0, double& b1,
                           double& b2) const {
    if (bTypeIsPolinom()) return false;
    a0 = held_.a[0];
    a1 = held_.a[1];
    a2 = held_.a[2];
    b0 = held_.b[0];
    b1 = held_.b[1];
    b2 = held_.b[2];
    return true;
}

bool clsTr::bGetInversePrm(AFFIN_PRM& udtInvAFFIN_PRM) const {
    if (bTypeIsPolinom()) return false;
    udtInvAFFIN_PRM = InverseOf(AffineOf(held_));
    return true;
}

std::string clsTr::sTrTypeName() const { return TypeName(held_.type, ComponentTexts()); }

void clsTr::TrXY(double dX, double dY, double& dXtr, double& dYtr) const {
    const Point image = held_.Apply({dX, dY});
    dXtr = image.first;
    dYtr = image.second;
}

bool clsTr::bChooseFile4LoadAffinTrPrm(std::string& sFileName, std::string& sInitDir,
                                       std::int32_t Owner) {
    return ChooseLinearToLoad(sFileName, sInitDir, Owner);
}

bool clsTr::bChooseFile4SaveAffinTrPrm(std::string& sFileName, std::string& sInitDir,
                                       std::int32_t Owner) {
    return ChooseLinearToSave(sFileName, sInitDir, Owner);
}

bool clsTr::bChooseFile4LoadPoliTrPrm(std::string& sFileName, std::string& sInitDir,
                                      std::int32_t Owner) {
    return ChoosePolynomialToLoad(sFileName, sInitDir, Owner);
}

bool clsTr::bChooseFile4SavePoliTrPrm(std::string& sFileName, std::string& sInitDir,
                                      std::int32_t Owner) {
    return ChoosePolynomialToSave(sFileName, sInitDir, Owner);
}

bool clsTr::bTypeIsPolinom() const { return IsPolynomial(held_.type); }

bool clsTr::bChooseTrPrm() { return OpenDialogs().ChooseParameters(*this); }

void clsTr::bChooseFileAndSaveTrPrm(std::string& sFileName, std::string& sInitDir,
                                    std::int32_t Owner) {
    if (bTypeIsPolinom()) {
        if (bChooseFile4SavePoliTrPrm(sFileName, sInitDir, Owner)) bSavePoliTrPrm(sFileName);
    } else if (bChooseFile4SaveAffinTrPrm(sFileName, sInitDir, Owner)) {
        bSaveAffinTrPrm(sFileName, HasExtension(sFileName, "prm"));
    }
}

bool clsTr::bSaveAffinTrPrm(const std::string& sFileTrPrm, bool bItr25Format) {
    if (bTypeIsPolinom()) return false;
    const auto lines = LinearFileLines(held_, FormatOf(bItr25Format), ComponentNumberStyle());
    clsFile file;
    file.OpenIt(sFileTrPrm);
    if (!file.IsOpen()) return false;
    for (const std::string& line : lines) file.Print(line);
    file.CloseIt();
    return true;
}

bool clsTr::bLoadAffinTrPrmFromFile(const std::string& sFileTrPrm, bool bItr25Format) {
    if (bTypeIsPolinom()) held_.type = Type::kAffine;
    clsFile file;
    file.OpenIt(sFileTrPrm, true);
    if (file.IsOpen()) {
        if (ReadLinear(file.Lines(), FormatOf(bItr25Format), ComponentNumberStyle(),
                       SuspectCommas::kIgnored, held_)) {
            ShowMessage(Translated(Text::kBadFormat), Icon::kExclamation);
            return false;
        }
    }
    gName = DirectoryOf(sFileTrPrm);
    return true;
}

bool clsTr::bLoadPoliTrPrmFromFile(const std::string& sFileTrPrm) {
    clsFile file;
    file.OpenIt(sFileTrPrm, true);
    if (!file.IsOpen()) return false;
    const auto reading =
        ReadPolynomial(file.Lines(), ComponentNumberStyle(), SuspectCommas::kIgnored, held_);
    gName = DirectoryOf(sFileTrPrm);
    return reading.accepted;
}

bool clsTr::bSavePoliTrPrm(const std::string& sFileTrPrm,
                           const std::optional<std::string>& vTitle) {
    if (!bTypeIsPolinom()) return false;
    WriteTextFile(sFileTrPrm, sListPoliTrPrm(vTitle) + "\r\n");
    return true;
}

std::string clsTr::sListHelmertTrPrm(const std::optional<std::string>& /*vTitle*/) const {
    return ListLinear(held_, ComponentNumberStyle());
}

std::string clsTr::sListPoliTrPrm(const std::optional<std::string>& vTitle) const {
    return ListPolynomial(held_, vTitle.value_or(sTrTypeName()), ComponentNumberStyle());
}

bool clsTr::bShowAffinTrPrm() { return OpenDialogs().EditAffine(*this); }

bool clsTr::bShowPoliTrPrm() { return OpenDialogs().ViewPolynomial(*this); }

bool clsTr::bShowXYs4Tr(const std::string& sTitle) {
    return OpenDialogs().ListControlPoints(*this, sTitle);
}

void clsTr::TrAngle(double dAngle, double& dAngleTr, double dX, double dY, double dLength) const {
    dAngleTr = MapDirection(held_, dAngle, {dX, dY}, dLength, {PI, RAD_90, RAD_360});
}

std::shared_ptr<clsTrCalc> clsTr::oCalcTr() const {
    if (!engine_) throw RuntimeError(ErrorNumber::kObjectNotSet, "The engine has been torn down");
    return engine_;
}

void clsTr::sInitDir(const std::string& folder) { InitDir(folder); }

}  // namespace kv_tr
