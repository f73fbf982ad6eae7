// Which files are transformed, how they are read, and where the results go; without a toolkit.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/coordinate_lines.h"
#include "workbench/transform_job.h"

namespace kv_tr::workbench {

/// What is applied to the points of files.
struct AppliedTransformation {
    Transformation transformation{};
    /// Of the control points in use. Points outside the area that they span are counted; none
    /// where there are no control points.
    std::vector<Point> sources{};
    std::vector<Point> destinations{};
    AxisMapping sourceAxes = AxisMapping::kEn;  ///< of drawings
    AxisMapping destinationAxes = AxisMapping::kEn;
};

/// The files of one transformation, each with the name of its result.
class TransformFiles {
public:
    explicit TransformFiles(AppliedTransformation applied);

    /// A file that is there already is not added again. The first one decides how all are read:
    /// header lines and decimal commas are found out.
    void Add(const std::vector<std::string>& fileNames);
    /// Takes the text of the clipboard in, in place of an earlier one.
    void AddText(std::string text);
    void Remove(std::size_t index);
    std::size_t Count() const { return inputs_.size(); }
    /// The name without its folder.
    std::string NameOf(std::size_t index) const;
    const std::string& InputOf(std::size_t index) const { return inputs_[index].name; }

    const app::CoordinateOptions& Options() const { return options_; }
    void Options(const app::CoordinateOptions& options) { options_ = options; }
    bool CanInvert() const { return inverse_.has_value(); }
    bool Inverse() const { return isInverse_; }
    void Inverse(bool inverse) { isInverse_ = inverse && CanInvert(); }

    /// Where the results go; empty for the folder of each file.
    const std::string& Folder() const { return folder_; }
    void Folder(const std::string& folder) { folder_ = folder; }
    /// What the results are called: "*" stands for the name of the file without its ending, which
    /// stays.
    const std::string& Pattern() const { return pattern_; }
    void Pattern(const std::string& pattern) { pattern_ = pattern; }
    /// Empty for a text, whose result goes back to the clipboard.
    std::string ResultOf(std::size_t index) const;

    /// What is in the way of transforming, in words; nothing can be started then.
    std::vector<std::string> Obstacles() const;
    /// The results that would take the place of files: a question to the user.
    std::vector<std::string> Existing() const;

    struct PreviewLine {
        std::string before;
        std::string after;  ///< empty for a line that cannot be transformed
        bool isHeader = false;
    };
    /// The first lines of an input, and what becomes of them; nothing for drawings and for what
    /// cannot be read.
    std::vector<PreviewLine> Preview(std::size_t index, std::size_t most) const;
    /// How many fields the widest of the first lines has.
    std::size_t FieldCount(std::size_t index) const;

    /// All that is needed to do it. Existing results are replaced only when the user said so.
    TransformPlan Plan(bool mayReplace) const;

private:
    struct Input {
        std::string name;
        std::optional<std::string> text{};
    };
    std::vector<std::string> FirstLines(const Input& input, std::size_t most) const;
    void GuessOptions(const Input& input);
    PointMap Map() const;
    app::CoordinateOptions OptionsWithHull() const;

    AppliedTransformation applied_;
    std::optional<ExactInverse> inverse_;
    std::vector<Input> inputs_;
    app::CoordinateOptions options_;
    bool isInverse_ = false;
    std::string folder_;
    std::string pattern_ = "*_tr";
};

}  // namespace kv_tr::workbench
