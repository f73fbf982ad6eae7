// kv_tr warp: a raster, pixels and all.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>

#include "cli/export.h"
#include "cli/file_options.h"
#include "cli/interruption.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "kv_tr/gdal/raster_warp.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::cli {
namespace {

struct WarpOptions {
    gdal::RasterJob job;
    ParameterSource source;
    std::string output;
    std::string axes;
    std::string targetCrs;
};

/// The numbers of a text like "1,2.5,3"; nothing where one is none, or their count is another.
template <std::size_t kCount>
std::optional<std::array<double, kCount>> NumbersOf(const std::string& text) {
    std::array<double, kCount> numbers{};
    const auto fields = CLI::detail::split(text, ',');
    if (fields.size() != kCount) return std::nullopt;
    for (std::size_t i = 0; i < kCount; ++i) {
        const auto number = ParseNumber(fields[i]);
        if (!number || !std::isfinite(*number)) return std::nullopt;
        numbers[i] = *number;
    }
    return numbers;
}

template <std::size_t kCount>
bool IsPositive(const std::array<double, kCount>& numbers) {
    return std::ranges::all_of(numbers, [](double number) { return number > 0; });
}

std::optional<std::array<double, 2>> ResolutionOf(const std::string& text) {
    const auto numbers = NumbersOf<2>(text.find(',') == text.npos ? text + "," + text : text);
    return numbers && IsPositive(*numbers) ? numbers : std::nullopt;
}

std::optional<std::array<int, 2>> SizeOf(const std::string& text) {
    const auto numbers = NumbersOf<2>(text);
    constexpr double kMost = std::numeric_limits<int>::max();
    const auto suits = [](double number) {
        return number <= kMost && number == std::floor(number);
    };
    if (!numbers || !IsPositive(*numbers) || !std::ranges::all_of(*numbers, suits)) return {};
    return std::array{static_cast<int>((*numbers)[0]), static_cast<int>((*numbers)[1])};
}

/// Adds an option that takes what a parser understands; otherwise the form is shown.
template <typename Parser, typename Take>
void AddParsed(CLI::App& command, const char* name, Text description, const std::string& form,
               Parser parse, Take take) {
    command
        .add_option_function<std::string>(
            name, [parse, take](const std::string& text) { take(*parse(text)); },
            Translated(description))
        ->type_name(form)
        ->check([parse, form](const std::string& text) {
            return parse(text) ? "" : Translated(Text::kUnsuitableNumbers, {form, Excerpt(text)});
        });
}

/// A number from a limit on.
auto AtLeast(double limit) {
    return [limit](const std::string& text) {
        const auto number = ParseNumber(text);
        return number && std::isfinite(*number) && *number >= limit ? number : std::nullopt;
    };
}

std::optional<double> NoDataNumber(const std::string& text) {
    return text == "nan" ? std::numeric_limits<double>::quiet_NaN() : ParseNumber(text);
}

void AddGridOptions(CLI::App& command, gdal::GridWish& grid) {
    AddParsed(command, "--resolution", Text::kResolutionOption, "W[,H]", ResolutionOf,
              [&grid](const auto& value) { grid.resolution = value; });
    AddParsed(command, "--extent", Text::kExtentOption, "X0,Y0,X1,Y1", NumbersOf<4>,
              [&grid](const auto& value) { grid.extent = value; });
    AddParsed(command, "--size", Text::kSizeOption, "W,H", SizeOf,
              [&grid](const auto& value) { grid.size = value; });
}

void AddFormatOptions(CLI::App& command, gdal::RasterJob& job) {
    command.add_option("--format", job.format, Translated(Text::kRasterFormatOption))
        ->type_name("FORMAT");
    command.add_option("--compression", job.compression, Translated(Text::kCompressionOption))
        ->type_name("NAME");
    command.add_option("--option", job.options, Translated(Text::kCreationOption))
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check([](const std::string& text) {
            const auto equals = text.find('=');
            return equals != text.npos && equals > 0
                       ? ""
                       : Translated(Text::kUnsuitableNumbers, {"NAME=VALUE", Excerpt(text)});
        });
    command.add_flag("--overviews", job.overviews, Translated(Text::kOverviewsOption));
    command.add_flag("--overwrite", job.replaces, Translated(Text::kOverwriteOption));
}

void AddPixelOptions(CLI::App& command, gdal::RasterJob& job) {
    command
        .add_option_function<std::string>(
            "--pixels",
            [&job](const std::string& word) {
                job.sourceCoordinates = word == "up" ? gdal::SourceCoordinates::kLinesUp
                                                     : gdal::SourceCoordinates::kLinesDown;
            },
            Translated(Text::kPixelsOption))
        ->type_name("up|down")
        ->check(CheckWord("up, down"));
    command
        .add_option("--resampling", job.resampling,
                    Translated(Text::kResamplingOption, {gdal::Resamplings()}))
        ->type_name("NAME")
        ->default_str(job.resampling)
        ->check(CheckWord(gdal::Resamplings()));
    AddParsed(command, "--nodata", Text::kNoDataOption, "NUMBER|nan", NoDataNumber,
              [&job](double value) { job.noData = value; });
    AddParsed(command, "--tolerance", Text::kPixelToleranceOption, "PIXELS (0.125)", AtLeast(0),
              [&job](double value) { job.tolerance = value; });
    AddParsed(command, "--threads", Text::kThreadsOption, "N", AtLeast(1),
              [&job](double value) { job.threads = static_cast<int>(std::min(value, 1024.0)); });
    AddParsed(command, "--memory", Text::kMemoryOption, "MB (64)", AtLeast(1),
              [&job](double value) { job.megabytes = value; });
}

std::string Millimetres(double value) {
    std::string text;
    AppendFixed(text, value, 3);
    return text;
}

/// The size of a pixel without the last digits, in which only rounding shows.
std::string SizeText(double size) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.10g", size);
    return text.data();
}

void Tell(const gdal::RasterResult& result, const std::string& output) {
    if (result.fold) {
        PrintNote(Translated(Text::kRasterFolds,
                             {Millimetres(result.fold->first), Millimetres(result.fold->second)}));
    }
    if (result.isFarFromPoints) PrintNote(Translated(Text::kFarFromPoints));
    for (const std::string& warning : result.warnings) {
        PrintNote(Translated(Text::kGdalSays, {output, warning}));
    }
    const gdal::RasterGrid& grid = result.grid;
    std::cout << Translated(Text::kRasterWritten,
                            {output, std::to_string(grid.columns), std::to_string(grid.lines),
                             SizeText(grid.width), SizeText(grid.height)})
              << '\n';
}

int RunWarp(const WarpOptions& options) {
    if (!AreDistinct({{"--output", options.output}}, {{"FILE", options.job.input},
                                                      {"--points", options.source.points},
                                                      {"--params", options.source.params}})) {
        return kWrongUsage;
    }
    MapWithAxes loaded;
    if (const int code = LoadMapWithAxes(loaded, options.source, options.axes); code != kDone) {
        return code;
    }
    auto job = options.job;
    job.output = options.output;
    job.map = {loaded.map, loaded.sourceAxes, loaded.targetAxes};
    job.controlPoints = options.source.inverse ? std::nullopt : loaded.domain;
    try {
        job.crs = gdal::ReadTargetCrs(options.targetCrs);
        const NotedInterruption interruption;
        Progress progress(0, false);
        const auto result = gdal::WarpRaster(job, [&](double done) {
            progress.ShowShare(options.output, done);
            return !NotedInterruption::Noted();
        });
        Tell(result, options.output);
        return kDone;
    } catch (const gdal::DataSetError& error) {
        ShowMessage(error.In(ComponentTexts()), Icon::kExclamation);
    } catch (const gdal::Cancelled&) {  // the signal ends the program
    }
    return kReported;
}

}  // namespace

Run AddWarp(CLI::App& command) {
    const auto options = std::make_shared<WarpOptions>();
    command.add_option("FILE", options->job.input, Translated(Text::kWarpArgument))->required();
    AddFileOption(command, "--output", options->output, Text::kWarpOutputOption)->required();
    AddSourceOptions(command, options->source);
    AddInverseOption(command, options->source, Text::kExactInverseOption);
    AddPixelOptions(command, options->job);
    command.add_option("--axes", options->axes, Translated(Text::kMapAxesOption, {AxisWords()}))
        ->type_name("AXES")
        ->check(WithWords(AxisWords(), CheckAxes));
    command.add_option("--target-crs", options->targetCrs, Translated(Text::kResultCrsOption))
        ->type_name("CRS");
    AddGridOptions(command, options->job.grid);
    AddFormatOptions(command, options->job);
    AddLanguageOption(command);
    return [options] { return RunWarp(*options); };
}

}  // namespace kv_tr::cli
