// Transformations for other programs, as the options of adjust and params ask for them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/file_options.h"
#include "kv_tr/interchange/transformation_record.h"

namespace kv_tr::cli {

/// The axes of both systems: a word for each, or one for both.
std::optional<std::pair<AxisMapping, AxisMapping>> AxesOfWords(const std::string& words);
/// A check for such words; it yields the complaint, or nothing.
std::string CheckAxes(const std::string& words);
/// Adds the option --axes with its check.
void AddAxesOption(CLI::App& command, std::string& words);

struct ExportOptions {
    std::vector<std::string> wanted;  // "proj=map.txt", or "proj" for the standard output
    std::string axes;                 // "ne", "es,en"; otherwise those of the record
    std::string sourceCrs;
    std::string targetCrs;

    /// Whether a format takes the place of what the command prints.
    bool ToOutput() const;
    /// The files that are written, each under the option with its format.
    std::vector<NamedFile> Files() const;
};

void AddExportOptions(CLI::App& command, ExportOptions& options);

/// Whether at most one format goes to the standard output, and none where something else does that;
/// otherwise a note says so.
bool OutputSuffices(const ExportOptions& options, bool outputIsTaken);

/// An option and its value, empty where it was not given.
struct NamedValue {
    std::string option;
    std::string value;
};

/// Whether options that serve a purpose, which is itself an option, are only given with it;
/// otherwise a note names one that has no effect.
bool HaveUse(const std::vector<NamedValue>& options, const std::string& purpose, bool hasPurpose);

/// Writes a record in each of the formats, files with `save`, which takes a file name and what
/// writes that file. False after it was reported that a format cannot hold the record or that a
/// file cannot be written.
bool Export(TransformationRecord record, const ExportOptions& options,
            const std::function<bool(const std::string&, const std::function<bool()>&)>& save);

}  // namespace kv_tr::cli
