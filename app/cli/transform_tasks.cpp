// Which files kv_tr transform takes as texts, which as data sets, and where their results go.
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>

#include "cli/hand_over.h"
#include "cli/program.h"
#include "cli/transform_layers.h"
#include "common/coordinate_lines.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/paths.h"

#ifdef KV_TR_GDAL
#include "kv_tr/gdal/vector_transform.h"
#include "kv_tr/published/message.h"
#endif

namespace kv_tr::cli {
namespace fs = std::filesystem;
namespace {

/// Endings of texts of points, which are no data sets unless a format is asked for.
constexpr std::array kTextEndings{"txt", "dat", "csv", "tsv", "lst", "pts", "xyz", "asc"};
/// Endings that only data sets have: what is to get such a name is no text.
constexpr std::array kDataSetEndings{"gpkg", "shp", "geojson", "fgb",    "gml", "kml", "kmz",
                                     "tab",  "mif", "dxf",     "sqlite", "gdb", "gpx"};

template <std::size_t count>
bool EndsInOneOf(const std::string& name, const std::array<const char*, count>& endings) {
    return std::ranges::any_of(endings,
                               [&](const char* ending) { return HasExtension(name, ending); });
}

bool IsFolder(const std::string& name) {
    std::error_code error;
    return fs::is_directory(PathOf(name), error);
}

bool EndsInSeparator(const std::string& name) {
    return name.ends_with('/') || name.ends_with(static_cast<char>(fs::path::preferred_separator));
}

/// Whether the first line of a file is that of a point.
bool BeginsWithPoint(const std::string& file) {
    std::array<char, 1024> line{};
    OpenToRead(PathOf(file)).getline(line.data(), line.size());
    const std::string_view text(line.data());
    app::CoordinateFields fields;
    return app::ReadCoordinates(text.substr(0, text.find('\r')), {}, fields) ==
           app::LineKind::kPoint;
}

/// Whether a file is a data set as far as its name, its first line and the options tell; nothing if
/// GDAL has to be asked.
std::optional<bool> IsDataSetByLooks(const std::string& input, const std::string& output,
                                     const LayerOptions& options) {
    if (input.starts_with("/vsi")) return true;
    std::error_code error;
    if (!fs::is_regular_file(PathOf(input), error) && !IsFolder(input)) return false;
    const bool isWanted = !options.format.empty() || EndsInOneOf(output, kDataSetEndings);
    if (isWanted && !IsFolder(input)) return true;
    if (EndsInOneOf(input, kTextEndings) || BeginsWithPoint(input)) return false;
    return std::nullopt;
}

#ifdef KV_TR_GDAL

/// What holds no places as a rule, and is not looked for in folders.
bool IsSpreadsheet(const std::string& format) {
    constexpr std::array<std::string_view, 5> kFormats{"XLSX", "XLS", "ODS", "CSV", "PDF"};
    return std::ranges::find(kFormats, format) != kFormats.end();
}

/// Whether a file belongs to one beside it that has the same name with another ending.
bool IsPartOfAnother(const fs::path& file) {
    constexpr std::array<std::array<const char*, 2>, 3> kParts{
        {{"dbf", "shp"}, {"shx", "shp"}, {"mid", "mif"}}};
    return std::ranges::any_of(kParts, [&](const auto& part) {
        if (!HasExtension(NameOfPath(file), part[0])) return false;
        std::string capitals = part[1];
        for (char& c : capitals) c = static_cast<char>(c - 'a' + 'A');
        return fs::exists(fs::path(file).replace_extension(part[1])) ||
               fs::exists(fs::path(file).replace_extension(capitals));
    });
}

bool IsDataSet(const std::string& input, const std::string& output, const LayerOptions& options) {
    if (const auto known = IsDataSetByLooks(input, output, options)) return *known;
    const std::string format = gdal::LayerFormatOf(input);
    // A folder of Shapefiles is a folder; one with an ending, such as .gdb, is a data set.
    return !format.empty() && format != "CSV" &&
           (!IsFolder(input) || fs::path(input).has_extension());
}

/// The data sets in a folder and the folders below, in the order of their names; nothing of the
/// folder that results go to.
std::vector<fs::path> DataSetsIn(const std::string& folder, const std::string& output) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const fs::path& path = entry->path();
        std::error_code ignored;
        const bool isFolder = entry->is_directory(ignored);
        if (NameOfPath(path.filename()).starts_with('.') ||
            fs::equivalent(path, PathOf(output), ignored)) {
            if (isFolder) entry.disable_recursion_pending();
        } else if ((!isFolder || path.has_extension()) && IsDataSet(NameOfPath(path), "", {}) &&
                   !IsPartOfAnother(path) && !IsSpreadsheet(gdal::LayerFormatOf(path))) {
            found.push_back(path);
            if (isFolder) entry.disable_recursion_pending();
        }
    }
    if (error) throw fs::filesystem_error("", folder, error);
    std::ranges::sort(found);
    return found;
}

/// The name of a data set in the format of the result; nothing after a note why there is none.
std::optional<fs::path> NameOfResult(const fs::path& source, const LayerOptions& options) {
    try {
        return gdal::NameInFormat(source, options.format);
    } catch (const gdal::DataSetError& error) {
        PrintNote(error.In(ComponentTexts()));
        return std::nullopt;
    }
}

#else

bool IsDataSet(const std::string& input, const std::string& output, const LayerOptions& options) {
    if (IsDataSetByLooks(input, output, options) == false) return false;
    HandOver();
    return EndsInOneOf(input, kDataSetEndings) || !options.format.empty();
}

std::vector<fs::path> DataSetsIn(const std::string& folder, const std::string&) {
    return {PathOf(folder)};
}

std::optional<fs::path> NameOfResult(const fs::path& source, const LayerOptions&) {
    return source.filename();
}

#endif

bool Refuse(Text text, std::initializer_list<std::string> values) {
    PrintNote(Translated(text, values));
    return false;
}

TaskKind KindOf(const std::string& input, const std::string& output, bool isDataSet,
                const LayerOptions& options) {
    if (!isDataSet) return TaskKind::kText;
    const bool isDrawing =
        HasExtension(input, "dxf") && HasExtension(output, "dxf") && options.format.empty();
    return isDrawing ? TaskKind::kDrawing : TaskKind::kDataSet;
}

/// Adds a file to the tasks; its result goes to a folder.
bool AddTask(std::vector<TransformTask>& tasks, const fs::path& input, const fs::path& folder,
             bool isDataSet, const LayerOptions& options) {
    const auto name = isDataSet ? NameOfResult(input, options) : input.filename();
    if (name) {
        const std::string result = NameOfPath(folder / *name);
        const TaskKind kind = KindOf(NameOfPath(input), result, isDataSet, options);
        tasks.push_back({NameOfPath(input), result, kind, true});
    }
    return name.has_value();
}

/// Whether no two results go to one place.
bool AreApart(const std::vector<TransformTask>& tasks) {
    std::map<std::string, std::string> inputs;
    for (const TransformTask& task : tasks) {
        const std::string place = NameOfPath(PathOf(task.output).lexically_normal());
        const auto [first, isNew] = inputs.emplace(place, task.input);
        if (!isNew) {
            return Refuse(Text::kSameTarget, {Excerpt(first->second), Excerpt(task.input), place});
        }
    }
    return true;
}

/// Adds the data sets of a folder, each to the same place below the output.
bool AddFolder(std::vector<TransformTask>& tasks, const std::string& input,
               const std::string& output, const LayerOptions& options) {
    const auto found = DataSetsIn(input, output);
    if (found.empty()) return Refuse(Text::kNoDataSetInside, {Excerpt(input)});
    return std::ranges::all_of(found, [&](const fs::path& file) {
        const fs::path below = file.lexically_relative(PathOf(input)).parent_path();
        if (!AddTask(tasks, file, PathOf(output) / below, true, options)) return false;
        tasks.back().fromFolder = true;
        return true;
    });
}

}  // namespace

bool PlanTasks(std::vector<TransformTask>& tasks, const std::vector<std::string>& inputs,
               const std::string& output, const LayerOptions& options) {
    const bool single = inputs.size() == 1;
    const bool isGeodatabase = HasExtension(output, "gdb");  // a data set that is a folder
    const bool toFolder = (IsFolder(output) && !isGeodatabase) || EndsInSeparator(output);
    for (const std::string& input : inputs) {
        const bool isDataSet = input != "-" && IsDataSet(input, output, options);
        const bool isFolder = !isDataSet && IsFolder(input);
        if (single && !isDataSet && !isFolder) {
            tasks.push_back({input, output});
            return true;
        }
        if (output.empty()) return Refuse(Text::kOutputNeeded, {Excerpt(input)});
        if (single && isDataSet && !toFolder) {
            tasks.push_back({input, output, KindOf(input, output, true, options)});
            return true;
        }
        if (!toFolder && fs::exists(PathOf(output))) {
            return Refuse(Text::kOutputMustBeFolder, {Excerpt(output)});
        }
        const bool added = isFolder ? AddFolder(tasks, input, output, options)
                                    : AddTask(tasks, input, output, isDataSet, options);
        if (!added) return false;
    }
    return AreApart(tasks);
}

}  // namespace kv_tr::cli
