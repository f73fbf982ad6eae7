// What is wrong with a control-point file.
#include "common/point_reading.h"

#include <filesystem>

#include "common/excerpt.h"
#include "engine/control_point_file.h"
#include "support/clsFile.h"
#include "support/errors.h"
#include "support/ml_strings.h"

namespace kv_tr::host {

std::string BadPointLine(const std::string& fileName) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(fileName, error)) return {};
    int number = 1;
    std::string line;
    try {
        clsFile file;
        file.OpenIt(fileName, true);
        if (!file.IsOpen()) return {};
        for (; !file.AtEnd(); ++number) {
            line = file.ReadLine();
            typeXYs4Tr ignored;
            if (!line.empty() && !ReadPair(line, ignored)) break;
        }
    } catch (const RuntimeError& failure) {
        line = failure.what();
    }
    return FillPlaces(GetMlString(1029, "{0}, {1}. sor: azonosító és négy koordináta kellene: {2}"),
                      {fileName, std::to_string(number), Excerpt(line)});
}

}  // namespace kv_tr::host
