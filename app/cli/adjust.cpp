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
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/transformation_log.h"
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
    const auto pairs = engine.Pairs();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (!unwanted.contains(pairs[i].sId)) continue;
        known.insert(pairs[i].sId);
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

/// Marks the last lines of a piece, one for each pair, where the residual is beyond the limit.
std::string Marked(const std::string& piece, const std::vector<typeXYs4Tr>& pairs, double limit) {
    const bool colour = OutputTakesColour();
    const auto lines = static_cast<std::size_t>(std::ranges::count(piece, '\n'));
    std::size_t line = 0;
    std::string marked;
    for (std::size_t begin = 0; begin < piece.size(); ++line) {
        const std::size_t end = piece.find("\r\n", begin);
        std::string text = piece.substr(begin, end - begin);
        begin = end + 2;
        if (line + pairs.size() >= lines) {
            const double residual = ResidualLength(pairs[line + pairs.size() - lines]);
            if (!(residual <= limit)) {  // or not a number
                text += "  > " + FormatFixed(limit, 3, 0);
                if (colour) text.insert(0, "\x1b[31m").append("\x1b[0m");
            }
        }
        marked += text;
        marked += "\r\n";
    }
    return marked;
}

void PrintLog(const clsTrCalc& engine) {
    auto pieces = TransformationLog(engine);
    if (OutputIsTerminal()) {
        std::vector<typeXYs4Tr> used;
        std::vector<typeXYs4Tr> excluded;
        std::ranges::partition_copy(engine.Pairs(), std::back_inserter(excluded),
                                    std::back_inserter(used),
                                    [](const typeXYs4Tr& pair) { return bool{pair.bNotUsed}; });
        pieces[3] = Marked(pieces[3], used, engine.gdErrLimit);
        pieces[4] = Marked(pieces[4], excluded, engine.gdErrLimit);
    }
    for (std::string& piece : pieces) {
        std::erase(piece, '\r');
        std::cout << piece << '\n';
    }
}

Json StatisticsJson(const clsTrCalc& engine) {
    return {{"dRmsErr", engine.dRmsErr()},
            {"dRmsErrX", engine.dRmsErrX()},
            {"dRmsErrY", engine.dRmsErrY()},
            {"dMiddleErrX", engine.dMiddleErrX()},
            {"dMiddleErrY", engine.dMiddleErrY()}};
}

Json PointsJson(const clsTrCalc& engine) {
    Json points = Json::array();
    for (const typeXYs4Tr& pair : engine.Pairs()) {
        points.push_back({{"sId", pair.sId},
                          {"dXsour", pair.dXsour},
                          {"dYsour", pair.dYsour},
                          {"dXdest", pair.dXdest},
                          {"dYdest", pair.dYdest},
                          {"dXerr", pair.dXerr},
                          {"dYerr", pair.dYerr},
                          {"bNotUsed", bool{pair.bNotUsed}}});
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
    report["points"] = PointsJson(engine);
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
