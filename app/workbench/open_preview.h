// How a file, a text or two lists of points are understood, before anything is taken.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/interchange/point_lists.h"
#include "workbench/history.h"

namespace kv_tr::workbench {

/// Reads points in any format, shows how, and reads them again when the user chooses otherwise.
class OpenPreview {
public:
    /// Each takes the place of what was there, with the choices of the program. A file that cannot
    /// be read is a problem.
    void TakeFile(const std::string& fileName);
    void TakeText(std::string text);
    /// Two lists, which are paired by identifier.
    void TakeLists(const std::string& source, const std::string& destination);

    /// Makes the destination of two lists the source.
    void SwapLists();

    bool IsOfLists() const { return files_.size() == 2; }
    bool IsOfText() const { return files_.size() == 1 && !files_.front().isFile; }
    /// What the user has chosen; what is not chosen is found out.
    const PointReadingOptions& Choices() const { return choices_; }
    void Choose(PointReadingOptions choices);

    // How it is understood. Lists have the layout of each, 0 and 1.

    PointFormat Format() const { return read_.format; }
    const PointLayout& Layout(std::size_t list = 0) const;
    /// One name and value a line: format, letters, separator, decimal sign, number of points,
    /// system.
    std::vector<std::pair<std::string, std::string>> Understood() const;
    std::size_t Count() const { return read_.points.size(); }
    std::size_t UsedCount() const;

    struct Table {
        std::vector<std::string> headings;
        std::vector<std::vector<std::string>> rows{};
        std::vector<std::string> names{};  ///< of the columns, where the first line has them
    };
    /// The first rows: of columns the cells as the file has them, otherwise the points.
    Table FirstRows(std::size_t most) const;
    /// The words that columns may be chosen from, and what users call them.
    static std::vector<std::string> ColumnWords();
    static std::string ColumnTitle(const std::string& word);

    /// What is wrong, with the line and the column; nothing can be taken then.
    std::vector<std::string> Problems() const;
    /// What the user should know: points without a partner, identifiers that are there twice,
    /// features that were skipped, standard deviations that were found.
    std::vector<std::string> Notes() const;
    bool CanTake() const { return Complete() && !read_.points.empty(); }

    /// The project that the points make, and where it is from. Call it when CanTake.
    Content Take() const;
    StepText Source() const;

private:
    struct Input {
        std::string name;  // of the file; of a text what users call that
        std::string bytes;
        bool isFile = false;
        std::optional<Problem::Kind> trouble{};
        PointLayout layout{};
        std::vector<Problem> problems{};
    };
    static Input Loaded(const std::string& fileName);
    void Start(std::vector<Input> inputs);
    bool Complete() const;
    void Read();
    void ReadLists();

    std::vector<Input> files_;
    PointReadingOptions choices_;
    PointFile read_;
    JoinedLists joined_;
};

/// What users call a format of points.
std::string FormatTitle(PointFormat format);

}  // namespace kv_tr::workbench
