// The desktop program without its window: the parameters in use, and what can be done with them.
#include "desktop/desktop_form.h"

#include <optional>

#include "common/languages.h"
#include "common/parameter_reading.h"
#include "common/point_reading.h"
#include "engine/control_point_file.h"
#include "model/formula_text.h"
#include "params/affine_record.h"
#include "support/clsFile.h"
#include "support/component.h"
#include "support/decimal_commas.h"
#include "support/errors.h"
#include "support/file_names.h"
#include "support/message.h"
#include "support/number_text.h"
#include "support/settings.h"
#include "ui/choose_file.h"

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

/// The richest of the usual linear types that the points allow.
enuTR_TYPE FirstType(const clsTrCalc& engine) {
    return engine.bXYCntIsValid4TrType(TR_AFFIN) ? TR_AFFIN : TR_HELMERT;
}

DesktopForm::FileKind KindOf(const std::string& fileName) {
    using enum DesktopForm::FileKind;
    for (const char* extension : {"trp", "prm", "all"}) {
        if (HasExtension(fileName, extension)) return kParameters;
    }
    clsFile file;
    file.OpenIt(fileName, true);
    if (!file.IsOpen()) return kUnreadable;
    std::string line;
    while (line.empty() && !file.AtEnd()) line = file.ReadLine();
    typeXYs4Tr ignored;
    return ReadPair(line, ignored) ? kControlPoints : kCoordinates;
}

}  // namespace

DesktopForm::DesktopForm(EmbeddedTexts& texts)
    : texts_(texts), languageChanged_(OnLanguageChange([this] { Changed.Raise(); })) {}

std::string DesktopForm::ListingText() const {
    if (transformation_.bTypeIsPolinom()) return transformation_.sListPoliTrPrm();
    return transformation_.sListHelmertTrPrm();
}

std::string DesktopForm::FormulaText() const {
    std::string text;
    if (!transformation_.bTypeIsPolinom()) return text;
    for (const std::string& formula : FormulaTexts(Record().eType)) text += formula + "\r\n";
    return text;
}

/// Runs what may bring other parameters.
void DesktopForm::Take(const std::function<bool()>& action) {
    const TR_PRM before = Record();
    bool taken = false;
    try {
        taken = action();
    } catch (const RuntimeError&) {
        transformation_.udtTrPrm(before);
        throw;
    }
    if (taken) {
        hasParameters_ = true;
    } else {
        transformation_.udtTrPrm(before);
    }
    Changed.Raise();
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
        AFFIN_PRM inverse;
        bool exists = false;
        try {
            if (!transformation_.bGetInversePrm(inverse)) return false;
            exists = IsFinite(inverse);
        } catch (const RuntimeError&) {  // says less than the message
        }
        if (!exists) {
            ShowMessage(GetMlString(1057,
                                    "A paramétereknek nincs inverzük: egy egyenesre vagy egy "
                                    "pontra képezik le a síkot."),
                        Icon::kExclamation);
            return false;
        }
        transformation_.udtTrAffinPrm(inverse);
        return true;
    });
}

void DesktopForm::OpenParameters() {
    const auto choose = transformation_.bTypeIsPolinom() ? &clsTr::bChooseFile4LoadPoliTrPrm
                                                         : &clsTr::bChooseFile4LoadAffinTrPrm;
    const auto fileName = ChooseFile(transformation_, choose);
    if (fileName) Take([&] { return LoadParameters(*fileName); });
}

void DesktopForm::SaveParameters() {
    std::string fileName;
    std::string folder = InitDir();
    transformation_.bChooseFileAndSaveTrPrm(fileName, folder);
    if (!fileName.empty()) RememberFolderOf(fileName);
}

void DesktopForm::OpenControlPoints() {
    const auto fileName =
        ChooseFile(*transformation_.oCalcTr(), &clsTrCalc::bChooseFile4LoadXYs4Tr);
    if (fileName) FitTo(*fileName);
}

void DesktopForm::Adjust() {
    Take([this] {
        const auto owner = transformation_.oCalcTr();
        clsTrCalc& engine = *owner;
        const bool applied = engine.bDoModal(true);
        if (applied) transformation_.udtTrPrm(engine.udtTrPrm());
        return applied;
    });
}

DesktopForm::FileKind DesktopForm::OpenFile(const std::string& fileName) {
    const FileKind kind = KindOf(fileName);
    if (kind == FileKind::kParameters) Take([&] { return LoadParameters(fileName); });
    if (kind == FileKind::kControlPoints) FitTo(fileName);
    return kind;
}

bool DesktopForm::LoadParameters(const std::string& fileName) {
    const auto [record, complaint] = [&fileName] {
        const DecimalCommaScope commas(ParametersHaveDecimalCommas(fileName));
        return host::ReadParameters(fileName, TR_AFFIN);
    }();
    if (!complaint.empty()) {
        ShowMessage(GetMlString(74, "Hibás fájl formátum!") + "\r\n" + complaint,
                    Icon::kExclamation);
    }
    if (!record) return false;
    transformation_.udtTrPrm(*record);
    recent_.Add(fileName);
    return true;
}

/// Fits to the points of a file that can be read to its end.
void DesktopForm::FitTo(const std::string& fileName) {
    const ControlPointReading reading = ReadControlPoints(fileName);
    if (reading.failed) {
        const std::string complaint = host::BadPointLine(fileName);
        if (!complaint.empty()) ShowMessage(complaint, Icon::kExclamation);
        return;
    }
    if (ReportDecimalCommas(fileName)) return;
    if (reading.pairs.empty()) {
        ShowMessage(GetMlString(97, "A választott transzformációhoz kevés a közös pont!"));
        return;
    }
    const auto owner = transformation_.oCalcTr();
    clsTrCalc& engine = *owner;
    engine.AddXY4Tr(reading.pairs, false);
    engine.eTrType(FirstType(engine));
    recent_.Add(fileName);
    Adjust();
}

DesktopForm::PointTexts DesktopForm::Image(const PointTexts& texts) const {
    const auto point = PointOf(texts);
    if (!point) return {};
    PlanePoint image;
    transformation_.TrXY(point->first, point->second, image.first, image.second);
    return {FormatFixed(image.first, 3, 0), FormatFixed(image.second, 3, 0)};
}

DesktopForm::DirectionTexts DesktopForm::ImageOfDirection(const std::string& direction,
                                                          const host::AngleUnit& unit,
                                                          const std::string& length,
                                                          const PointTexts& texts) const {
    const auto point = PointOf(texts);
    const auto angle = TypedNumber(direction);
    const auto metres = TypedNumber(length);
    if (!point || !angle || !metres) return {};
    return {host::TransformedDirection(transformation_, *angle, unit, *point, *metres),
            host::DirectionUncertainty(transformation_, unit, *point, *metres)};
}

void DesktopForm::SwitchLanguage(std::int32_t languageId) {
    SaveSetting(kSection, kLanguage, std::to_string(languageId));
    texts_.SwitchLanguage(languageId, {});
}

std::int32_t DesktopForm::RememberedLanguage(std::int32_t fallback) {
    const std::string kept = Setting(kSection, kLanguage, "");
    for (const host::Language& language : host::Languages()) {
        if (kept == std::to_string(language.id)) return language.id;
    }
    return fallback;
}

void DesktopForm::ShowAbout(const std::string& version, const std::string& toolkitVersion) const {
    ShowMessage("KV_Tr: " + GetMlString(1002, "Síkbeli transzformációk illesztése közös pontokra") +
                    "\r\n\r\n" + FillPlaces(GetMlString(1196, {}), {version, toolkitVersion}),
                Icon::kInformation, "KV_Tr");
}

}  // namespace kv_tr::desktop
