// The built-in transformations between the Hungarian projection systems.
#include "kv_tr/published/national.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/national/table.h"

namespace kv_tr {
namespace {

using enum NationalArea;

// clang-format off
constexpr std::array kInfos{
    NationalInfo{TR_STG_HER,     "STG_HER",     "STG", "HÉR", 0.0017, kHungary},
    NationalInfo{TR_STG_HKR,     "STG_HKR",     "STG", "HKR", 0.0006, kHungary},
    NationalInfo{TR_STG_HDR,     "STG_HDR",     "STG", "HDR", 0.0030, kHungary},
    NationalInfo{TR_HER_STG,     "HER_STG",     "HÉR", "STG", 0.0019, kHungary},
    NationalInfo{TR_HKR_STG,     "HKR_STG",     "HKR", "STG", 0.0005, kHungary},
    NationalInfo{TR_HDR_STG,     "HDR_STG",     "HDR", "STG", 0.0030, kHungary},
    NationalInfo{TR_HER_HKR,     "HER_HKR",     "HÉR", "HKR", 0.0025, kHungary},
    NationalInfo{TR_HKR_HER,     "HKR_HER",     "HKR", "HÉR", 0.0025, kHungary},
    NationalInfo{TR_HDR_HKR,     "HDR_HKR",     "HDR", "HKR", 0.0025, kHungary},
    NationalInfo{TR_HKR_HDR,     "HKR_HDR",     "HKR", "HDR", 0.0025, kHungary},
    NationalInfo{TR_BOV_EOV,     "BOV_EOV",     "BOV", "EOV", 0.05,   kBudapest},
    NationalInfo{TR_EOV_BOV,     "EOV_BOV",     "EOV", "BOV", 0.05,   kBudapest},
    NationalInfo{TR_BOV_HKR,     "BOV_HKR",     "BOV", "HKR", 0.05,   kBudapest},
    NationalInfo{TR_HKR_BOV,     "HKR_BOV",     "HKR", "BOV", 0.05,   kBudapest},
    NationalInfo{TR_STG_BOV,     "STG_BOV",     "STG", "BOV", 0.05,   kBudapest},
    NationalInfo{TR_BOV_STG,     "BOV_STG",     "BOV", "STG", 0.05,   kBudapest},
    NationalInfo{TR_STG_EOV_10e, "STG_EOV_10e", "STG", "EOV", 0.4,    kHungary},
    NationalInfo{TR_HER_EOV_10e, "HER_EOV_10e", "HÉR", "EOV", 0.4,    kHungary},
    NationalInfo{TR_HKR_EOV_10e, "HKR_EOV_10e", "HKR", "EOV", 0.4,    kHungary},
    NationalInfo{TR_HDR_EOV_10e, "HDR_EOV_10e", "HDR", "EOV", 0.4,    kHungary},
    NationalInfo{TR_EOV_STG_10e, "EOV_STG_10e", "EOV", "STG", 0.4,    kHungary},
    NationalInfo{TR_EOV_HER_10e, "EOV_HER_10e", "EOV", "HÉR", 0.4,    kHungary},
    NationalInfo{TR_EOV_HKR_10e, "EOV_HKR_10e", "EOV", "HKR", 0.4,    kHungary},
    NationalInfo{TR_EOV_HDR_10e, "EOV_HDR_10e", "EOV", "HDR", 0.4,    kHungary},
};
// clang-format on

const NationalTable* Find(std::span<const NationalTable> tables, enuTR_TYPE type) {
    const auto found = std::ranges::find(tables, type, &NationalTable::type);
    return found == tables.end() ? nullptr : &*found;
}

}  // namespace

std::optional<TR_PRM> NationalRecord(enuTR_TYPE type) {
    for (const auto tables : {ZoneTables(), CityTables(), EovTables()}) {
        const NationalTable* table = Find(tables, type);
        if (table == nullptr) continue;
        Coefficients coefficients;
        for (std::size_t k = 0; k < coefficients.a.size(); ++k) {
            coefficients.a[k] = table->rows[k][0];
            coefficients.b[k] = table->rows[k][1];
        }
        return MakeRecord(type, coefficients);
    }
    return std::nullopt;
}

std::string NationalOrigin(enuTR_TYPE type) {
    if (type < TR_BOV_EOV) return GetMlString(1150, {});
    return GetMlString(type < TR_STG_EOV_10e ? 1151 : 1152, {});
}

std::span<const NationalInfo> NationalInfos() { return kInfos; }

}  // namespace kv_tr
