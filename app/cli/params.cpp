// kv_tr params: shows and converts parameters.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/host.h"
#include "cli/json_text.h"
#include "cli/parameters.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/national.h"

namespace kv_tr::cli {
namespace {

struct ParamsOptions {
    ParameterSource source;
    std::string format = "listing";
};

std::string LinearText(const TR_PRM& record, LinearFormat format) {
    std::string text;
    for (const std::string& line : LinearFileLines(TransformationOf(record), format))
        text += line + "\n";
    return text;
}

std::string JsonOf(const clsTr& transformation) {
    nlohmann::ordered_json json;
    json["type"] = static_cast<std::int32_t>(transformation.udtTrPrm().eType);
    json["typeName"] = transformation.sTrTypeName();
    json["parameters"] = ParametersJson(transformation.udtTrPrm());
    return JsonText(json) + "\n";
}

int RunParams(const ParamsOptions& options) {
    clsTr transformation;
    if (const int code = LoadParameters(transformation, options.source); code != kDone) return code;
    const TR_PRM record = transformation.udtTrPrm();
    const std::string& format = options.format;
    std::string text;
    if (format == "listing") {
        text = transformation.sListHelmertTrPrm() + transformation.sListPoliTrPrm();
    } else if (format == "json") {
        text = JsonOf(transformation);
    } else if (!FormatHolds(format, record.eType, format)) {
        return kReported;
    } else if (format == "all") {
        text = transformation.sListPoliTrPrm() + "\n";
    } else {
        text = LinearText(record, format == "prm" ? LinearFormat::kItr25 : LinearFormat::kNative);
    }
    std::erase(text, '\r');
    std::cout << text;
    if (record.eType >= TR_STG_HER) PrintNote(NationalOrigin(record.eType));
    return kDone;
}

}  // namespace

Run AddParams(CLI::App& command) {
    const auto options = std::make_shared<ParamsOptions>();
    command.add_option("FILE", options->source.params, Text(TextId::kParams))
        ->check(CheckExtension);
    AddBuiltInOptions(command, options->source);
    command.add_option("--format", options->format, Text(TextId::kFormat))
        ->type_name("FORMAT")
        ->capture_default_str()
        ->check(CheckWord("listing, trp, prm, all, json"));
    AddLanguageOption(command);
    return [options] { return RunParams(*options); };
}

}  // namespace kv_tr::cli
