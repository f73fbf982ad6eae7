// kv_tr adjust: a fit and its log.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string_view>
#include <unordered_set>

#include "cli/adjustment_json.h"
#include "cli/export.h"
#include "cli/file_options.h"
#include "cli/findings.h"
#include "cli/fit.h"
#include "cli/interruption.h"
#include "cli/json_text.h"
#include "cli/parameters.h"
#include "cli/point_output.h"
#include "cli/point_source.h"
#include "cli/program.h"
#include "cli/report.h"
#include "cli/terminal.h"
#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/transformation_log.h"
#include "kv_tr/fit/adjustment.h"
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

struct AdjustOptions {
    std::string points;
    std::string target;  // the list of the destination system, where points is one list of two
    std::string format;
    std::string type = "affine";
    bool inverse = false;
    std::vector<std::string> exclude;
    std::string limit;
    std::string log;
    std::string savePoints;
    std::string saveFormat;
    std::string residualVectors;
    std::string vectorScale;
    std::string saveParams;
    std::string plot;
    bool json = false;
    bool decimalComma = false;
    bool force = false;
    FindingsOptions findings;
    ReportOptions report;
    ExportOptions exports;

    PointFormat SaveFormat() const {
        return OutputFormat(saveFormat, savePoints).value_or(PointFormat::kListing);
    }
    /// Whether something is written that has map coordinates.
    bool WritesMaps() const {
        return !exports.wanted.empty() || !residualVectors.empty() ||
               (!savePoints.empty() && IsOnMaps(SaveFormat()));
    }
    /// The axes of source and destination.
    std::pair<AxisMapping, AxisMapping> Axes() const {
        return AxesOfWords(exports.axes).value_or(std::pair<AxisMapping, AxisMapping>{});
    }
    /// The same as words for the file, whose source the inverse has as its destination.
    std::string AxesOfFile() const {
        if (exports.axes.empty() || !inverse) return exports.axes;
        const auto [ofSource, ofTarget] = Axes();
        return std::string(AxisWord(ofTarget)) + "," + std::string(AxisWord(ofSource));
    }
};

/// An adjustment on its way from the points of a file to a fit.
class Work {
public:
    explicit Work(const AdjustOptions& options)
        : options_(options),
          limit_(options.limit.empty() ? kUsualLimit : *ParseNumber(options.limit, true)) {
        adjustment_.SetType(TypeNamed(options.type));
    }

    /// False, after it was reported why, when there is no fit.
    bool PrepareAndFit() {
        const Type wanted = TypeNamed(options_.type);
        if (!Load()) return false;
        if (options_.inverse) adjustment_.Swap();
        if (!ChooseType(adjustment_, wanted, options_.points) || !Exclude()) return false;
        if (adjustment_.FitType() != wanted) {
            PrintNote(Translated(Text::kTypeLowered,
                                 {TypeName(adjustment_.FitType(), ComponentTexts())}));
        }
        const FitOutcome outcome = Fit(adjustment_, options_.findings.WantedSolution());
        good_ &= outcome.Succeeded();
        if (!outcome.Computed() || !SigmasSuitTheType()) return false;
        findings_ = FindingsOf(adjustment_, outcome, options_.findings, sigmas_);
        PrintWarnings(findings_.warnings, options_.findings.statistics || options_.findings.advise);
        good_ &= !IsSevere(findings_.warnings);
        return true;
    }

    const Adjustment& Points() const { return adjustment_; }
    const Findings& Found() const { return findings_; }
    double Limit() const { return limit_; }
    /// The types to which exclusion has lowered the one asked for, step by step.
    const std::vector<Type>& Lowered() const { return lowered_; }
    /// What a file of the points or of their residuals gets.
    PointsToWrite ToWrite() const {
        const auto [sourceAxes, targetAxes] = options_.Axes();
        const bool ofSource = options_.inverse;  // what the file told of its destination
        const bool named = !options_.exports.targetCrs.empty();
        return {.points = adjustment_.Points(),
                .residuals = adjustment_.Residuals(),
                .sigmas = ofSource ? std::span<const Point>() : sigmas_,
                .crs = named      ? options_.exports.targetCrs
                       : ofSource ? std::string()
                                  : crs_,
                .sourceAxes = sourceAxes,
                .targetAxes = targetAxes};
    }
    /// Whether nothing was wrong with the points in use and their fit.
    bool IsGood() const { return good_; }

private:
    static constexpr double kUsualLimit = 0.2;

    /// Standard deviations that the file names are used unless the options have others.
    bool Load() {
        const FindingsOptions& findings = options_.findings;
        auto loaded = LoadPoints({.file = options_.points,
                                  .target = options_.target,
                                  .format = options_.format,
                                  .decimalComma = options_.decimalComma,
                                  .sigmaColumns = findings.HasSigmaColumns(),
                                  .axes = options_.AxesOfFile()});
        if (!loaded) return false;
        if (!options_.exports.axes.empty() && !loaded->onMaps && !options_.WritesMaps()) {
            PrintNote(Translated(Text::kAxesWithoutUse));
            return false;
        }
        adjustment_.Assign(loaded->points);
        crs_ = std::move(loaded->crs);
        if (!findings.sigma.empty() && !findings.HasSigmaColumns()) return true;
        sigmas_ = std::move(loaded->sigmas);
        if (findings.sigma.empty() && !sigmas_.empty())
            PrintNote(Translated(Text::kSigmasTaken, {options_.points}));
        return true;
    }

    /// Excludes every point that has one of the identifiers; false when one is unknown.
    bool Exclude() {
        const auto& identifiers = options_.exclude;
        const std::unordered_set<std::string_view> unwanted(identifiers.begin(), identifiers.end());
        std::unordered_set<std::string_view> known;
        std::vector<std::size_t> found;
        const auto points = adjustment_.Points();
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (!unwanted.contains(points[i].id)) continue;
            known.insert(points[i].id);
            if (points[i].used) found.push_back(i);
        }
        for (const std::string& id : identifiers) {
            if (known.contains(id)) continue;
            ShowMessage(Translated(Text::kUnknownIdentifier, {Excerpt(id)}), Icon::kExclamation);
            return false;
        }
        for (const std::size_t index : found) {
            if (!adjustment_.Toggle(index)) {
                ShowMessage(Translated(Text::kFewerThanTwoPoints), Icon::kExclamation);
                good_ = false;
            }
            while (const auto lower = adjustment_.LowerType()) lowered_.push_back(*lower);
        }
        return true;
    }

    /// False, after it was reported, when the standard deviations of a point differ although the
    /// coordinates share unknowns.
    bool SigmasSuitTheType() const {
        const auto differ = [](const Point& sigma) { return sigma.first != sigma.second; };
        const Type type = adjustment_.FitType();
        if (!SharesUnknowns(type) || std::ranges::none_of(sigmas_, differ)) return true;
        ShowMessage(Translated(Text::kTwoSigmas, {TypeName(type, ComponentTexts())}),
                    Icon::kExclamation);
        return false;
    }

    const AdjustOptions& options_;
    const double limit_;
    Adjustment adjustment_;
    std::vector<Point> sigmas_;  // of the file
    std::string crs_;            // likewise
    Findings findings_;
    std::vector<Type> lowered_;
    bool good_ = true;
};

bool SavePlot(const Work& work, const std::string& fileName) {
    const std::string svg = SvgOf(PageOf(work.Points(), work.Limit(), {}, GraphPage::kPictureWidth,
                                         GraphPage::kPictureHeight));
    return SaveBytes(fileName, svg);
}

/// A listing has the layout of a log; its numbers have three decimals.
bool SavePoints(const Work& work, const AdjustOptions& options) {
    if (options.SaveFormat() != PointFormat::kListing)
        return WritePointsTo(options.savePoints, work.ToWrite(), options.SaveFormat());
    const Adjustment& adjustment = work.Points();
    const auto excluded = adjustment.Points().size() - adjustment.UsedCount();
    if (excluded > 0)
        PrintNote(Translated(Text::kMarksLeftOut, {options.savePoints, std::to_string(excluded)}));
    return SaveText(options.savePoints,
                    ListControlPoints(adjustment.Points(), ComponentNumberStyle()) + "\r\n");
}

/// Exports the transformation of a good fit, unless --force is given.
bool ExportResult(
    const Work& work, const AdjustOptions& options,
    const std::function<bool(const std::string&, const std::function<bool()>&)>& save) {
    if (options.exports.wanted.empty()) return true;
    if (!work.IsGood() && !options.force) {
        PrintNote(Translated(Text::kNotExported));
        return false;
    }
    auto record = FittedRecord(work.Points().Points(), work.Points().Result());
    record.madeFrom = NameOfPath(PathOf(options.points).filename());
    return Export(std::move(record), options.exports, save);
}

/// Saves each file that was asked for; one that cannot be written does not keep the others from it.
/// False after any was reported. Only --save-points may replace the control points. Parameters are
/// saved and exported only of a good fit, unless --force is given: nothing in their file would tell
/// of the trouble.
bool SaveFiles(const Work& work, const AdjustOptions& options) {
    const auto style = ComponentNumberStyle();
    const auto save = [&options](const std::string& fileName, const std::function<bool()>& write) {
        if (fileName.empty()) return true;
        const auto isInput = [&fileName](const std::string& input) {
            std::error_code error;
            return std::filesystem::equivalent(PathOf(fileName), PathOf(input), error);
        };
        if ((&fileName != &options.savePoints && isInput(options.points)) ||
            isInput(options.target)) {
            ShowMessage(Translated(Text::kTakesPlaceOfInput), Icon::kExclamation);
            return false;
        }
        const SignalsWait wait;
        return write();
    };
    // Before the file of the points may be replaced, whose checksum the reports tell.
    std::vector<std::string> files{options.points};
    if (!options.target.empty()) files.push_back(options.target);
    bool saved = SaveReports({.adjustment = work.Points(),
                              .findings = work.Found(),
                              .solution = options.findings.WantedSolution(),
                              .limit = work.Limit(),
                              .files = std::move(files)},
                             options.report, save);
    saved &= save(options.log, [&] {
        return SaveText(options.log, LogText(work.Points(), ComponentTexts(), style));
    });
    saved &= save(options.savePoints, [&] { return SavePoints(work, options); });
    saved &= save(options.residualVectors, [&] {
        return WriteVectorsTo(options.residualVectors, work.ToWrite(),
                              ParseNumber(options.vectorScale, true));
    });
    saved &= save(options.saveParams, [&] {
        if (work.IsGood() || options.force)
            return SaveParameters(work.Points().Result(), options.saveParams);
        PrintNote(Translated(Text::kParametersNotSaved));
        return false;
    });
    saved &= save(options.plot, [&] { return SavePlot(work, options.plot); });
    return ExportResult(work, options, save) && saved;
}

/// On a terminal the lines of points beyond the limit are marked.
void PrintLog(const Work& work) {
    const bool colour = OutputTakesColour();
    const auto style = ComponentNumberStyle();
    const std::string mark = "  > " + FixedText(work.Limit(), 3, style);
    const auto residuals = work.Points().Residuals();
    ForEachLogLine(work.Points(), ComponentTexts(), style, [&](const LogLine& line) {
        const auto& [text, point] = line;
        const bool within = !point || residuals[*point].Length() <= work.Limit();
        if (within || !OutputIsTerminal()) {
            std::cout << text << '\n';
        } else {
            std::cout << (colour ? "\x1b[31m" : "") << text << mark << (colour ? "\x1b[0m" : "")
                      << '\n';
        }
    });
}

void PrintJson(const Work& work, bool fitted, const FindingsOptions& options) {
    const Adjustment& adjustment = work.Points();
    Json report = AdjustmentJson(adjustment, fitted);
    report["events"] = Json::array();
    for (const Type type : work.Lowered()) report["events"].push_back(NumberOf(type));
    if (fitted) AddFindings(report, adjustment, work.Found(), options);
    PrintAdjustmentJson(std::cout, report, adjustment);
}

/// Whether no option is given that another one would have to go with; otherwise a note says which.
bool HaveUseAll(const AdjustOptions& options) {
    const ExportOptions& exports = options.exports;
    const std::vector<NamedValue> ofPoints{{"--save-format", options.saveFormat}};
    const std::vector<NamedValue> ofVectors{{"--vector-scale", options.vectorScale}};
    const std::vector<NamedValue> ofExports{{"--source-crs", exports.sourceCrs}};
    const std::vector<NamedValue> ofMaps{{"--target-crs", exports.targetCrs}};
    const std::vector<NamedValue> ofSigmas{{"--a-priori", options.findings.isAPriori ? "yes" : ""}};
    return HaveUse(ofSigmas, "--sigma", !options.findings.sigma.empty()) &&
           HaveUse(ofPoints, "--save-points", !options.savePoints.empty()) &&
           HaveUse(ofVectors, "--residual-vectors", !options.residualVectors.empty()) &&
           HaveUse(ofExports, "--export", !exports.wanted.empty()) &&
           HaveUse(ofMaps, "--export", options.WritesMaps());
}

int RunAdjust(const AdjustOptions& options) {
    std::vector<NamedFile> written{{"--log", options.log},
                                   {"--save-points", options.savePoints},
                                   {"--save-params", options.saveParams},
                                   {"--residual-vectors", options.residualVectors},
                                   {"--plot", options.plot}};
    for (const std::string& name : options.report.files) written.push_back({"--report", name});
    for (const NamedFile& file : options.exports.Files()) written.push_back(file);
    if (!HaveUseAll(options) || !AreDistinct(written) ||
        !OutputSuffices(options.exports, options.json) ||
        !IsSensible({.target = options.target, .format = options.format})) {
        return kWrongUsage;
    }
    if (options.decimalComma) DecimalSeparator(',');
    Work work(options);
    const bool fitted = work.PrepareAndFit();
    const bool saved = fitted && SaveFiles(work, options);
    if (options.json) {
        PrintJson(work, fitted, options.findings);
    } else if (fitted && !options.exports.ToOutput()) {
        PrintLog(work);
        PrintFindings(work.Points(), work.Found(), options.findings);
    }
    return saved && work.IsGood() ? kDone : kReported;
}

}  // namespace

Run AddAdjust(CLI::App& command) {
    const auto options = std::make_shared<AdjustOptions>();
    command.add_option("POINTS", options->points, Translated(Text::kPointsArgument))->required();
    AddFileOption(command, "--target", options->target, Text::kTargetListOption);
    AddPointFormatOption(command, options->format);
    AddTypeOption(command, options->type);
    command.add_flag("--inverse", options->inverse, Translated(Text::kSwapOption));
    command.add_option("--exclude", options->exclude, Translated(Text::kExcludeOption))
        ->type_name("ID")
        ->allow_extra_args(false);
    command.add_option("--limit", options->limit, Translated(Text::kLimitOption))
        ->type_name("M")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text, true);
            return number && *number >= 0.0 ? ""
                                            : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    AddFileOption(command, "--log", options->log, Text::kLogOption);
    AddFileOption(command, "--save-points", options->savePoints, Text::kSavePointsOption);
    AddOutputFormatOption(command, "--save-format", options->saveFormat, Text::kSaveFormatOption);
    AddFileOption(command, "--residual-vectors", options->residualVectors,
                  Text::kResidualVectorsOption);
    command
        .add_option("--vector-scale", options->vectorScale, Translated(Text::kVectorScaleOption))
        ->type_name("N")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text, true);
            return number && *number > 0.0 ? ""
                                           : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    AddFileOption(command, "--save-params", options->saveParams, Text::kSaveParamsOption)
        ->check(CheckExtension);
    AddFileOption(command, "--plot", options->plot, Text::kPlotOption)
        ->check([](const std::string& name) {
            return HasExtension(name, "svg")
                       ? ""
                       : Translated(Text::kPictureExtension, {Excerpt(name), ".svg"});
        });
    AddFindingsOptions(command, options->findings);
    AddReportOptions(command, options->report);
    AddExportOptions(command, options->exports);
    command.add_flag("--force", options->force, Translated(Text::kForceOption));
    AddLanguageOption(command);
    command.add_flag("--json", options->json, Translated(Text::kJsonOption));
    command.add_flag("--decimal-comma", options->decimalComma,
                     Translated(Text::kDecimalCommaOption));
    return [options] {
        options->findings.reports = !options->report.files.empty();
        return RunAdjust(*options);
    };
}

}  // namespace kv_tr::cli
