// The built-in transformations between the Hungarian projection systems.
#include "kv_tr/model/national.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "kv_tr/model/national/table.h"

namespace kv_tr {
namespace {

using enum NationalArea;

// clang-format off
constexpr std::array kInfos{
    NationalInfo{Type::kStgToHer,     "STG_HER",     "STG", "HÉR", 0.0017, kHungary},
    NationalInfo{Type::kStgToHkr,     "STG_HKR",     "STG", "HKR", 0.0006, kHungary},
    NationalInfo{Type::kStgToHdr,     "STG_HDR",     "STG", "HDR", 0.0030, kHungary},
    NationalInfo{Type::kHerToStg,     "HER_STG",     "HÉR", "STG", 0.0019, kHungary},
    NationalInfo{Type::kHkrToStg,     "HKR_STG",     "HKR", "STG", 0.0005, kHungary},
    NationalInfo{Type::kHdrToStg,     "HDR_STG",     "HDR", "STG", 0.0030, kHungary},
    NationalInfo{Type::kHerToHkr,     "HER_HKR",     "HÉR", "HKR", 0.0025, kHungary},
    NationalInfo{Type::kHkrToHer,     "HKR_HER",     "HKR", "HÉR", 0.0025, kHungary},
    NationalInfo{Type::kHdrToHkr,     "HDR_HKR",     "HDR", "HKR", 0.0025, kHungary},
    NationalInfo{Type::kHkrToHdr,     "HKR_HDR",     "HKR", "HDR", 0.0025, kHungary},
    NationalInfo{Type::kBovToEov,     "BOV_EOV",     "BOV", "EOV", 0.05,   kBudapest},
    NationalInfo{Type::kEovToBov,     "EOV_BOV",     "EOV", "BOV", 0.05,   kBudapest},
    NationalInfo{Type::kBovToHkr,     "BOV_HKR",     "BOV", "HKR", 0.05,   kBudapest},
    NationalInfo{Type::kHkrToBov,     "HKR_BOV",     "HKR", "BOV", 0.05,   kBudapest},
    NationalInfo{Type::kStgToBov,     "STG_BOV",     "STG", "BOV", 0.05,   kBudapest},
    NationalInfo{Type::kBovToStg,     "BOV_STG",     "BOV", "STG", 0.05,   kBudapest},
    NationalInfo{Type::kStgToEov10e, "STG_EOV_10e", "STG", "EOV", 0.4,    kHungary},
    NationalInfo{Type::kHerToEov10e, "HER_EOV_10e", "HÉR", "EOV", 0.4,    kHungary},
    NationalInfo{Type::kHkrToEov10e, "HKR_EOV_10e", "HKR", "EOV", 0.4,    kHungary},
    NationalInfo{Type::kHdrToEov10e, "HDR_EOV_10e", "HDR", "EOV", 0.4,    kHungary},
    NationalInfo{Type::kEovToStg10e, "EOV_STG_10e", "EOV", "STG", 0.4,    kHungary},
    NationalInfo{Type::kEovToHer10e, "EOV_HER_10e", "EOV", "HÉR", 0.4,    kHungary},
    NationalInfo{Type::kEovToHkr10e, "EOV_HKR_10e", "EOV", "HKR", 0.4,    kHungary},
    NationalInfo{Type::kEovToHdr10e, "EOV_HDR_10e", "EOV", "HDR", 0.4,    kHungary},
};
// clang-format on

const NationalTable* Find(std::span<const NationalTable> tables, Type type) {
    const auto found = std::ranges::find(tables, type, &NationalTable::type);
    return found == tables.end() ? nullptr : &*found;
}

Transformation Scaling(Type type, double factor) {
    return {.type = type, .a = {0.0, factor}, .b = {0.0, 0.0, factor}};
}

}  // namespace

std::optional<Transformation> NationalTransformation(Type type) {
    for (const auto tables : {ZoneTables(), CityTables(), EovTables()}) {
        const NationalTable* table = Find(tables, type);
        if (table == nullptr) continue;
        Transformation transformation{.type = type};
        for (std::size_t k = 0; k < transformation.a.size(); ++k) {
            transformation.a[k] = table->rows[k][0];
            transformation.b[k] = table->rows[k][1];
        }
        return transformation;
    }
    return std::nullopt;
}

Text NationalOrigin(Type type) {
    if (type < Type::kBovToEov) return Text::kComputedHigherTerms;
    return type < Type::kStgToEov10e ? Text::kBudapestHigherTerms : Text::kEstimatedHigherTerms;
}

std::span<const NationalInfo> NationalInfos() { return kInfos; }

const NationalInfo* FindNational(std::string_view name) {
    const auto found = std::ranges::find(kInfos, name, &NationalInfo::name);
    return found == kInfos.end() ? nullptr : &*found;
}

Transformation FathomToMetre() { return Scaling(Type::kFathomToMetre, 1.89648384); }

Transformation MetreToFathom() { return Scaling(Type::kMetreToFathom, 0.527291601); }

}  // namespace kv_tr
