// The captions and tool tips of the controls of a form.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/text/text_id.h"

namespace kv_tr {

/// The texts of one control.
struct Caption {
    std::string_view control;  // its published name, which is also that of the window's object
    std::optional<Text> caption{};
    std::optional<Text> toolTip{};
    std::string_view literal{};  // the caption where it is the same in all languages
};

/// The texts of the controls of one form, in whatever language is the current one when asked.
class Captions {
public:
    explicit Captions(std::span<const Caption> rows) : rows_(rows.begin(), rows.end()) {}

    std::span<const Caption> Rows() const { return rows_; }
    void SetCaption(std::string_view control, Text text) { Row(control).caption = text; }
    /// A text that takes the place of the control's caption; made anew whenever it is asked for.
    void SetText(std::string_view control, std::function<std::string()> text);
    void SetToolTip(std::string_view control, Text text) { Row(control).toolTip = text; }

    /// Throws std::out_of_range for a control that the form does not have.
    std::string TextOf(std::string_view control) const;
    std::string ToolTip(std::string_view control) const;
    /// Whether SetText has given the control its text: that may be another one at any time, and its
    /// letter for Alt comes after those of the others.
    bool IsComputed(std::string_view control) const { return texts_.contains(control); }

private:
    const Caption& Row(std::string_view control) const;
    Caption& Row(std::string_view control);

    std::vector<Caption> rows_;
    std::map<std::string_view, std::function<std::string()>> texts_;  // set by SetText, by control
};

/// The rows of each form; the one that bears the form's own name has the title of its window.
std::span<const Caption> TrCaptions();
std::span<const Caption> AffinTrPrmCaptions();
std::span<const Caption> PoliTrPrmCaptions();
std::span<const Caption> ChoosePrmCaptions();
std::span<const Caption> ChooseDAT2M1Captions();
std::span<const Caption> XY4TrCaptions();

}  // namespace kv_tr
