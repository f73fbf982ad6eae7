// Parameters from wherever the user says, and into files.
#include "cli/parameters.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/file_options.h"
#include "cli/fit.h"
#include "cli/host.h"
#include "common/parameter_reading.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/national.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::cli {
namespace {

void Complain(TextId id, std::initializer_list<std::string> values = {}) {
    ShowMessage(Text(id, values), Icon::kExclamation);
}

void FitParameters(clsTr& transformation, const ParameterSource& source) {
    clsTrCalc& engine = *transformation.oCalcTr();
    if (LoadPoints(engine, source.points, source.decimalComma) &&
        ChooseType(engine, TypeNamed(source.type), source.points) && Fit(engine)) {
        transformation.udtTrPrm(engine.udtTrPrm());
    }
}

void LoadBuiltIn(clsTr& transformation, const std::string& name) {
    if (name == "OL_METER") return transformation.udtTrAffinPrm(FathomToMetre());
    if (name == "METER_OL") return transformation.udtTrAffinPrm(MetreToFathom());
    const auto infos = NationalInfos();
    const auto found = std::ranges::find(infos, name, &NationalInfo::name);
    if (found == infos.end()) return Complain(TextId::kUnknownNational, {Excerpt(name)});
    transformation.udtTrPrmByDAT2M1(found->type);
}

/// A type asked for beside a source that has its own must be that one.
void CheckType(const clsTr& transformation, const ParameterSource& source) {
    if (source.type.empty() || TypeNamed(source.type) == transformation.udtTrPrm().eType) return;
    Complain(TextId::kOtherType, {source.params + source.national, transformation.sTrTypeName(),
                                  TypeName(TypeNamed(source.type))});
}

void Invert(clsTr& transformation) {
    try {
        AFFIN_PRM inverse;
        if (!transformation.bGetInversePrm(inverse)) {
            return Complain(TextId::kNoInverseOfType, {transformation.sTrTypeName()});
        }
        if (!IsFinite(inverse)) return Complain(TextId::kNoInverse);
        transformation.udtTrAffinPrm(inverse);
    } catch (const RuntimeError& error) {
        if (error.Number() != ErrorNumber::kDivisionByZero) throw;
        Complain(TextId::kNoInverse);
    }
}

void LoadFile(clsTr& transformation, const ParameterSource& source) {
    const enuTR_TYPE linearType = source.type.empty() ? TR_AFFIN : TypeNamed(source.type);
    if (!HasExtension(source.params, "all") && !FormatHolds("trp", linearType, source.params))
        return;
    if (!source.decimalComma && ParametersHaveDecimalCommas(source.params)) {
        return Complain(TextId::kDecimalCommas, {source.params});
    }
    const auto [record, complaint] =
        host::ReadRecord(source.params, linearType, source.decimalComma);
    if (record) transformation.udtTrPrm(*record);
    if (complaint.empty()) return;
    ShowMessage(GetMlString(74, "Hibás fájl formátum!"), Icon::kExclamation);
    PrintNote(complaint);
}

int WrongUsage(TextId id) {
    PrintNote(Text(id));
    return kWrongUsage;
}

}  // namespace

void AddBuiltInOptions(CLI::App& command, ParameterSource& source) {
    command.add_option("--national", source.national, Text(TextId::kNational))->type_name("NAME");
    AddTypeOption(command, source.type);
    command.add_flag("--inverse", source.inverse, Text(TextId::kApplyInverse));
    command.add_flag("--decimal-comma", source.decimalComma, Text(TextId::kReadDecimalComma));
}

void AddSourceOptions(CLI::App& command, ParameterSource& source) {
    AddFileOption(command, "--points", source.points, TextId::kPoints)->type_name("POINTS");
    AddFileOption(command, "--params", source.params, TextId::kParams)->check(CheckExtension);
    AddBuiltInOptions(command, source);
}

int LoadParameters(clsTr& transformation, const ParameterSource& source) {
    if (!source.points.empty() + !source.params.empty() + !source.national.empty() != 1) {
        return WrongUsage(TextId::kOneSource);
    }
    if (!source.points.empty() && source.type.empty()) return WrongUsage(TextId::kTypeNeeded);

    const MessageCount shown;
    if (!source.points.empty()) {
        FitParameters(transformation, source);
    } else if (!source.national.empty()) {
        LoadBuiltIn(transformation, source.national);
    } else {
        LoadFile(transformation, source);
    }
    if (shown == 0) CheckType(transformation, source);
    if (shown == 0 && source.inverse) Invert(transformation);
    return shown == 0 ? kDone : kReported;
}

std::string CheckExtension(const std::string& fileName) {
    const bool known = HasExtension(fileName, "trp") || HasExtension(fileName, "prm") ||
                       HasExtension(fileName, "all");
    return known ? "" : Text(TextId::kUnknownExtension, {Excerpt(fileName)});
}

bool FormatHolds(const std::string& format, enuTR_TYPE type, const std::string& name) {
    if ((format == "all") == IsPolynomial(type)) return true;
    Complain(TextId::kFormatCannotHold, {name, TypeName(type)});
    return false;
}

void SaveParameters(const TR_PRM& record, const std::string& fileName) {
    clsTr transformation;
    transformation.udtTrPrm(record);
    if (HasExtension(fileName, "all")) {
        if (FormatHolds("all", record.eType, fileName)) transformation.bSavePoliTrPrm(fileName);
    } else if (FormatHolds("trp", record.eType, fileName)) {
        transformation.bSaveAffinTrPrm(fileName, HasExtension(fileName, "prm"));
    }
    transformation.TearDown();
}

}  // namespace kv_tr::cli
