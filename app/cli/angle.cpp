// kv_tr angle: a direction through a transformation.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/parameters.h"
#include "cli/program.h"
#include "common/angle_units.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr::cli {
namespace {

struct AngleOptions {
    std::string angle;
    std::string first;
    std::string second;
    ParameterSource source;
    std::string unit = "rad";
    std::string length = "100";
};

int RunAngle(const AngleOptions& options) {
    Transformation transformation;
    if (const int code = LoadParameters(transformation, options.source); code != kDone) return code;
    const auto unit = std::ranges::find(app::AngleUnits(), options.unit, &app::AngleUnit::name);
    const Point point{*ParseNumber(options.first), *ParseNumber(options.second)};
    const double length = *ParseNumber(options.length);
    const std::string image = app::TransformedDirection(transformation, *ParseNumber(options.angle),
                                                        *unit, point, length);
    if (image.empty()) {
        ShowMessage(Text(TextId::kUnsuitableNumber, {options.first + " " + options.second}),
                    Icon::kExclamation);
        return kReported;
    }
    std::cout << image << '\n';
    PrintNote("± " + app::DirectionUncertainty(transformation, *unit, point, length) + " " +
              options.unit + ": " + Text(TextId::kSinglePrecision));
    return kDone;
}

}  // namespace

Run AddAngle(CLI::App& command) {
    const auto options = std::make_shared<AngleOptions>();
    const auto addNumber = [&command](const char* name, std::string& value, TextId description) {
        command.add_option(name, value, Text(description))->required()->check(CheckNumber);
    };
    addNumber("ANGLE", options->angle, TextId::kAngle);
    addNumber("FIRST", options->first, TextId::kFirst);
    addNumber("SECOND", options->second, TextId::kSecond);
    AddSourceOptions(command, options->source);
    command.add_option("--unit", options->unit, Text(TextId::kUnit))
        ->type_name("UNIT")
        ->capture_default_str()
        ->check(CheckWord("rad, deg, gon"));
    command.add_option("--length", options->length, Text(TextId::kLength))
        ->type_name("M")
        ->capture_default_str()
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            return number && *number > 0.0 ? "" : Text(TextId::kUnsuitableNumber, {Excerpt(text)});
        });
    AddLanguageOption(command);
    return [options] { return RunAngle(*options); };
}

}  // namespace kv_tr::cli
