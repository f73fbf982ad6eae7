// The desktop program without its window: the parameters in use, and what can be done with them.
#include "desktop/desktop_form.h"

#include <optional>
#include <utility>

#include "common/languages.h"
#include "common/parameter_reading.h"
#include "common/point_reading.h"
#include "desktop/likely_pairs.h"
#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/formula_text.h"
#include "kv_tr/forms/choose_file.h"
#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::desktop {
namespace {

constexpr const char* kSection = "Desktop";
constexpr const char* kLanguage = "Language";

std::optional<PlanePoint> PointOf(const DesktopForm::PointTexts& texts) {
    const auto first = TypedNumber(texts.first);
    const auto second = TypedNumber(texts.second);
    if (!first || !second) return std::nullopt;
    return PlanePoint{*first, *second};
}

/// The first line of a file that is not empty; nothing of a file that does not open, of which the
/// user is told.
std::optional<std::string> FirstLine(const std::string& fileName) {
    clsFile file;
    file.OpenIt(fileName, true);
    if (!file.IsOpen()) return std::nullopt;
    std::string line;
    while (line.empty() && !file.AtEnd()) line = file.ReadLine();
    return line;
}

DesktopForm::FileKind KindOf(const std::string& fileName) {
    using enum DesktopForm::FileKind;
    if (HasExtension(fileName, "kvtr")) return kProject;
    for (const char* extension : {"trp", "prm", "all"}) {
        if (HasExtension(fileName, extension)) return kParameters;
    }
    if (app::HoldsParametersOfOtherPrograms(fileName)) return kParameters;
    const auto line = FirstLine(fileName);
    if (!line) return kUnwanted;
    ControlPoint ignored;
    return ReadControlPoint(*line, Comma::kSeparator, ignored) ? kCoordinates : kControlPoints;
}

/// Whether a line may be a single point, the commas of its coordinates being decimal ones.
bool MayBeOnePoint(std::string_view line) {
    const std::string_view numbers = WithoutIdentifier(line);
    return HasDecimalCommas(numbers, 2) && !HasDecimalCommas(numbers, 4);
}

/// Whether a file says by itself that it holds control points, as no listing and no file of bare
/// numbers does.
bool SaysItHasControlPoints(const PointFile& file) {
    if (file.format == PointFormat::kListing || file.format == PointFormat::kEsriLink) return false;
    const bool badHeader = !file.Complete() && file.problems[0].kind == Problem::Kind::kBadHeader;
    return file.format != PointFormat::kCsv || (file.layout.header && !badHeader);
}

bool HasDecimalCommas(const PointFile& reading) {
    return !reading.Complete() && reading.problems[0].kind == Problem::Kind::kDecimalCommas;
}

/// Whether a file is meant for a fit: when what was read does not look like pairs, it may be
/// coordinates that something else stands behind.
Answer AreMeantAsPairs(const PointFile& reading, const std::string& fileName) {
    const bool likely = AreLikelyPairs(HasDecimalCommas(reading)
                                           ? app::ReadPoints(fileName, Comma::kDecimalSign).points
                                           : reading.points);
    if (likely && !MayBeOnePoint(FirstLine(fileName).value_or(""))) return Answer::kYes;
    return Ask({.text = Translated(Text::kPointsOrCoordinatesQuestion, {fileName}),
                .title = Translated(Text::kWarningTitle),
                .icon = Icon::kExclamation,
                .buttons = Buttons::kYesNoCancel,
                .defaultAnswer = Answer::kCancel});
}

}  // namespace

DesktopForm::DesktopForm(EmbeddedTexts& texts) : Form({}), texts_(texts) {}

std::string DesktopForm::ListingText() const {
    if (transformation_.bTypeIsPolinom()) return transformation_.sListPoliTrPrm();
    return transformation_.sListHelmertTrPrm();
}

std::string DesktopForm::FormulaText() const {
    std::string text;
    if (!transformation_.bTypeIsPolinom()) return text;
    for (const std::string& formula : FormulaTexts(TypeOf(Record().eType)))
        text += formula + "\r\n";
    return text;
}

/// The parameters, the control points and their adjustment, as they are now.
class DesktopForm::Before {
public:
    explicit Before(clsTr& transformation)
        : transformation_(transformation),
          parameters_(transformation.udtTrPrm()),
          adjustment_(engine_->Held()),
          files_(engine_->Files()) {}

    void RestoreParameters() const { transformation_.udtTrPrm(parameters_); }
    void RestorePoints() const {
        engine_->Held() = adjustment_;
        engine_->Files(files_);
    }

private:
    clsTr& transformation_;
    const std::shared_ptr<clsTrCalc> engine_ = transformation_.oCalcTr();
    const TR_PRM parameters_;
    const Adjustment adjustment_;
    const std::vector<PointSource> files_;
};

/// Runs what may bring other parameters. The control points stay only with parameters that were
/// fitted to them: a dialog may have loaded others before the fit was cancelled.
void DesktopForm::Take(const std::function<bool()>& action) {
    const ChangeEvent::Action wholeAction(Changed);
    const Before before(transformation_);
    try {
        const bool taken = action();
        if (!taken) before.RestoreParameters();
        if (!taken || !AreParametersFitted()) before.RestorePoints();
        hasParameters_ |= taken;
    } catch (const RuntimeError&) {
        before.RestoreParameters();
        before.RestorePoints();
        throw;
    }
    Changed.Raise();
}

bool DesktopForm::AreParametersFitted() const {
    return TransformationOf(Record()) == TransformationOf(transformation_.oCalcTr()->udtTrPrm());
}

void DesktopForm::ChooseParameters() {
    Take([this] { return transformation_.bChooseTrPrm(); });
}

void DesktopForm::EditAffine() {
    Take([this] { return transformation_.bShowAffinTrPrm(); });
}

void DesktopForm::ViewPolynomial() {
    Take([this] { return transformation_.bShowPoliTrPrm(); });
}

void DesktopForm::ChooseNational() {
    Take([this] {
        enuTR_TYPE type = Record().eType;
        const bool chosen = OpenDialogs().ChooseNational(type);
        if (chosen) transformation_.udtTrPrmByDAT2M1(type);
        return chosen;
    });
}

void DesktopForm::Invert() {
    Take([this] {
        if (transformation_.bTypeIsPolinom()) return false;
        const auto inverse = TransformationOf(Record()).Inverse();
        if (inverse) {
            transformation_.udtTrPrm(RecordOf(*inverse));
        } else {
            ShowMessage(Translated(Text::kNoInverse), Icon::kExclamation);
        }
        return inverse.has_value();
    });
}

void DesktopForm::OpenParameters() {
    const auto choose = transformation_.bTypeIsPolinom() ? &clsTr::bChooseFile4LoadPoliTrPrm
                                                         : &clsTr::bChooseFile4LoadAffinTrPrm;
    const auto fileName = ChooseFile(transformation_, choose);
    if (fileName) Take([&] { return LoadParameters(*fileName); });
}

void DesktopForm::SaveParameters() { ChooseFileAndSave(transformation_); }

void DesktopForm::Adjust(std::span<const ControlPoint> points, Type type) {
    Take([&] {
        const auto engine = transformation_.oCalcTr();
        engine->Take(points, false);
        engine->Files({});
        engine->eTrType(static_cast<enuTR_TYPE>(type));
        const bool applied = engine->bDoModal(true);
        if (applied) transformation_.udtTrPrm(engine->udtTrPrm());
        return applied;
    });
}

void DesktopForm::TakeFit(const Transformation& fit) {
    Take([&] {
        transformation_.udtTrPrm(RecordOf(fit));
        return true;
    });
}

DesktopForm::FileKind DesktopForm::OpenFile(const std::string& fileName) {
    const FileKind kind = KindOf(fileName);
    if (kind == FileKind::kParameters) {
        RememberFolderOf(fileName);
        Take([&] { return LoadParameters(fileName); });
    }
    if (kind != FileKind::kControlPoints && kind != FileKind::kCoordinates) return kind;
    if (SaysItHasControlPoints(app::ReadPoints(fileName, Comma::kSuspect, std::nullopt)))
        return FileKind::kControlPoints;
    if (kind == FileKind::kCoordinates) return kind;
    const auto reading = app::ReadPoints(fileName, Comma::kSuspect);
    switch (AreMeantAsPairs(reading, fileName)) {
        case Answer::kYes: return FileKind::kControlPoints;
        case Answer::kNo: return FileKind::kCoordinates;
        default: return FileKind::kUnwanted;
    }
}

void DesktopForm::AddRecent(const std::string& fileName) {
    recent_.Add(fileName);
    Changed.Raise();
}

void DesktopForm::RemoveRecent(const std::string& fileName) {
    recent_.Remove(fileName);
    Changed.Raise();
}

bool DesktopForm::LoadParameters(const std::string& fileName) {
    const auto [loaded, complaint] =
        app::ReadParametersWhole(fileName, Type::kAffine, ComponentNumberStyle(),
                                 SuspectCommas::kTaken, app::UnnamedFormat::kSixNumbers);
    if (!complaint.empty()) {
        ShowMessage(Translated(Text::kBadFormat) + "\r\n" + complaint, Icon::kExclamation);
    }
    if (!loaded) return false;
    transformation_.udtTrPrm(RecordOf(loaded->transformation));
    recent_.Add(fileName);
    return true;
}

DesktopForm::PointTexts DesktopForm::Image(const PointTexts& texts) const {
    const auto point = PointOf(texts);
    if (!point) return {};
    PlanePoint image;
    transformation_.TrXY(point->first, point->second, image.first, image.second);
    return {FormatFixed(image.first, 3, 0), FormatFixed(image.second, 3, 0)};
}

DesktopForm::DirectionTexts DesktopForm::ImageOfDirection(const std::string& direction,
                                                          const app::AngleUnit& unit,
                                                          const std::string& length,
                                                          const PointTexts& texts) const {
    const auto point = PointOf(texts);
    const auto angle = TypedNumber(direction);
    const auto metres = TypedNumber(length);
    if (!point || !angle || !metres) return {};
    return {app::TransformedDirection(TransformationOf(Record()), *angle, unit, *point, *metres),
            app::DirectionUncertainty(TransformationOf(Record()), unit, *point, *metres)};
}

void DesktopForm::SwitchLanguage(std::int32_t languageId) {
    SaveSetting(kSection, kLanguage, std::to_string(languageId));
    texts_.SwitchLanguage(languageId, {});
}

std::int32_t DesktopForm::RememberedLanguage(std::int32_t fallback) {
    const std::string kept = Setting(kSection, kLanguage, "");
    for (const app::Language& language : app::Languages()) {
        if (kept == std::to_string(language.id)) return language.id;
    }
    return fallback;
}

void DesktopForm::ShowAbout(const std::string& version, const std::string& toolkitVersion) const {
    ShowMessage("KV_Tr: " + Translated(Text::kProgramSummary) + "\r\n\r\n" +
                    Translated(Text::kAboutText, {version, toolkitVersion}),
                Icon::kInformation, "KV_Tr");
}

}  // namespace kv_tr::desktop
