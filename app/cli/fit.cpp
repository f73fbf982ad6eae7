// Control points from a file to a fit, as the commands need it.
#include "cli/fit.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "cli/host.h"
#include "common/point_reading.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr::cli {
namespace {

constexpr std::array kFitTypes{
    FitType{"helmert", TR_HELMERT},    FitType{"affine", TR_AFFIN},
    FitType{"helmert3", TR_HELMERT_3}, FitType{"affine5", TR_AFFIN_5},
    FitType{"bilinear", TR_BILINEAR},  FitType{"poly1", TR_POLI_1},
    FitType{"poly2", TR_POLI_2},       FitType{"poly3", TR_POLI_3},
    FitType{"poly4", TR_POLI_4},       FitType{"poly5", TR_POLI_5},
};

const FitType* Find(const std::string& keyword) {
    const auto found = std::ranges::find(kFitTypes, keyword, &FitType::keyword);
    return found == kFitTypes.end() ? nullptr : &*found;
}

std::string AllKeywords() {
    std::string all;
    for (const FitType& type : kFitTypes)
        all += (all.empty() ? "" : ", ") + std::string(type.keyword);
    return all;
}

}  // namespace

std::span<const FitType> FitTypes() { return kFitTypes; }

enuTR_TYPE TypeNamed(const std::string& keyword) { return Find(keyword)->type; }

void AddTypeOption(CLI::App& command, std::string& keyword) {
    command.add_option("--type", keyword, Text(TextId::kType) + ": " + AllKeywords())
        ->type_name("TYPE")
        ->capture_default_str()
        ->check([](const std::string& name) {
            return Find(name) ? "" : Text(TextId::kUnknownType, {Excerpt(name), AllKeywords()});
        });
}

bool LoadPoints(clsTrCalc& engine, const std::string& fileName, bool decimalComma) {
    const auto reading =
        host::ReadPoints(fileName, decimalComma ? Comma::kDecimalSign : Comma::kSuspect);
    if (reading.Complete()) {
        engine.Held().Assign(reading.points);
        return true;
    }
    const Problem& problem = reading.problems.front();
    if (problem.kind == Problem::Kind::kNotOpened) {
        ReportOpenFailure(fileName);
    } else if (problem.kind == Problem::Kind::kDecimalCommas) {
        ShowMessage(Text(TextId::kPointsHaveDecimalCommas,
                         {fileName, std::to_string(problem.line), Excerpt(problem.text)}),
                    Icon::kExclamation);
        PrintNote(Text(TextId::kCommasMayBeDecimal));
    } else {
        ShowMessage(
            GetMlString(74, "Hibás fájl formátum!") + "\r\n" + host::Complaint(problem, fileName),
            Icon::kExclamation);
    }
    return false;
}

bool ChooseType(clsTrCalc& engine, enuTR_TYPE type, const std::string& fileName) {
    engine.eTrType(type);
    if (engine.bXYCntIsValid4TrType(type)) return true;
    ShowMessage(GetMlString(97, "A választott transzformációhoz kevés a közös pont!"));
    PrintNote(Text(TextId::kPointsNeeded, {fileName, std::to_string(MinimumPoints(type)),
                                           std::to_string(engine.lFullCnt())}));
    return false;
}

bool Fit(clsTrCalc& engine) {
    try {
        engine.DoCalcTr();
        return true;
    } catch (const RuntimeError& error) {
        if (error.Number() != ErrorNumber::kDivisionByZero) throw;
        ShowMessage(GetMlString(76, "A transzformáció nem számítható !"));
        return false;
    }
}

}  // namespace kv_tr::cli
