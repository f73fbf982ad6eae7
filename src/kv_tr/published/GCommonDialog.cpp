// The file choosers with plain arguments.
#include "kv_tr/published/GCommonDialog.h"

#include <algorithm>

#include "kv_tr/published/component.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

std::vector<FileFilter> SplitFilter(std::string_view text) {
    std::vector<FileFilter> filters;
    bool description = true;
    while (true) {
        const auto end = text.find_first_of("|:");
        const std::string part(text.substr(0, end));
        if (description) {
            filters.push_back({part, {}});
        } else {
            filters.back().pattern = part;
        }
        if (end == text.npos) break;
        text.remove_prefix(end + 1);
        description = !description;
    }
    std::erase_if(filters, [](const FileFilter& filter) { return filter.description.empty(); });
    return filters;
}

std::int32_t OpenFlags(const FileDialogArguments& arguments) {
    return (arguments.FileMustExist ? kFileMustExist : 0) |
           (arguments.MultiSelect ? kAllowMultiSelect : 0) | (arguments.ReadOnly ? kReadOnly : 0) |
           (arguments.HideReadOnly ? kHideReadOnly : 0);
}

std::int32_t SaveFlags(const FileDialogArguments& arguments) {
    return kHideReadOnly | (arguments.OverWritePrompt ? kOverwritePrompt : 0);
}

std::string WithoutStar(const std::string& extension) {
    return extension.starts_with("*.") ? extension.substr(2) : extension;
}

}  // namespace

bool GCommonDialog::VBGetOpenFileName(FileDialogArguments& arguments) {
    return Choose(arguments, true);
}

bool GCommonDialog::VBGetSaveFileName(FileDialogArguments& arguments) {
    return Choose(arguments, false);
}

bool GCommonDialog::Choose(FileDialogArguments& arguments, bool toOpen) {
    const std::int32_t flags = arguments.flags | (toOpen ? OpenFlags : SaveFlags)(arguments);
    const FileRequest request{.fileName = arguments.Filename,
                              .title = arguments.DlgTitle,
                              .initialFolder = arguments.InitDir,
                              .defaultExtension = WithoutStar(arguments.DefaultExt),
                              .filters = SplitFilter(arguments.Filter),
                              .filterIndex = arguments.FilterIndex,
                              .flags = flags & ~(kEnableHook | kEnableTemplate),
                              .owner = arguments.Owner};
    FileChooser& chooser = *TheComponent().platform.files;
    const auto choice = toOpen ? chooser.ChooseToOpen(request) : chooser.ChooseToSave(request);

    apiReturn_ = choice ? 1 : 0;
    if (!choice) {
        arguments.Filename.clear();
        arguments.FileTitle.clear();
        arguments.Filter.clear();
        arguments.flags = 0;
        arguments.FilterIndex = -1;
        return false;
    }
    arguments.Filename = choice->path;
    arguments.FileTitle = GetFileTitle(choice->path, true);
    std::ranges::replace(arguments.Filter, ':', '|');
    arguments.flags = choice->flags;
    arguments.FilterIndex = choice->filterIndex;
    if (toOpen) arguments.ReadOnly = (choice->flags & kReadOnly) != 0;
    return true;
}

}  // namespace kv_tr
