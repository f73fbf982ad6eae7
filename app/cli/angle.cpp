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
    TransformationRecord record;
    if (const int code = LoadParameters(record, options.source); code != kDone) return code;
    const Transformation& transformation = record.transformation;
    const auto unit = std::ranges::find(app::AngleUnits(), options.unit, &app::AngleUnit::name);
    const Point point{*ParseNumber(options.first), *ParseNumber(options.second)};
    const double length = *ParseNumber(options.length);
    const std::string image = app::TransformedDirection(transformation, *ParseNumber(options.angle),
                                                        *unit, point, length);
    if (image.empty()) {
        ShowMessage(Translated(Text::kUnsuitableNumber, {options.first + " " + options.second}),
                    Icon::kExclamation);
        return kReported;
    }
    std::cout << image << '\n';
    PrintNote("± " + app::DirectionUncertainty(transformation, *unit, point, length) + " " +
              options.unit + ": " + Translated(Text::kSinglePrecision));
    return kDone;
}

}  // namespace

Run AddAngle(CLI::App& command) {
    const auto options = std::make_shared<AngleOptions>();
    const auto addNumber = [&command](const char* name, std::string& value, Text description) {
        command.add_option(name, value, Translated(description))->required()->check(CheckNumber);
    };
    addNumber("ANGLE", options->angle, Text::kAngleArgument);
    addNumber("FIRST", options->first, Text::kFirstArgument);
    addNumber("SECOND", options->second, Text::kSecondArgument);
    AddSourceOptions(command, options->source);
    AddInverseOption(command, options->source, Text::kInverseOption);
    command.add_option("--unit", options->unit, Translated(Text::kUnitOption))
        ->type_name("UNIT")
        ->capture_default_str()
        ->check(CheckWord("rad, deg, gon"));
    command.add_option("--length", options->length, Translated(Text::kLengthOption))
        ->type_name("M")
        ->capture_default_str()
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            return number && *number > 0.0 ? ""
                                           : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    AddLanguageOption(command);
    return [options] { return RunAngle(*options); };
}

}  // namespace kv_tr::cli
