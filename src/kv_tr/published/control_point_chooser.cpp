// The two file choosers for control-point files.
#include "kv_tr/published/control_point_chooser.h"

#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

bool Choose(FileDialogArguments arguments, std::string& fileName, std::string& caption) {
    arguments.Filename = fileName;
    arguments.FileTitle = caption;
    arguments.DefaultExt = "dat";
    const bool chosen = GCommonDialog().VBGetOpenFileName(arguments);
    fileName = arguments.Filename;
    caption = arguments.FileTitle;
    return chosen;
}

}  // namespace

bool ChooseControlPointsToLoad(std::string& fileName, const std::string& initDir,
                               std::int32_t owner, std::string& caption) {
    return Choose({.Filter = caption + " (*.dat)|*.dat" + Translated(Text::kOtherPointsFilter) +
                             Translated(Text::kAllFilesFilter),
                   .InitDir = initDir,
                   .DlgTitle = caption + Translated(Text::kLoadingSuffix),
                   .Owner = owner},
                  fileName, caption);
}

bool ChooseControlPointsToSave(std::string& fileName, const std::string& initDir,
                               std::int32_t owner, std::string& caption) {
    return Choose({.FileMustExist = false,
                   .Filter = "",
                   .InitDir = initDir,
                   .DlgTitle = caption + Translated(Text::kSavingSuffix),
                   .Owner = owner},
                  fileName, caption);
}

}  // namespace kv_tr
