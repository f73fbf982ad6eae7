// kv_tr angle: a direction through a transformation.
#include <CLI/CLI.hpp>
#include <array>
#include <iostream>

#include "cli/host.h"
#include "cli/parameters.h"
#include "support/number_text.h"

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

/// A unit of angles and how finely it is printed.
struct Unit {
    double perHalfTurn;
    std::uint8_t decimals;
};

Unit UnitNamed(const std::string& name, double pi) {
    if (name == "deg") return {180.0, 7};
    if (name == "gon") return {200.0, 7};
    return {pi, 9};
}

int RunAngle(const AngleOptions& options) {
    clsTr transformation;
    if (const int code = LoadParameters(transformation, options.source); code != kDone) return code;
    const Unit unit = UnitNamed(options.unit, transformation.PI);
    const double radians = *ParseNumber(options.angle) * transformation.PI / unit.perHalfTurn;
    double transformed = 0.0;
    transformation.TrAngle(radians, transformed, *ParseNumber(options.first),
                           *ParseNumber(options.second), *ParseNumber(options.length));
    std::cout << FormatFixed(transformed * unit.perHalfTurn / transformation.PI, unit.decimals, 0)
              << '\n';
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
        ->check(CheckNumber);
    AddLanguageOption(command);
    return [options] { return RunAngle(*options); };
}

}  // namespace kv_tr::cli
