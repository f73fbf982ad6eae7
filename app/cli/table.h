// Tables on the standard output.
#pragma once

#include <string>
#include <vector>

namespace kv_tr::cli {

/// A column: its heading and its cells; numbers are set to the right.
struct Column {
    std::string heading;
    bool number = false;
    std::vector<std::string> cells{};
};

/// Prints columns of equally many cells side by side, as wide as their longest cell.
void PrintTable(const std::vector<Column>& columns);

}  // namespace kv_tr::cli
