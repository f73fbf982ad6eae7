// Transforming a coordinate file, without the window.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/coordinate_file.h"
#include "kv_tr/forms/form.h"
#include "kv_tr/published/records.h"

namespace kv_tr::desktop {

/// Transforms the coordinates of one file into another that is complete or not there.
class TransformForm : public Form {
public:
    explicit TransformForm(const TR_PRM& record);

    const app::CoordinateOptions& Options() const { return options_; }
    void Options(const app::CoordinateOptions& options);
    const std::string& Output() const { return output_; }
    void Output(const std::string& fileName);
    const std::string& Input() const { return input_; }
    /// Also suggests a result file beside it.
    void Input(const std::string& fileName);
    void BrowseInput();
    void BrowseOutput();

    /// The first lines of the coordinate file, and what becomes of each; a bad line has no image.
    struct PreviewLine {
        std::string source;
        std::string image;
    };
    std::vector<PreviewLine> Preview() const;

    /// Is told how much of the file is done, 0 to 1; false cancels the work.
    using Progress = std::function<bool(double done)>;
    /// Asks before it replaces a file, transforms, and says what came of it; true when the result
    /// file was written.
    bool Run(const Progress& progress) const;

private:
    bool MayWrite() const;
    std::optional<app::CoordinateResult> Write(const Progress& progress) const;

    TR_PRM record_;
    app::CoordinateOptions options_;
    std::string input_;
    std::string output_;
};

}  // namespace kv_tr::desktop
