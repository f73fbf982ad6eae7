// How a file, a text or two lists of points are understood, before anything is taken.
#include "workbench/open_preview.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "common/point_reading.h"
#include "kv_tr/files/open_text.h"
#include "kv_tr/interchange/field_table.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/sha256.h"

namespace kv_tr::workbench {
namespace {

std::string SignText(char separator) {
    switch (separator) {
        case '\t': return Translated(Text::kTabSign);
        case ' ': return Translated(Text::kBlankSign);
        default: return {separator};
    }
}

std::string NameOfFile(const std::string& path) { return NameOfPath(PathOf(path).filename()); }

}  // namespace

std::string FormatTitle(PointFormat format) {
    switch (format) {
        case PointFormat::kListing: return Said(Phrase::kListingFormat);
        case PointFormat::kCsv: return Said(Phrase::kCsvFormat);
        case PointFormat::kQgis: return Said(Phrase::kQgisFormat);
        case PointFormat::kGdal: return Said(Phrase::kGdalFormat);
        case PointFormat::kVrt: return Said(Phrase::kVrtFormat);
        case PointFormat::kEsriLink: return Said(Phrase::kEsriFormat);
        case PointFormat::kCadWorld: return Said(Phrase::kCadFormat);
        case PointFormat::kGrass: return Said(Phrase::kGrassFormat);
        case PointFormat::kGeoJson: return Said(Phrase::kGeoJsonFormat);
    }
    return {};
}

OpenPreview::Input OpenPreview::Loaded(const std::string& fileName) {
    Input input{.name = fileName, .bytes = {}, .isFile = true};
    auto stream = OpenText(fileName);
    if (!stream) {
        input.trouble = Problem::Kind::kNotOpened;
    } else if (!TakeBytes(*stream, input.bytes)) {
        input.trouble = Problem::Kind::kUnreadable;
    }
    return input;
}

void OpenPreview::TakeFile(const std::string& fileName) { Start({Loaded(fileName)}); }

void OpenPreview::TakeText(std::string text) {
    Start({{.name = Said(Phrase::kClipboard), .bytes = std::move(text)}});
}

void OpenPreview::TakeLists(const std::string& source, const std::string& destination) {
    Start({Loaded(source), Loaded(destination)});
}

void OpenPreview::SwapLists() {
    std::swap(files_.front(), files_.back());
    Read();
}

void OpenPreview::Start(std::vector<Input> inputs) {
    files_ = std::move(inputs);
    Choose({.codePage = FilesCodePage()});
}

void OpenPreview::Choose(PointReadingOptions choices) {
    choices_ = std::move(choices);
    Read();
}

void OpenPreview::Read() {
    read_ = {};
    joined_ = {};
    for (Input& input : files_) {
        input.problems.clear();
        if (input.trouble) input.problems.push_back({.kind = *input.trouble});
    }
    if (!Complete()) return;
    if (IsOfLists()) return ReadLists();
    Input& input = files_.front();
    read_ = ReadPoints(input.bytes, choices_);
    input.layout = read_.layout;
    input.problems = read_.problems;
}

void OpenPreview::ReadLists() {
    PointReadingOptions options = choices_;
    options.sigmas = false;  // of the source system, which nobody needs
    PointList source = ReadPointList(files_[0].bytes, options);
    PointList destination = ReadPointList(files_[1].bytes, choices_);
    files_[0].layout = source.layout;
    files_[0].problems = source.problems;
    files_[1].layout = destination.layout;
    files_[1].problems = destination.problems;
    if (!Complete()) return;
    joined_ = JoinByIdentifier(source, destination);
    read_.points = joined_.points;
    read_.sigmas = joined_.sigmas;
}

bool OpenPreview::Complete() const {
    return std::ranges::all_of(files_, [](const Input& one) { return one.problems.empty(); });
}

const PointLayout& OpenPreview::Layout(std::size_t list) const {
    static const PointLayout kNone;
    return list < files_.size() ? files_[list].layout : kNone;
}

std::vector<std::pair<std::string, std::string>> OpenPreview::Understood() const {
    std::vector<std::pair<std::string, std::string>> lines;
    const auto add = [&lines](Text name, std::string value) {
        lines.emplace_back(Translated(name), std::move(value));
    };
    if (!IsOfLists()) add(Text::kFormatHeading, FormatTitle(read_.format));
    for (const Input& input : files_) {
        const PointLayout& layout = input.layout;
        if (IsOfLists()) add(Text::kReportFile, NameOfFile(input.name));
        add(Text::kLettersHeading, layout.encoding);
        if (layout.separator != '\0') add(Text::kSeparatorHeading, SignText(layout.separator));
        add(Text::kDecimalSignHeading, {layout.decimalSign});
    }
    add(Text::kPointCountHeading, std::to_string(Count()));
    if (!read_.crs.empty()) add(Text::kSystemHeading, read_.crs);
    return lines;
}

std::size_t OpenPreview::UsedCount() const {
    return static_cast<std::size_t>(std::ranges::count(read_.points, true, &ControlPoint::used));
}

std::vector<std::string> OpenPreview::ColumnWords() {
    return {"-",          "id",  "src_first",   "src_second",  "dst_first",
            "dst_second", "use", "sigma_first", "sigma_second"};
}

std::string OpenPreview::ColumnTitle(const std::string& word) {
    constexpr std::pair<const char*, const char*> kFixed[] = {
        {"src_first", "Y1"},   {"src_second", "X1"},   {"dst_first", "Y2"}, {"dst_second", "X2"},
        {"sigma_first", "σY"}, {"sigma_second", "σX"}, {"first", "Y"},      {"second", "X"}};
    for (const auto& [one, title] : kFixed) {
        if (word == one) return title;
    }
    if (word == "id") return Said(Phrase::kIdentifier);
    return Said(word == "use" ? Phrase::kUseColumn : Phrase::kColumnNotRead);
}

OpenPreview::Table OpenPreview::FirstRows(std::size_t most) const {
    Table table;
    const PointLayout& layout = Layout();
    const bool hasCells = layout.separator != '\0' && !IsOfLists();
    if (hasCells) {
        for (const std::string& column : layout.columns)
            table.headings.push_back(ColumnTitle(column));
        std::string encoding;
        const std::string text = DecodedText(files_.front().bytes, choices_.codePage, encoding);
        for (const Row& row : SplitRows(text, layout.separator, most + 1)) {
            std::vector<std::string> cells;
            for (const Field& field : row.fields) cells.push_back(field.text);
            table.rows.push_back(std::move(cells));
        }
        if (layout.header && !table.rows.empty()) {
            table.names = std::move(table.rows.front());
            table.rows.erase(table.rows.begin());
        }
        if (table.rows.size() > most) table.rows.resize(most);
        return table;
    }
    for (const char* word : {"id", "src_first", "src_second", "dst_first", "dst_second"})
        table.headings.push_back(ColumnTitle(word));
    for (const ControlPoint& point : std::span(read_.points).first(std::min(most, Count()))) {
        table.rows.push_back(
            {point.id, ShortestText(point.source.first), ShortestText(point.source.second),
             ShortestText(point.destination.first), ShortestText(point.destination.second)});
    }
    return table;
}

std::vector<std::string> OpenPreview::Problems() const {
    std::vector<std::string> sentences;
    for (const Input& input : files_) {
        for (const Problem& problem : input.problems) {
            const bool isOpen = problem.kind != Problem::Kind::kNotOpened;
            const std::string name = NameOfFile(input.name);
            sentences.push_back(isOpen ? app::FieldComplaint(problem, name)
                                       : Said(Phrase::kCannotOpen, {input.name}));
        }
    }
    if (sentences.empty() && read_.points.empty() && !files_.empty())
        sentences.push_back(Said(IsOfLists() ? Phrase::kNothingPaired : Phrase::kNoPoints));
    return sentences;
}

std::vector<std::string> OpenPreview::Notes() const {
    std::vector<std::string> notes;
    if (files_.empty()) return notes;
    const auto name = [this](std::size_t i) { return NameOfFile(files_[i].name); };
    const auto add = [&notes](Text text, const std::string& file, const auto& ids) {
        if (!ids.empty()) notes.push_back(app::IdentifiersNote(text, file, ids));
    };
    if (IsOfLists()) {
        add(Text::kOnlyInList, name(0), joined_.onlyInSource);
        add(Text::kOnlyInList, name(1), joined_.onlyInDestination);
        add(Text::kRepeatedIdentifiers, name(0) + ", " + name(1), joined_.repeated);
    }
    if (read_.skipped > 0) {
        notes.push_back(
            Translated(Text::kFeaturesSkipped, {name(0), std::to_string(read_.skipped)}));
    }
    if (!read_.sigmas.empty())
        notes.push_back(Translated(Text::kSigmasTaken, {name(files_.size() - 1)}));
    return notes;
}

Content OpenPreview::Take() const {
    Content content;
    for (std::size_t i = 0; i < Count(); ++i) {
        content.pairs.push_back({.point = read_.points[i]});
        if (!read_.sigmas.empty()) content.pairs.back().sigma = read_.sigmas[i];
    }
    Settings& settings = content.settings;
    settings.type = FirstTypeFor(read_.points);
    settings.source.axes = choices_.sourceAxes;
    settings.destination.axes = choices_.targetAxes;
    settings.destination.crs = read_.crs;
    for (const Input& input : files_) {
        if (input.isFile) settings.origins.push_back({NameOfFile(input.name), Sha256(input.bytes)});
    }
    if (IsOfLists()) {
        const auto title = [this](std::size_t i) {
            return NameOfPath(PathOf(files_[i].name).stem());
        };
        settings.source.name = title(0);
        settings.destination.name = title(1);
    }
    return content;
}

StepText OpenPreview::Source() const {
    std::string names;
    for (const Input& input : files_) names += (names.empty() ? "" : ", ") + NameOfFile(input.name);
    return {.phrase = Phrase::kStepOpened, .values = {names, std::to_string(Count())}};
}

}  // namespace kv_tr::workbench
