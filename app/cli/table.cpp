// Tables on the standard output.
#include "cli/table.h"

#include <algorithm>
#include <iostream>

#include "kv_tr/text/code_page.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr::cli {
namespace {

std::size_t Width(const Column& column) {
    std::size_t width = DisplayWidth(column.heading);
    for (const std::string& cell : column.cells) width = std::max(width, DisplayWidth(cell));
    return width;
}

std::string Aligned(const std::string& text, const Column& column) {
    const std::string blanks(Width(column) - DisplayWidth(text), ' ');
    return column.number ? blanks + text : text + blanks;
}

}  // namespace

void PrintTable(const std::vector<Column>& columns) {
    const auto printRow = [&columns](const auto& cellOf) {
        std::string line;
        for (const Column& column : columns) line += Aligned(cellOf(column), column) + "  ";
        line.erase(line.find_last_not_of(' ') + 1);
        std::cout << WithoutControls(line) << '\n';
    };
    printRow([](const Column& column) { return column.heading; });
    for (std::size_t row = 0; row < columns.front().cells.size(); ++row) {
        printRow([row](const Column& column) { return column.cells[row]; });
    }
}

}  // namespace kv_tr::cli
