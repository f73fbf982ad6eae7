// kv_tr params: shows and converts parameters.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/export.h"
#include "cli/interruption.h"
#include "cli/json_text.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/model/national.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr::cli {
namespace {

struct ParamsOptions {
    ParameterSource source;
    std::string format = "listing";
    ExportOptions exports;
};

std::string LinearText(const Transformation& transformation, LinearFormat format) {
    std::string text;
    for (const std::string& line : LinearFileLines(transformation, format, ComponentNumberStyle()))
        text += line + "\n";
    return text;
}

std::string JsonOf(const Transformation& transformation) {
    nlohmann::ordered_json json;
    json["type"] = NumberOf(transformation.type);
    json["typeName"] = TypeName(transformation.type, ComponentTexts());
    json["parameters"] = ParametersJson(transformation);
    return JsonText(json) + "\n";
}

/// Tells which constants of a national transformation are published.
void NoteOrigin(Type type) {
    if (IsNational(type)) PrintNote(Translated(NationalOrigin(type)));
}

int RunParams(const ParamsOptions& options) {
    const ExportOptions& exports = options.exports;
    const std::vector<NamedValue> ofExports{{"--axes", exports.axes},
                                            {"--source-crs", exports.sourceCrs},
                                            {"--target-crs", exports.targetCrs}};
    if (!HaveUse(ofExports, "--export", !exports.wanted.empty()) ||
        !OutputSuffices(options.exports, false) ||
        !AreDistinct(options.exports.Files(), {{"FILE", options.source.params}})) {
        return kWrongUsage;
    }
    TransformationRecord record;
    if (const int code = LoadParameters(record, options.source); code != kDone) return code;
    const bool exported =
        Export(record, options.exports, [](const std::string&, const std::function<bool()>& write) {
            const SignalsWait wait;
            return write();
        });
    const Transformation& transformation = record.transformation;
    if (!exported) return kReported;
    if (options.exports.ToOutput()) {
        NoteOrigin(transformation.type);
        return kDone;
    }
    const auto polynomialText = [&transformation] {
        return ListPolynomial(transformation, TypeName(transformation.type, ComponentTexts()),
                              ComponentNumberStyle());
    };
    const std::string& format = options.format;
    std::string text;
    if (format == "listing") {
        text = ListLinear(transformation, ComponentNumberStyle()) + polynomialText();
    } else if (format == "json") {
        text = JsonOf(transformation);
    } else if (!FormatHolds(format, transformation.type, format)) {
        return kReported;
    } else if (format == "all") {
        text = polynomialText() + "\n";
    } else {
        text = LinearText(transformation,
                          format == "prm" ? LinearFormat::kItr25 : LinearFormat::kNative);
    }
    std::erase(text, '\r');
    std::cout << text;
    NoteOrigin(transformation.type);
    return kDone;
}

}  // namespace

Run AddParams(CLI::App& command) {
    const auto options = std::make_shared<ParamsOptions>();
    command.add_option("FILE", options->source.params, Translated(Text::kParamsOption));
    AddBuiltInOptions(command, options->source);
    AddInverseOption(command, options->source, Text::kInverseOption);
    command.add_option("--format", options->format, Translated(Text::kFormatOption))
        ->type_name("FORMAT")
        ->capture_default_str()
        ->check(CheckWord("listing, trp, prm, all, json"));
    AddExportOptions(command, options->exports);
    AddLanguageOption(command);
    return [options] { return RunParams(*options); };
}

}  // namespace kv_tr::cli
