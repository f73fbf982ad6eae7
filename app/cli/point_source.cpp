// Control points from a file of any format, or from two lists.
#include "cli/point_source.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/export.h"
#include "cli/program.h"
#include "common/point_reading.h"
#include "kv_tr/interchange/point_lists.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

PointReadingOptions OptionsOf(const PointSource& source) {
    const auto axes = AxesOfWords(source.axes).value_or(std::pair<AxisMapping, AxisMapping>{});
    return {.format = PointFormatNamed(source.format),
            .codePage = FilesCodePage(),
            .comma = source.decimalComma ? Comma::kDecimalSign : Comma::kSuspect,
            .sigmas = source.sigmaColumns,
            .sourceAxes = axes.first,
            .targetAxes = axes.second};
}

std::nullopt_t Complain(const std::string& text) {
    ShowMessage(text, Icon::kExclamation);
    return std::nullopt;
}

/// Tells all problems of a file.
std::nullopt_t ReportAll(const std::vector<Problem>& problems, const std::string& fileName) {
    if (problems.front().kind == Problem::Kind::kNotOpened) {
        ReportOpenFailure(fileName);
        return std::nullopt;
    }
    std::string text = Translated(Text::kBadFormat);
    for (const Problem& problem : problems) text += "\r\n" + app::FieldComplaint(problem, fileName);
    return Complain(text);
}

/// Tells the first problem of a listing.
std::nullopt_t ReportFirst(const Problem& problem, const std::string& fileName) {
    if (problem.kind == Problem::Kind::kNotOpened) {
        ReportOpenFailure(fileName);
    } else if (problem.kind == Problem::Kind::kDecimalCommas) {
        Complain(Translated(Text::kPointsHaveDecimalCommas,
                            {fileName, std::to_string(problem.line), Excerpt(problem.text)}));
        PrintNote(Translated(Text::kCommasMayBeDecimal));
    } else {
        Complain(Translated(Text::kBadFormat) + "\r\n" + app::Complaint(problem, fileName));
    }
    return std::nullopt;
}

/// Notes identifiers, if there are any.
void NoteIdentifiers(Text text, const std::string& fileName, const std::vector<std::string>& ids) {
    if (!ids.empty()) PrintNote(app::IdentifiersNote(text, fileName, ids));
}

std::optional<LoadedPoints> LoadFile(const PointSource& source, bool allProblems) {
    PointFile file = ReadPointsOfFile(source.file, OptionsOf(source));
    if (!file.Complete()) {
        const Problem& first = file.problems.front();
        const bool oneLine = file.format == PointFormat::kListing &&
                             (!allProblems || first.kind == Problem::Kind::kDecimalCommas);
        return oneLine ? ReportFirst(first, source.file) : ReportAll(file.problems, source.file);
    }
    if (file.skipped > 0) {
        PrintNote(Translated(Text::kFeaturesSkipped, {source.file, std::to_string(file.skipped)}));
    }
    if (source.sigmaColumns && file.sigmas.size() != file.points.size())
        return Complain(Translated(Text::kNoSigmaColumns, {source.file}));
    return LoadedPoints{
        .points = std::move(file.points),
        .sigmas = std::move(file.sigmas),
        .crs = std::move(file.crs),
        .onMaps = IsOnMaps(file.format),
        .files = {{source.file, std::string(WordOf(file.format)), std::move(file.layout)}}};
}

std::optional<LoadedPoints> LoadLists(const PointSource& source) {
    auto options = OptionsOf(source);
    options.sigmas = false;  // of the source system, which nobody needs
    const PointList from = ReadPointListOfFile(source.file, options);
    if (!from.Complete()) return ReportAll(from.problems, source.file);
    options.sigmas = source.sigmaColumns;
    const PointList to = ReadPointListOfFile(source.target, options);
    if (!to.Complete()) return ReportAll(to.problems, source.target);
    auto joined = JoinByIdentifier(from, to);
    NoteIdentifiers(Text::kOnlyInList, source.file, joined.onlyInSource);
    NoteIdentifiers(Text::kOnlyInList, source.target, joined.onlyInDestination);
    NoteIdentifiers(Text::kRepeatedIdentifiers, source.file + ", " + source.target,
                    joined.repeated);
    constexpr const char* kWord = "list";
    return LoadedPoints{
        .points = std::move(joined.points),
        .sigmas = std::move(joined.sigmas),
        .files = {{source.file, kWord, from.layout}, {source.target, kWord, to.layout}}};
}

}  // namespace

std::string PointFormatWords() {
    std::string words;
    for (const PointFormat format : kPointFormats)
        words += (words.empty() ? "" : ", ") + std::string(WordOf(format));
    return words;
}

void AddPointFormatOption(CLI::App& command, std::string& word) {
    command
        .add_option("--format", word,
                    Translated(Text::kPointFormatOption) + ": " + PointFormatWords())
        ->type_name("FORMAT")
        ->check(CheckWord(PointFormatWords()));
}

std::vector<std::string> IdentifiersIn(const PointSource& source) {
    const auto options = OptionsOf(source);
    const auto points = source.target.empty()
                            ? ReadPointsOfFile(source.file, options).points
                            : JoinByIdentifier(ReadPointListOfFile(source.file, options),
                                               ReadPointListOfFile(source.target, options))
                                  .points;
    std::vector<std::string> identifiers;
    identifiers.reserve(points.size());
    for (const ControlPoint& point : points) identifiers.push_back(point.id);
    return identifiers;
}

bool IsSensible(const PointSource& source) {
    if (source.target.empty() || source.format.empty()) return true;
    PrintNote(Translated(Text::kListsHaveNoFormat));
    return false;
}

std::optional<LoadedPoints> LoadPoints(const PointSource& source, bool allProblems) {
    return source.target.empty() ? LoadFile(source, allProblems) : LoadLists(source);
}

bool LoadPoints(Adjustment& adjustment, const PointSource& source) {
    const auto loaded = LoadPoints(source);
    if (loaded) adjustment.Assign(loaded->points);
    return loaded.has_value();
}

}  // namespace kv_tr::cli
