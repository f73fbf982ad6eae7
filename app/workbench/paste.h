// Points out of the cells of a spreadsheet.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/content.h"

namespace kv_tr::workbench {

/// Points that were pasted, or every problem with the row and the cell where it is.
struct Pasted {
    std::vector<Pair> pairs{};            ///< none when there is a problem
    std::vector<std::string> problems{};  ///< in words of the current language

    bool Complete() const { return problems.empty(); }
};

/// Reads rows of an identifier and four coordinates, or of the coordinates only, between tabs,
/// semicolons or whatever divides them; decimal commas and quoted cells are understood. A row of
/// headings says which columns are which: the names that CSV files have, or those of the table of
/// points in any language, so that what was copied there can be pasted.
Pasted ReadPasted(std::string_view text);

}  // namespace kv_tr::workbench
