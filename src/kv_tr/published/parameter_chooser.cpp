// The four file choosers for parameter files.
#include "kv_tr/published/parameter_chooser.h"

#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

enum class Purpose { kLoad, kSave };

/// The filter is the description with its extension, and further entries behind it.
bool Choose(Purpose purpose, const std::string& description, const std::string& extension,
            const std::string& furtherFilters, std::string& fileName, const std::string& initDir,
            std::int32_t owner) {
    const bool load = purpose == Purpose::kLoad;
    FileDialogArguments arguments{
        .Filename = fileName,
        .Filter = description + " (*." + extension + ")|*." + extension + furtherFilters,
        .InitDir = initDir,
        .DlgTitle = description +
                    (load ? Translated(Text::kLoadingSuffix) : Translated(Text::kSavingSuffix)),
        .DefaultExt = "*." + extension,
        .Owner = owner};
    GCommonDialog dialog;
    const bool chosen =
        load ? dialog.VBGetOpenFileName(arguments) : dialog.VBGetSaveFileName(arguments);
    fileName = arguments.Filename;
    return chosen;
}

std::string LinearDescription() { return Translated(Text::kLinearParametersFilter); }

std::string PolynomialDescription() { return Translated(Text::kPolynomialParametersFilter); }

std::string Itr25Filter() { return Translated(Text::kItr25Filter); }

std::string AllFilesFilter() { return Translated(Text::kAllFilesFilter); }

}  // namespace

bool ChooseLinearToLoad(std::string& fileName, const std::string& initDir, std::int32_t owner) {
    return Choose(Purpose::kLoad, LinearDescription(), "trp", Itr25Filter() + AllFilesFilter(),
                  fileName, initDir, owner);
}

bool ChooseLinearToSave(std::string& fileName, const std::string& initDir, std::int32_t owner) {
    return Choose(Purpose::kSave, LinearDescription(), "trp", Itr25Filter(), fileName, initDir,
                  owner);
}

bool ChoosePolynomialToLoad(std::string& fileName, const std::string& initDir, std::int32_t owner) {
    return Choose(Purpose::kLoad, PolynomialDescription(), "all", AllFilesFilter(), fileName,
                  initDir, owner);
}

bool ChoosePolynomialToSave(std::string& fileName, const std::string& initDir, std::int32_t owner) {
    return Choose(Purpose::kSave, PolynomialDescription(), "all", "", fileName, initDir, owner);
}

}  // namespace kv_tr
