// kv_tr points: how control points were understood, and their conversion.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/export.h"
#include "cli/file_options.h"
#include "cli/json_text.h"
#include "cli/point_output.h"
#include "cli/point_source.h"
#include "cli/program.h"
#include "cli/table.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

struct PointsOptions {
    PointSource source;
    std::string sigma;
    std::string output;
    std::string to;
    bool json = false;
};

std::string SignText(char sign) {
    if (sign == '\t') return Translated(Text::kTabSign);
    return sign == ' ' ? Translated(Text::kBlankSign) : std::string(1, sign);
}

std::string ColumnsText(const PointLayout& layout) {
    std::string columns;
    for (const std::string& column : layout.columns)
        columns += (columns.empty() ? "" : " ") + column;
    return layout.header ? Translated(Text::kNamedByHeader, {columns}) : columns;
}

std::size_t UsedAmong(const std::vector<ControlPoint>& points) {
    return static_cast<std::size_t>(std::ranges::count(points, true, &ControlPoint::used));
}

void PrintUnderstood(const LoadedPoints& loaded) {
    for (const auto& [file, format, layout] : loaded.files) {
        Column names{Translated(Text::kFormatHeading)};
        Column values{format};
        const auto add = [&](Text name, const std::string& value) {
            names.cells.push_back(Translated(name));
            values.cells.push_back(value);
        };
        add(Text::kLettersHeading, layout.encoding);
        if (layout.separator != '\0') add(Text::kSeparatorHeading, SignText(layout.separator));
        add(Text::kDecimalSignHeading, std::string(1, layout.decimalSign));
        add(Text::kColumnsHeading, ColumnsText(layout));
        if (&file == &loaded.files.back().file) {
            add(Text::kPointCountHeading,
                Translated(Text::kPointsInUse, {std::to_string(loaded.points.size()),
                                                std::to_string(UsedAmong(loaded.points))}));
            if (!loaded.crs.empty()) add(Text::kSystemHeading, loaded.crs);
        }
        if (loaded.files.size() > 1) std::cout << Excerpt(file) << '\n';
        PrintTable({names, values});
        std::cout << '\n';
    }
}

void PrintFirstPoints(const LoadedPoints& loaded) {
    constexpr std::size_t kShown = 5;
    Column ids{"id"};
    Column firsts{"Y1", true}, seconds{"X1", true}, toFirsts{"Y2", true}, toSeconds{"X2", true};
    Column marks{"use", true}, sigmaFirsts{"σY", true}, sigmaSeconds{"σX", true};
    for (std::size_t i = 0; i < loaded.points.size() && i < kShown; ++i) {
        const auto& [id, source, destination, used] = loaded.points[i];
        ids.cells.push_back(id);
        firsts.cells.push_back(ShortestText(source.first));
        seconds.cells.push_back(ShortestText(source.second));
        toFirsts.cells.push_back(ShortestText(destination.first));
        toSeconds.cells.push_back(ShortestText(destination.second));
        marks.cells.emplace_back(used ? "1" : "0");
        if (loaded.sigmas.empty()) continue;
        sigmaFirsts.cells.push_back(ShortestText(loaded.sigmas[i].first));
        sigmaSeconds.cells.push_back(ShortestText(loaded.sigmas[i].second));
    }
    std::vector<Column> columns{ids, firsts, seconds, toFirsts, toSeconds, marks};
    if (!loaded.sigmas.empty()) columns.insert(columns.end(), {sigmaFirsts, sigmaSeconds});
    PrintTable(columns);
    if (loaded.points.size() > kShown) std::cout << "...\n";
}

void PrintJson(const LoadedPoints& loaded) {
    Json report;
    report["files"] = Json::array();
    for (const auto& [file, format, layout] : loaded.files) {
        const bool separated = layout.separator != '\0';
        report["files"].push_back(
            {{"file", file},
             {"format", format},
             {"encoding", layout.encoding},
             {"separator", separated ? Json(std::string(1, layout.separator)) : Json()},
             {"decimalSign", std::string(1, layout.decimalSign)},
             {"header", layout.header},
             {"columns", layout.columns}});
    }
    report["count"] = loaded.points.size();
    report["used"] = UsedAmong(loaded.points);
    report["crs"] = loaded.crs.empty() ? Json() : Json(loaded.crs);
    report["points"] = Json::array();
    for (std::size_t i = 0; i < loaded.points.size(); ++i) {
        const auto& [id, source, destination, used] = loaded.points[i];
        Json point{{"id", id},
                   {"src_first", source.first},
                   {"src_second", source.second},
                   {"dst_first", destination.first},
                   {"dst_second", destination.second},
                   {"use", used}};
        if (!loaded.sigmas.empty()) {
            point["sigma_first"] = loaded.sigmas[i].first;
            point["sigma_second"] = loaded.sigmas[i].second;
        }
        report["points"].push_back(std::move(point));
    }
    std::cout << JsonText(report) << '\n';
}

int RunPoints(const PointsOptions& options) {
    const PointSource& source = options.source;
    const std::vector<NamedFile> read{{"FILE", source.file}, {"TARGET", source.target}};
    const std::vector<NamedFile> written{{"--output", options.output}};
    if (!AreDistinct(written, read) || !IsSensible(source)) return kWrongUsage;
    const auto to = OutputFormat(options.to, options.output);
    if (!options.output.empty() && !to) {
        PrintNote(Translated(Text::kFormatNeeded, {Excerpt(options.output)}));
        return kWrongUsage;
    }
    const auto loaded = LoadPoints(source, true);
    if (!loaded) return kReported;
    if (!source.axes.empty() && !loaded->onMaps && !(to && IsOnMaps(*to))) {
        PrintNote(Translated(Text::kAxesWithoutUse));
        return kWrongUsage;
    }
    const auto axes = AxesOfWords(source.axes).value_or(std::pair<AxisMapping, AxisMapping>{});
    const bool converted = !to || WritePointsTo(options.output,
                                                {.points = loaded->points,
                                                 .sigmas = loaded->sigmas,
                                                 .crs = loaded->crs,
                                                 .sourceAxes = axes.first,
                                                 .targetAxes = axes.second},
                                                *to);
    if (options.json) {
        PrintJson(*loaded);
    } else if (!to || !options.output.empty()) {
        PrintUnderstood(*loaded);
        PrintFirstPoints(*loaded);
    }
    return converted ? kDone : kReported;
}

}  // namespace

Run AddPoints(CLI::App& command) {
    const auto options = std::make_shared<PointsOptions>();
    PointSource& source = options->source;
    command.add_option("FILE", source.file, Translated(Text::kAnyPointsArgument))->required();
    command.add_option("TARGET", source.target, Translated(Text::kTargetListArgument));
    AddPointFormatOption(command, source.format);
    command.add_option("--sigma", options->sigma, Translated(Text::kSigmaColumnsOption))
        ->type_name("WORD")
        ->check(CheckWord("columns"));
    AddFileOption(command, "--output", options->output, Text::kPointOutputOption);
    AddOutputFormatOption(command, "--to", options->to, Text::kPointOutputFormatOption);
    AddAxesOption(command, source.axes);
    command.add_flag("--decimal-comma", source.decimalComma, Translated(Text::kHasDecimalCommas));
    command.add_flag("--json", options->json, Translated(Text::kJsonOption));
    AddLanguageOption(command);
    return [options] {
        options->source.sigmaColumns = !options->sigma.empty();
        return RunPoints(*options);
    };
}

}  // namespace kv_tr::cli
