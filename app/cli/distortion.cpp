// kv_tr distortion: scales, rotation and changes of angles at points.
#include "kv_tr/model/distortion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <numbers>

#include "cli/input.h"
#include "cli/json_text.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "cli/table.h"
#include "common/angle_units.h"
#include "common/coordinate_file.h"
#include "common/coordinate_lines.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

struct DistortionOptions {
    std::string input;
    std::vector<std::string> at;  // first, second, first, second, ...
    ParameterSource source;
    std::string unit = "deg";
    bool noId = false;
    bool json = false;
};

struct NamedPoint {
    std::string id;
    Point point;
};

/// Reads the points of a file up to its first bad line; false after one, or that there is no file,
/// was reported.
bool ReadPoints(const std::string& name, const app::CoordinateOptions& options,
                std::vector<NamedPoint>& points) {
    Input input(name);
    if (!input.IsOpen()) {
        ReportOpenFailure(name);
        return false;
    }
    LineReader lines(input.Source());
    lines.SkipUtf8Mark();
    app::CoordinateResult result;
    try {
        while (!lines.AtEnd()) {
            const std::string_view line = lines.Next();
            ++result.lines;
            app::CoordinateFields fields;
            const app::LineKind kind = app::ReadCoordinates(line, options, fields);
            const bool isFinite =
                std::isfinite(fields.point.first) && std::isfinite(fields.point.second);
            if (kind == app::LineKind::kPoint && isFinite) {
                points.push_back({std::string(fields.id), fields.point});
            } else if (kind != app::LineKind::kNoFields) {
                result.endedBy = line;
                app::ReportBadLines(result, input.Name());
                if (app::SeemsToHaveDecimalCommas(line, options)) {
                    PrintNote(Translated(Text::kCommasMayBeDecimal));
                }
                return false;
            }
        }
    } catch (const TextError& error) {
        ShowMessage(ReadFailure(error).what(), Icon::kExclamation);
        return false;
    }
    return true;
}

/// What scales are compared with: the mean scale in the middle of the control points, otherwise at
/// the origin of a polynomial.
struct Reference {
    Point at;
    double scale = 1;
};

Reference ReferenceOf(const Parameters& parameters) {
    const Transformation& t = parameters.record.transformation;
    const auto& domain = parameters.domain;
    const Point origin = IsPolynomial(t.type) ? Point{t.a[0], t.b[0]} : Point{};
    const Point at = domain ? domain->centre : origin;
    return {at, MeanScaleAt(t, at)};
}

void Print(const std::vector<NamedPoint>& points, const Parameters& parameters,
           const app::AngleUnit& unit) {
    const std::string name(unit.name);
    const auto [at, scale] = ReferenceOf(parameters);
    const auto metres = [](double value) { return FormatFixed(value, 3, 0); };
    const auto ppm = [](double ratio) { return FormatFixed((ratio - 1.0) * 1e6, 3, 0); };
    const auto angle = [&unit](double radians) {
        return FormatFixed(radians * unit.perHalfTurn / std::numbers::pi, unit.decimals, 0);
    };
    Column ids{Translated(Text::kNameHeading)};
    Column firsts{"Y", true};
    Column seconds{"X", true};
    Column greatest{"M [ppm]", true};
    Column least{"N [ppm]", true};
    Column areas{Translated(Text::kAreaScaleHeading), true};
    Column rotations{Translated(Text::kRotationHeading, {name}), true};
    Column directions{Translated(Text::kDirectionHeading, {name}), true};
    Column changes{"ω [" + name + "]", true};
    for (const auto& [id, point] : points) {
        const Distortion distortion = DistortionAt(parameters.record.transformation, point);
        ids.cells.push_back(id);
        firsts.cells.push_back(metres(point.first));
        seconds.cells.push_back(metres(point.second));
        greatest.cells.push_back(ppm(distortion.greatestScale / scale));
        least.cells.push_back(ppm(distortion.leastScale / scale));
        areas.cells.push_back(ppm(std::abs(distortion.areaScale) / (scale * scale)));
        rotations.cells.push_back(angle(distortion.rotation));
        directions.cells.push_back(
            distortion.directionInSource ? angle(*distortion.directionInSource) : "–");
        changes.cells.push_back(angle(distortion.greatestAngleChange));
    }
    std::vector<Column> columns{firsts, seconds,   greatest,   least,
                                areas,  rotations, directions, changes};
    const bool named = std::ranges::any_of(points, [](const auto& p) { return !p.id.empty(); });
    if (named) columns.insert(columns.begin(), ids);
    PrintTable(columns);
    std::cout << '\n'
              << Translated(Text::kReferenceScale,
                            {FormatFixed(scale, 9, 0), metres(at.first), metres(at.second)})
              << '\n'
              << Translated(Text::kDistortionLegend, {"ω"}) << '\n';
}

void PrintJson(const std::vector<NamedPoint>& points, const Parameters& parameters,
               const app::AngleUnit& unit) {
    const auto angle = [&unit](std::optional<double> radians) {
        return radians ? Json(*radians * unit.perHalfTurn / std::numbers::pi) : Json();
    };
    const auto [at, scale] = ReferenceOf(parameters);
    Json report;
    report["type"] = NumberOf(parameters.record.transformation.type);
    report["typeName"] = TypeName(parameters.record.transformation.type, ComponentTexts());
    report["unit"] = unit.name;
    report["reference"] = {{"first", at.first}, {"second", at.second}, {"scale", scale}};
    report["points"] = Json::array();
    for (const auto& [id, point] : points) {
        const Distortion distortion = DistortionAt(parameters.record.transformation, point);
        report["points"].push_back(
            {{"id", id},
             {"first", point.first},
             {"second", point.second},
             {"greatestScale", distortion.greatestScale},
             {"leastScale", distortion.leastScale},
             {"areaScale", distortion.areaScale},
             {"rotation", angle(distortion.rotation)},
             {"directionInSource", angle(distortion.directionInSource)},
             {"directionInDestination", angle(distortion.directionInDestination)},
             {"greatestAngleChange", angle(distortion.greatestAngleChange)}});
    }
    std::cout << JsonText(report) << '\n';
}

int RunDistortion(const DistortionOptions& options) {
    Parameters parameters;
    if (const int code = LoadForward(parameters, options.source); code != kDone) return code;
    std::vector<NamedPoint> points;
    for (std::size_t i = 0; i + 1 < options.at.size(); i += 2) {
        points.push_back({{}, {*ParseNumber(options.at[i]), *ParseNumber(options.at[i + 1])}});
    }
    bool complete = true;
    if (points.empty() || !options.input.empty()) {
        complete =
            ReadPoints(options.input.empty() ? "-" : options.input,
                       {.noId = options.noId, .decimalComma = options.source.decimalComma}, points);
    }
    const auto unit = std::ranges::find(app::AngleUnits(), options.unit, &app::AngleUnit::name);
    if (options.json) {
        PrintJson(points, parameters, *unit);
    } else {
        Print(points, parameters, *unit);
    }
    return complete ? kDone : kReported;
}

}  // namespace

Run AddDistortion(CLI::App& command) {
    const auto options = std::make_shared<DistortionOptions>();
    command.add_option("FILE", options->input, Translated(Text::kDistortionArgument));
    command.add_option("--at", options->at, Translated(Text::kAtOption))
        ->type_name("Y X")
        ->type_size(2)
        ->allow_extra_args(false)
        ->check(CheckNumber);
    AddSourceOptions(command, options->source);
    command.add_option("--unit", options->unit, Translated(Text::kUnitOption))
        ->type_name("UNIT")
        ->capture_default_str()
        ->check(CheckWord("rad, deg, gon"));
    command.add_flag("--no-id", options->noId, Translated(Text::kNoIdOption));
    command.add_flag("--json", options->json, Translated(Text::kJsonOption));
    AddLanguageOption(command);
    return [options] { return RunDistortion(*options); };
}

}  // namespace kv_tr::cli
