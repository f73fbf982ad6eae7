// Whole data sets through kv_tr transform.
#include "cli/transform_layers.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <set>

#include "cli/export.h"
#include "cli/file_options.h"
#include "cli/findings.h"
#include "cli/interruption.h"
#include "cli/program.h"
#include "cli/terminal.h"
#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"

#ifdef KV_TR_GDAL
#include "kv_tr/gdal/vector_transform.h"
#include "kv_tr/text/paths.h"
#endif

namespace kv_tr::cli {

std::string LayerOptions::First() const {
    if (!format.empty()) return "--format";
    if (!axes.empty()) return "--axes";
    return targetCrs.empty() ? "" : "--target-crs";
}

void AddLayerOptions(CLI::App& command, LayerOptions& options) {
    command.add_option("--format", options.format, Translated(Text::kDataSetFormatOption))
        ->type_name("FORMAT");
    command.add_option("--axes", options.axes, Translated(Text::kMapAxesOption, {AxisWords()}))
        ->type_name("AXES")
        ->check(WithWords(AxisWords(), CheckAxes));
    command.add_option("--target-crs", options.targetCrs, Translated(Text::kResultCrsOption))
        ->type_name("CRS");
    command
        .add_option_function<std::string>(
            "--curve-tolerance",
            [&options](const std::string& text) { options.curveTolerance = *ParseNumber(text); },
            Translated(Text::kCurveToleranceOption))
        ->type_name("UNITS")
        ->default_str("0.001")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text);
            const bool suitable = number && *number > 0 && std::isfinite(*number);
            return suitable ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--overwrite", options.overwrite, Translated(Text::kOverwriteOption));
}

#ifdef KV_TR_GDAL

namespace {

/// Notes each remark once, and how many more there are than anybody reads.
void PrintRemarks(const std::vector<gdal::DataSetError>& remarks) {
    constexpr std::size_t kMost = 20;
    std::set<std::string> seen;
    for (const auto& remark : remarks) {
        const std::string text = remark.In(ComponentTexts());
        if (!seen.insert(text).second || seen.size() > kMost) continue;
        PrintNote(text);
    }
    if (seen.size() > kMost) PrintNote("... +" + std::to_string(seen.size() - kMost));
}

void Report(const gdal::VectorResult& result, const TransformTask& task,
            const LayerOptions& options) {
    PrintRemarks(result.remarks);
    if (result.arcs > 0) {
        PrintNote(Translated(
            Text::kCurvesStroked,
            {task.input, ShortestText(options.curveTolerance), std::to_string(result.arcs)}));
    }
    if (const auto warning = ExtrapolationWarning(result.outside)) PrintWarnings({*warning}, true);
    if (result.leftOut > 0) {
        ShowMessage(Translated(Text::kFeaturesLeftOut, {task.input, std::to_string(result.leftOut),
                                                        std::to_string(result.features)}),
                    Icon::kExclamation);
    }
    PrintNote(
        Translated(Text::kDataSetWritten, {NameOfPath(result.target), std::to_string(result.layers),
                                           std::to_string(result.features - result.leftOut)}));
}

/// Transforms one data set; false after a message why that is impossible.
int TransformDataSet(const TransformTask& task, const MapWithAxes& loaded,
                     const gdal::TargetCrs& crs, const LayerOptions& options) {
    const NotedInterruption interruption;
    try {
        Progress progress(0, false);
        const std::string name = NameOfPath(PathOf(task.input).filename());
        const auto result = gdal::TransformLayers(
            {.source = PathOf(task.input),
             .target = PathOf(task.output),
             .format = options.format,
             .mayBeFolder = task.intoFolder,
             .mayBeTable = task.fromFolder,
             .replaces = options.overwrite,
             .keepGoing = options.keepGoing,
             .crs = crs,
             .curveTolerance = options.curveTolerance,
             .precision = loaded.precision.get()},
            {loaded.map, loaded.sourceAxes, loaded.targetAxes}, [&](double done) {
                progress.ShowShare(name, done);
                return !NotedInterruption::Noted();
            });
        Report(result, task, options);
        return result.leftOut == 0 ? kDone : kReported;
    } catch (const gdal::DataSetError& error) {
        ShowMessage(error.In(ComponentTexts()), Icon::kExclamation);
    } catch (const gdal::Cancelled&) {  // by the signal that ends the program next
    }
    return kReported;
}

}  // namespace

int TransformDataSets(const std::vector<TransformTask>& tasks, const ParameterSource& source,
                      const LayerOptions& options) {
    gdal::TargetCrs crs;
    try {
        crs = gdal::ReadTargetCrs(options.targetCrs);
    } catch (const gdal::DataSetError& error) {
        PrintNote(error.In(ComponentTexts()));
        return kWrongUsage;
    }
    MapWithAxes loaded;
    if (const int code = LoadMapWithAxes(loaded, source, options.axes); code != kDone) {
        if (code == kReported) PrintNote(Translated(Text::kNothingTransformed));
        return code;
    }
    int code = kDone;
    for (const TransformTask& task : tasks) {
        if (task.kind != TaskKind::kDataSet) continue;
        code = std::max(code, TransformDataSet(task, loaded, crs, options));
        if (code != kDone && !options.keepGoing) break;
    }
    return code;
}

#else

int TransformDataSets(const std::vector<TransformTask>& tasks, const ParameterSource&,
                      const LayerOptions&) {
    for (const TransformTask& task : tasks) {
        if (task.kind == TaskKind::kDataSet)
            PrintNote(Translated(Text::kNeedsGdal, {Excerpt(task.input)}));
    }
    return kReported;
}

#endif

}  // namespace kv_tr::cli
