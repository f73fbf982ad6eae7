// What the preview of opening lets the user choose, without a toolkit.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "workbench/open_preview.h"

namespace kv_tr::workbench {

/// How axes may lie, the usual way first.
inline constexpr std::array kAxisMappings{
    AxisMapping::kEn, AxisMapping::kNe, AxisMapping::kWs, AxisMapping::kSw,
    AxisMapping::kEs, AxisMapping::kWn, AxisMapping::kSe, AxisMapping::kNw,
};
/// Where the axes point, in words.
std::string AxesText(AxisMapping axes);

/// One thing that may be understood otherwise.
enum class PreviewChoice {
    kFormat,
    kSeparator,
    kDecimalSign,
    kHeader,
    kLetters,
    kSourceAxes,
    kDestinationAxes,
};
inline constexpr std::array kPreviewChoices{
    PreviewChoice::kFormat,          PreviewChoice::kSeparator, PreviewChoice::kDecimalSign,
    PreviewChoice::kHeader,          PreviewChoice::kLetters,   PreviewChoice::kSourceAxes,
    PreviewChoice::kDestinationAxes,
};

/// The choices about a preview, as lists. Where the program finds something out, the first entry
/// leaves that to it and says what it found.
class PreviewForm {
public:
    /// The preview outlives the form.
    explicit PreviewForm(OpenPreview& preview) : preview_(preview) {}

    struct List {
        std::string label;
        std::vector<std::string> entries;
        std::size_t current = 0;
        bool matters = true;  ///< whether it changes how this input is read
    };
    List ListOf(PreviewChoice choice) const;
    /// Another format or separator divides the columns anew, so that their choice is forgotten.
    void Choose(PreviewChoice choice, std::size_t entry);

    /// Whether standard deviations follow the coordinates where no header tells.
    bool HasSigmas() const { return preview_.Choices().sigmas; }
    void HasSigmas(bool sigmas);

    /// How many columns may be named; none where the format has no columns to choose.
    std::size_t ColumnCount() const;
    /// The entry of OpenPreview::ColumnWords that a column has.
    std::size_t ColumnEntry(std::size_t column) const;
    /// What another column was before, that one becomes when it had this entry.
    void ChooseColumn(std::size_t column, std::size_t entry);

private:
    OpenPreview& preview_;
};

}  // namespace kv_tr::workbench
