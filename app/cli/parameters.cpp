// Parameters from wherever the user says, and into files.
#include "cli/parameters.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "cli/export.h"
#include "cli/file_options.h"
#include "cli/findings.h"
#include "cli/fit.h"
#include "cli/point_source.h"
#include "cli/program.h"
#include "common/parameter_reading.h"
#include "kv_tr/files/open_text.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/model/national.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

/// Reports why there are no parameters.
std::nullopt_t Complain(Text id, std::initializer_list<std::string> values = {}) {
    ShowMessage(Translated(id, values), Icon::kExclamation);
    return std::nullopt;
}

std::optional<Parameters> FitParameters(const ParameterSource& source) {
    Adjustment adjustment;
    if (!LoadPoints(adjustment, {.file = source.points, .decimalComma = source.decimalComma}) ||
        !ChooseType(adjustment, TypeNamed(source.type), source.points)) {
        return std::nullopt;
    }
    const FitOutcome outcome = Fit(adjustment);
    if (!outcome.Computed()) return std::nullopt;
    const auto warnings = FindWarnings({.points = adjustment.Points(),
                                        .transformation = adjustment.Result(),
                                        .check = adjustment.Check(),
                                        .outcome = outcome});
    PrintWarnings(warnings, false);
    if (!outcome.Succeeded() || IsSevere(warnings)) return std::nullopt;
    std::vector<Point> sources;
    for (const ControlPoint& point : adjustment.Points()) {
        if (point.used) sources.push_back(point.source);
    }
    return Parameters{FittedRecord(adjustment.Points(), adjustment.Result()), DomainOf(sources)};
}

std::optional<TransformationRecord> BuiltIn(const std::string& name) {
    if (name == "OL_METER") return TransformationRecord{.transformation = FathomToMetre()};
    if (name == "METER_OL") return TransformationRecord{.transformation = MetreToFathom()};
    const NationalInfo* found = FindNational(name);
    if (found == nullptr) return Complain(Text::kUnknownNational, {Excerpt(name)});
    return TransformationRecord{.transformation = *NationalTransformation(found->type),
                                .sourceCrs = found->source,
                                .targetCrs = found->destination};
}

std::optional<TransformationRecord> ReadFile(const ParameterSource& source) {
    const Type wanted = source.type.empty() ? Type::kAffine : TypeNamed(source.type);
    const bool holdsSixNumbers =
        HasExtension(source.params, "trp") || HasExtension(source.params, "prm");
    if (holdsSixNumbers && !FormatHolds("trp", wanted, source.params)) return std::nullopt;
    const Type linearType = IsPolynomial(wanted) ? Type::kAffine : wanted;
    const NumberStyle numbers = source.decimalComma ? NumberStyle{','} : ComponentNumberStyle();
    const auto [record, complaint] = app::ReadParametersWhole(
        source.params, linearType, numbers, SuspectCommas::kProblem, app::UnnamedFormat::kRefused);
    if (!complaint.empty()) {
        ShowMessage(Translated(Text::kBadFormat), Icon::kExclamation);
        PrintNote(complaint);
    }
    return record;
}

std::optional<Transformation> InverseOf(const Transformation& transformation) {
    if (IsPolynomial(transformation.type)) {
        return Complain(Text::kNoInverseOfType, {TypeName(transformation.type, ComponentTexts())});
    }
    const auto inverse = transformation.Inverse();
    return inverse ? inverse : Complain(Text::kNoInverse);
}

/// The parameters of the source; nothing after it was reported why there are none. A type asked for
/// beside a source that has its own must be that one.
std::optional<Parameters> Load(const ParameterSource& source) {
    if (!source.points.empty()) return FitParameters(source);
    const auto loaded = source.national.empty() ? ReadFile(source) : BuiltIn(source.national);
    if (!loaded) return std::nullopt;
    const Type type = loaded->transformation.type;
    if (!source.type.empty() && TypeNamed(source.type) != type) {
        return Complain(Text::kOtherType,
                        {source.params + source.national, TypeName(type, ComponentTexts()),
                         TypeName(TypeNamed(source.type), ComponentTexts())});
    }
    const auto domain = loaded->hull.empty() ? std::nullopt : std::optional(DomainOf(loaded->hull));
    return Parameters{*loaded, domain};
}

std::shared_ptr<const PointPrecision> PrecisionOf(const TransformationRecord& record) {
    return std::make_shared<PointPrecision>(
        AdjustedModel(record.points, record.transformation.type));
}

/// The transformation, or its exact inverse; false after it was reported that there is none.
bool Direct(PointMap& map, const Parameters& forward, bool inverted) {
    const auto& [record, domain] = forward;
    map = record.transformation;
    if (!inverted) return true;
    const auto inverse = ExactInverse::Of(record.transformation, domain);
    if (!inverse) {
        Complain(Text::kNoInverse);
        return false;
    }
    if (!domain && IsPolynomial(record.transformation.type)) {
        PrintNote(Translated(Text::kInverseUnlimited));
    }
    map = *inverse;
    return true;
}

int WrongUsage(Text id) {
    PrintNote(Translated(id));
    return kWrongUsage;
}

std::string BuiltInNames() {
    std::string names = "OL_METER, METER_OL";
    for (const NationalInfo& info : NationalInfos()) names += std::string(", ") + info.name;
    return names;
}

}  // namespace

void AddBuiltInOptions(CLI::App& command, ParameterSource& source) {
    command.add_option("--national", source.national, Translated(Text::kNationalOption))
        ->type_name("NAME")
        ->check(WithWords(BuiltInNames(), [](const std::string&) { return std::string(); }));
    AddTypeOption(command, source.type);
    command.add_flag("--decimal-comma", source.decimalComma, Translated(Text::kHasDecimalCommas));
}

void AddSourceOptions(CLI::App& command, ParameterSource& source) {
    AddFileOption(command, "--points", source.points, Text::kPointsArgument)->type_name("POINTS");
    AddFileOption(command, "--params", source.params, Text::kParamsOption);
    AddBuiltInOptions(command, source);
}

void AddInverseOption(CLI::App& command, ParameterSource& source, Text description) {
    command.add_flag("--inverse", source.inverse, Translated(description));
}

int LoadForward(Parameters& parameters, const ParameterSource& source) {
    if (!source.points.empty() + !source.params.empty() + !source.national.empty() != 1) {
        return WrongUsage(Text::kOneSource);
    }
    if (!source.points.empty() && source.type.empty()) return WrongUsage(Text::kTypeNeeded);

    const auto loaded = Load(source);
    if (loaded) parameters = *loaded;
    return loaded ? kDone : kReported;
}

int LoadParameters(TransformationRecord& record, const ParameterSource& source) {
    Parameters forward;
    if (const int code = LoadForward(forward, source); code != kDone) return code;
    record = forward.record;
    if (!source.inverse) return kDone;
    const auto inverse = InverseOf(record.transformation);
    if (!inverse) return kReported;
    record = {.transformation = *inverse,
              .sourceAxes = record.targetAxes,
              .targetAxes = record.sourceAxes,
              .sourceCrs = record.targetCrs,
              .targetCrs = record.sourceCrs,
              .madeFrom = record.madeFrom};
    return kDone;
}

int LoadPointMap(PointMap& map, const ParameterSource& source,
                 std::shared_ptr<const PointPrecision>* precision) {
    if (precision != nullptr && source.points.empty()) return WrongUsage(Text::kSigmaNeedsPoints);
    Parameters forward;
    if (const int code = LoadForward(forward, source); code != kDone) return code;
    if (precision != nullptr) *precision = PrecisionOf(forward.record);
    return Direct(map, forward, source.inverse) ? kDone : kReported;
}

int LoadMapWithAxes(MapWithAxes& loaded, const ParameterSource& source, const std::string& axes) {
    Parameters forward;
    if (const int code = LoadForward(forward, source); code != kDone) return code;
    loaded.sourceAxes = forward.record.sourceAxes;
    loaded.targetAxes = forward.record.targetAxes;
    if (const auto stated = AxesOfWords(axes)) {
        std::tie(loaded.sourceAxes, loaded.targetAxes) = *stated;
    }
    if (source.inverse) std::swap(loaded.sourceAxes, loaded.targetAxes);
    if (!source.inverse && !forward.record.points.empty()) {
        loaded.precision = PrecisionOf(forward.record);
    }
    if (!source.inverse) loaded.domain = forward.domain;
    return Direct(loaded.map, forward, source.inverse) ? kDone : kReported;
}

std::string CheckExtension(const std::string& fileName) {
    const bool known = HasExtension(fileName, "trp") || HasExtension(fileName, "prm") ||
                       HasExtension(fileName, "all");
    return known ? "" : Translated(Text::kUnknownExtension, {Excerpt(fileName)});
}

bool FormatHolds(const std::string& format, Type type, const std::string& name) {
    if ((format == "all") == IsPolynomial(type)) return true;
    Complain(Text::kFormatCannotHold, {name, TypeName(type, ComponentTexts())});
    return false;
}

bool SaveParameters(const Transformation& transformation, const std::string& fileName) {
    const ParameterFormat format = FormatNamed(fileName);
    const bool polynomial = format == ParameterFormat::kPolynomial;
    const NumberStyle style = ComponentNumberStyle();
    if (!FormatHolds(polynomial ? "all" : "trp", transformation.type, fileName)) return false;
    std::string text;
    if (polynomial) {
        text =
            ListPolynomial(transformation, TypeName(transformation.type, ComponentTexts()), style) +
            "\r\n";
    } else {
        const auto order =
            format == ParameterFormat::kItr25 ? LinearFormat::kItr25 : LinearFormat::kNative;
        for (const std::string& line : LinearFileLines(transformation, order, style))
            text += line + "\r\n";
    }
    return SaveText(fileName, text);
}

bool SaveText(const std::string& fileName, const std::string& text) {
    switch (WriteText(fileName, text, FilesCodePage())) {
        case Written::kYes: return true;
        case Written::kNotOpened: ReportOpenFailure(fileName); return false;
        default: ShowMessage(WriteFailure(fileName).what(), Icon::kExclamation); return false;
    }
}

bool SaveBytes(const std::string& fileName, std::string_view bytes) {
    ReplacingFile file(fileName);
    if (!file.IsOpen()) {
        ReportOpenFailure(fileName);
        return false;
    }
    file.Write(bytes);
    if (file.Commit()) return true;
    ShowMessage(WriteFailure(fileName).what(), Icon::kExclamation);
    return false;
}

}  // namespace kv_tr::cli
