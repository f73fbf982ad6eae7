// Transformations for other programs, as the options of adjust and params ask for them.
#include "cli/export.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/program.h"
#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::cli {
namespace {

std::string WordOf(const std::string& wanted) { return wanted.substr(0, wanted.find('=')); }

/// Empty for the standard output.
std::string FileOf(const std::string& wanted) {
    const auto equals = wanted.find('=');
    return equals == wanted.npos ? "" : wanted.substr(equals + 1);
}

std::string CheckFormat(const std::string& wanted) {
    if (!FormatOfWord(WordOf(wanted)) || wanted.ends_with('='))
        return Translated(Text::kUnknownValue, {Excerpt(wanted), FormatWords()});
    return {};
}

bool Write(const std::string& fileName, const std::string& text) {
    ReplacingFile file(fileName);
    if (!file.IsOpen()) {
        ReportOpenFailure(fileName);
        return false;
    }
    file.Write(text);
    if (file.Commit()) return true;
    ShowMessage(WriteFailure(fileName).what(), Icon::kExclamation);
    return false;
}

}  // namespace

std::optional<std::pair<AxisMapping, AxisMapping>> AxesOfWords(const std::string& words) {
    const auto comma = words.find(',');
    const auto source = AxesNamed(words.substr(0, comma));
    const auto target = comma == words.npos ? source : AxesNamed(words.substr(comma + 1));
    if (!source || !target) return std::nullopt;
    return std::pair(*source, *target);
}

std::string CheckAxes(const std::string& words) {
    if (AxesOfWords(words)) return {};
    return Translated(Text::kUnknownValue, {Excerpt(words), AxisWords()});
}

bool ExportOptions::ToOutput() const {
    return std::ranges::any_of(wanted, [](const auto& one) { return FileOf(one).empty(); });
}

std::vector<NamedFile> ExportOptions::Files() const {
    std::vector<NamedFile> files;
    for (const std::string& one : wanted) files.push_back({"--export " + WordOf(one), FileOf(one)});
    return files;
}

void AddAxesOption(CLI::App& command, std::string& words) {
    command.add_option("--axes", words, Translated(Text::kAxesOption, {AxisWords()}))
        ->type_name("AXES")
        ->check(WithWords(AxisWords(), CheckAxes));
}

void AddExportOptions(CLI::App& command, ExportOptions& options) {
    command
        .add_option("--export", options.wanted, Translated(Text::kExportOption, {FormatWords()}))
        ->type_name("FORMAT[=FILE]")
        ->allow_extra_args(false)
        ->check(WithWords(FormatWords(), CheckFormat));
    AddAxesOption(command, options.axes);
    command.add_option("--source-crs", options.sourceCrs, Translated(Text::kSourceCrsOption))
        ->type_name("CRS");
    command.add_option("--target-crs", options.targetCrs, Translated(Text::kTargetCrsOption))
        ->type_name("CRS");
}

bool OutputSuffices(const ExportOptions& options, bool outputIsTaken) {
    const auto toOutput = std::ranges::count_if(
        options.wanted, [](const std::string& wanted) { return FileOf(wanted).empty(); });
    if (toOutput + (outputIsTaken ? 1 : 0) <= 1 || toOutput == 0) return true;
    PrintNote(Translated(Text::kOneExportToOutput));
    return false;
}

bool HaveUse(const std::vector<NamedValue>& options, const std::string& purpose, bool hasPurpose) {
    for (const auto& [name, value] : options) {
        if (value.empty() || hasPurpose) continue;
        PrintNote(Translated(Text::kOptionNeeds, {name, purpose}));
        return false;
    }
    return true;
}

bool Export(TransformationRecord record, const ExportOptions& options,
            const std::function<bool(const std::string&, const std::function<bool()>&)>& save) {
    if (const auto axes = AxesOfWords(options.axes))
        std::tie(record.sourceAxes, record.targetAxes) = *axes;
    if (!options.sourceCrs.empty()) record.sourceCrs = options.sourceCrs;
    if (!options.targetCrs.empty()) record.targetCrs = options.targetCrs;
    bool good = true;
    for (const std::string& wanted : options.wanted) {
        const auto format = *FormatOfWord(WordOf(wanted));
        const auto exported = ExportTransformation(record, format, ComponentNumberStyle());
        const std::string fileName = FileOf(wanted);
        if (const auto* refusal = std::get_if<Refusal>(&exported)) {
            ShowMessage(RefusalText(*refusal, record.transformation, format, ComponentTexts()),
                        Icon::kExclamation);
            good = false;
        } else if (fileName.empty()) {
            std::cout << std::get<std::string>(exported);
        } else {
            good &=
                save(fileName, [&] { return Write(fileName, std::get<std::string>(exported)); });
        }
    }
    return good;
}

}  // namespace kv_tr::cli
