// kv_tr adjust: a fit and its log.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string_view>
#include <unordered_set>

#include "cli/file_options.h"
#include "cli/fit.h"
#include "cli/host.h"
#include "cli/interruption.h"
#include "cli/json_text.h"
#include "cli/parameters.h"
#include "cli/terminal.h"
#include "kv_tr/files/transformation_log.h"
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

struct AdjustOptions {
    std::string points;
    std::string type = "affine";
    bool inverse = false;
    std::vector<std::string> exclude;
    std::string limit;
    std::string log;
    std::string savePoints;
    std::string saveParams;
    std::string plot;
    bool json = false;
    bool decimalComma = false;
};

/// Excludes every pair that has one of the identifiers; false when one is unknown.
bool Exclude(clsTrCalc& engine, const std::vector<std::string>& identifiers) {
    const std::unordered_set<std::string_view> unwanted(identifiers.begin(), identifiers.end());
    std::unordered_set<std::string_view> known;
    std::vector<std::int32_t> found;
    const auto points = engine.Held().Points();
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!unwanted.contains(points[i].id)) continue;
        known.insert(points[i].id);
        found.push_back(static_cast<std::int32_t>(i));
    }
    for (const std::string& id : identifiers) {
        if (known.contains(id)) continue;
        ShowMessage(Text(TextId::kUnknownIdentifier, {Excerpt(id)}), Icon::kExclamation);
        return false;
    }
    for (const std::int32_t index : found) engine.ExcludeByIx(index, false);
    return true;
}

bool PrepareAndFit(clsTrCalc& engine, const AdjustOptions& options) {
    if (!LoadPoints(engine, options.points, options.decimalComma)) return false;
    if (options.inverse) engine.SwapSourDest();
    if (!ChooseType(engine, TypeNamed(options.type), options.points)) return false;
    if (!Exclude(engine, options.exclude)) return false;
    if (engine.eTrType() != TypeNamed(options.type)) {
        PrintNote(Text(TextId::kTypeLowered, {TypeName(engine.eTrType())}));
    }
    return Fit(engine);
}

/// Saves a file that was asked for; one that cannot be written does not keep the others from it.
void Save(const std::string& fileName, const std::function<void()>& save) {
    if (fileName.empty()) return;
    const SignalsWait wait;
    try {
        save();
    } catch (const RuntimeError& error) {
        if (error.Number() == ErrorNumber::kFileNotOpen) return;  // has been reported
        ShowMessage(error.what(), Icon::kExclamation);
    }
}

/// Saves a file in which the control points, which it must not replace, cannot live on.
void SaveBesidePoints(const std::string& fileName, const std::string& points,
                      const std::function<void()>& save) {
    std::error_code error;
    if (!std::filesystem::equivalent(fileName, points, error)) return Save(fileName, save);
    ShowMessage(Text(TextId::kTakesPlaceOfInput), Icon::kExclamation);
}

/// Parameters are saved only of a fit without trouble: nothing in their file would tell of it.
void SaveFiles(clsTrCalc& engine, const AdjustOptions& options, bool trouble) {
    SaveBesidePoints(options.log, options.points, [&] { engine.SaveLog(options.log); });
    Save(options.savePoints, [&] { engine.bSaveXYs4Tr(options.savePoints); });
    SaveBesidePoints(options.saveParams, options.points, [&] {
        if (trouble) return PrintNote(Text(TextId::kParametersNotSaved));
        SaveParameters(engine.udtTrPrm(), options.saveParams);
    });
    SaveBesidePoints(options.plot, options.points, [&] {
        SavePicture(options.plot,
                    SvgOf(PageOf(engine, {}, GraphPage::kPictureWidth, GraphPage::kPictureHeight)));
    });
}

/// On a terminal the lines of points beyond the limit are marked.
void PrintLog(const clsTrCalc& engine) {
    const bool colour = OutputTakesColour();
    const std::string mark = "  > " + FixedText(engine.gdErrLimit, 3, ComponentNumberStyle());
    for (const auto& [text, point] :
         LogOf(engine.Held(), ComponentTexts(), ComponentNumberStyle())) {
        const bool within =
            !point || engine.Held().Residuals()[*point].Length() <= engine.gdErrLimit;
        if (within || !OutputIsTerminal()) {
            std::cout << text << '\n';
        } else {
            std::cout << (colour ? "\x1b[31m" : "") << text << mark << (colour ? "\x1b[0m" : "")
                      << '\n';
        }
    }
}

Json StatisticsJson(const clsTrCalc& engine) {
    return {{"dRmsErr", engine.dRmsErr()},
            {"dRmsErrX", engine.dRmsErrX()},
            {"dRmsErrY", engine.dRmsErrY()},
            {"dMiddleErrX", engine.dMiddleErrX()},
            {"dMiddleErrY", engine.dMiddleErrY()}};
}

Json PointsJson(const Adjustment& adjustment) {
    Json points = Json::array();
    for (std::size_t i = 0; i < adjustment.Points().size(); ++i) {
        const auto& [id, source, destination, used] = adjustment.Points()[i];
        const Residual& residual = adjustment.Residuals()[i];
        points.push_back({{"sId", id},
                          {"dXsour", source.first},
                          {"dYsour", source.second},
                          {"dXdest", destination.first},
                          {"dYdest", destination.second},
                          {"dXerr", residual.first},
                          {"dYerr", residual.second},
                          {"bNotUsed", !used}});
    }
    return points;
}

Json MessagesJson() {
    constexpr std::array kIconNames{"none", "information", "exclamation"};
    Json messages = Json::array();
    for (const Message& message : ReportedMessages()) {
        messages.push_back({{"text", message.text},
                            {"title", message.title},
                            {"icon", kIconNames[static_cast<std::size_t>(message.icon)]}});
    }
    return messages;
}

/// Without a fit the parameters and the figures are null.
void PrintJson(const clsTrCalc& engine, bool fitted, const std::vector<std::int32_t>& events) {
    Json report;
    report["type"] = static_cast<std::int32_t>(engine.eTrType());
    report["typeName"] = TypeName(engine.eTrType());
    report["parameters"] = fitted ? ParametersJson(engine.udtTrPrm()) : Json();
    report["statistics"] = fitted ? StatisticsJson(engine) : Json();
    report["points"] = PointsJson(engine.Held());
    report["messages"] = MessagesJson();
    report["events"] = events;
    std::cout << JsonText(report) << '\n';
}

int RunAdjust(const AdjustOptions& options) {
    if (!AreDistinct({{"--log", options.log},
                      {"--save-points", options.savePoints},
                      {"--save-params", options.saveParams},
                      {"--plot", options.plot}})) {
        return kWrongUsage;
    }
    if (options.decimalComma) DecimalSeparator(',');
    clsTrCalc engine;
    engine.eTrType(TypeNamed(options.type));
    if (!options.limit.empty()) engine.gdErrLimit = *ParseNumber(options.limit, true);
    std::vector<std::int32_t> events;
    const Subscription subscription =
        engine.TypeChanched.Subscribe([&events](enuTR_TYPE& type) { events.push_back(type); });

    const MessageCount shown;
    const bool fitted = PrepareAndFit(engine, options);
    if (fitted) SaveFiles(engine, options, shown > 0);
    if (options.json) {
        PrintJson(engine, fitted, events);
    } else if (fitted) {
        PrintLog(engine);
    }
    return shown == 0 ? kDone : kReported;
}

}  // namespace

Run AddAdjust(CLI::App& command) {
    const auto options = std::make_shared<AdjustOptions>();
    command.add_option("POINTS", options->points, Text(TextId::kPoints))->required();
    AddTypeOption(command, options->type);
    command.add_flag("--inverse", options->inverse, Text(TextId::kInverse));
    command.add_option("--exclude", options->exclude, Text(TextId::kExclude))
        ->type_name("ID")
        ->allow_extra_args(false);
    command.add_option("--limit", options->limit, Text(TextId::kLimit))
        ->type_name("M")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text, true);
            return number && *number >= 0.0 ? "" : Text(TextId::kUnsuitableNumber, {Excerpt(text)});
        });
    AddFileOption(command, "--log", options->log, TextId::kLog);
    AddFileOption(command, "--save-points", options->savePoints, TextId::kSavePoints);
    AddFileOption(command, "--save-params", options->saveParams, TextId::kSaveParams)
        ->check(CheckExtension);
    AddFileOption(command, "--plot", options->plot, TextId::kPlot)
        ->check([](const std::string& name) {
            return HasExtension(name, "svg")
                       ? ""
                       : Text(TextId::kPictureExtension, {Excerpt(name), ".svg"});
        });
    AddLanguageOption(command);
    command.add_flag("--json", options->json, Text(TextId::kJson));
    command.add_flag("--decimal-comma", options->decimalComma, Text(TextId::kDecimalComma));
    return [options] { return RunAdjust(*options); };
}

}  // namespace kv_tr::cli
