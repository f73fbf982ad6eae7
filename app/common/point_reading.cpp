// Control-point files, read whole, and what is wrong with one.
#include "common/point_reading.h"

#include "common/excerpt.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/control_point_file.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::host {

PointReading ReadPoints(const std::string& fileName, Comma comma) {
    PointReading reading;
    std::uint64_t number = 0;
    try {
        clsFile file;
        file.OpenIt(fileName, true);
        reading.opened = file.IsOpen();
        while (reading.Complete() && !file.AtEnd()) {
            ++number;
            const std::string line = file.ReadLine();
            if (line.empty()) continue;
            reading.hasDecimalCommas =
                comma == Comma::kSuspect && HasDecimalCommas(WithoutIdentifier(line), 4);
            typeXYs4Tr pair;
            if (!reading.hasDecimalCommas && ReadPair(line, pair, comma == Comma::kDecimalSign)) {
                reading.pairs.push_back(pair);
            } else {
                reading.badLine = number;
                reading.badText = line;
            }
        }
    } catch (const RuntimeError& failure) {
        reading.badLine = number + 1;
        reading.badText = failure.what();
    }
    return reading;
}

std::string Complaint(const PointReading& reading, const std::string& fileName) {
    return FillPlaces(GetMlString(1029, "{0}, {1}. sor: azonosító és négy koordináta kellene: {2}"),
                      {fileName, std::to_string(reading.badLine), Excerpt(reading.badText)});
}

}  // namespace kv_tr::host
