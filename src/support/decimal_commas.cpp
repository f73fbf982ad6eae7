// Files written with decimal commas, which the readers would silently take for other numbers.
#include "common/decimal_commas.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "support/clsFile.h"
#include "support/file_names.h"

namespace kv_tr::host {
namespace {

/// The commas between digits; none in a line that has decimal points.
int DecimalCommas(const std::string& line) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (line.find('.') != line.npos) return 0;
    int count = 0;
    for (std::size_t i = 1; i + 1 < line.size(); ++i) {
        if (line[i] == ',' && isDigit(line[i - 1]) && isDigit(line[i + 1])) ++count;
    }
    return count;
}

/// How many of the first lines of a file hold numbers with decimal commas, lines being cut to
/// their numbers first. A file that can be read only once is not looked at.
int LinesWithDecimalCommas(const std::string& fileName, int commas,
                           const std::function<std::string(int, const std::string&)>& numbersOf) {
    constexpr int kEnough = 30;
    std::error_code error;
    if (!std::filesystem::is_regular_file(fileName, error)) return 0;
    clsFile file;
    file.OpenIt(fileName, true);
    int lines = 0;
    for (int number = 0; number < kEnough && file.IsOpen() && !file.AtEnd(); ++number) {
        if (DecimalCommas(numbersOf(number, file.ReadLine())) >= commas) ++lines;
    }
    return lines;
}

}  // namespace

bool ParametersHaveDecimalCommas(const std::string& fileName) {
    const bool polynomial = HasExtension(fileName, "all");
    const int titles = polynomial ? 2 : 0;
    const int lines =
        LinesWithDecimalCommas(fileName, 1, [titles](int number, const std::string& line) {
            return number < titles ? std::string() : line;
        });
    return lines >= (polynomial ? 1 : 6);
}

bool PointsMayHaveDecimalCommas(const std::string& fileName) {
    return LinesWithDecimalCommas(fileName, 4, [](int, const std::string& line) {
               const auto identifierEnd = line.find_first_of(" \t;", line.find_first_not_of(" \t"));
               return line.substr(std::min(identifierEnd, line.size()));
           }) > 0;
}

}  // namespace kv_tr::host
