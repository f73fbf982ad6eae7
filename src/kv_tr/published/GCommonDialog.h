// The file choosers with plain arguments.
#pragma once

#include <cstdint>
#include <string>

namespace kv_tr {

// Bits of the choosers' flags.
inline constexpr std::int32_t kReadOnly = 0x1;
inline constexpr std::int32_t kOverwritePrompt = 0x2;
inline constexpr std::int32_t kHideReadOnly = 0x4;
inline constexpr std::int32_t kEnableHook = 0x20;
inline constexpr std::int32_t kEnableTemplate = 0x40;
inline constexpr std::int32_t kAllowMultiSelect = 0x200;
inline constexpr std::int32_t kFileMustExist = 0x1000;

/// What a file chooser takes and gives back. The open chooser does not read OverWritePrompt, the
/// save chooser not FileMustExist, MultiSelect, ReadOnly and HideReadOnly.
struct FileDialogArguments {
    std::string Filename{};   ///< in: suggested name; out: the chosen path
    std::string FileTitle{};  ///< out: the chosen file's name without folder
    bool FileMustExist = true;
    bool MultiSelect = false;
    bool ReadOnly = false;  ///< out: whether the user asked for reading only
    bool HideReadOnly = false;
    bool OverWritePrompt = true;
    std::string Filter = "All (*.*)| *.*";  ///< descriptions and patterns in turn, separated by "|"
    std::int32_t FilterIndex = 1;           ///< in: first offered; out: the chosen one, from 1
    std::string InitDir{};
    std::string DlgTitle{};
    std::string DefaultExt{};  ///< a leading "*." is dropped
    std::int32_t Owner = -1;
    std::int32_t flags = 0;  ///< further flag bits; out: those of the dialog
};

/// Asks the user for a file through the platform's file chooser.
///
/// When a file was chosen the result is true and the arguments marked "out" are set. Otherwise it
/// is false, and Filename, FileTitle and Filter are emptied, flags 0 and FilterIndex -1.
/// A ":" separates the parts of Filter as "|" does, deliberately.
class GCommonDialog {
public:
    bool VBGetOpenFileName(FileDialogArguments& arguments);
    bool VBGetSaveFileName(FileDialogArguments& arguments);

    /// 1 after a chosen file, else 0.
    std::int32_t APIReturn() const { return apiReturn_; }
    /// The choosers report no extended errors, so this is 0.
    std::int32_t ExtendedError() const { return 0; }

private:
    bool Choose(FileDialogArguments& arguments, bool toOpen);

    std::int32_t apiReturn_ = 0;
};

}  // namespace kv_tr
