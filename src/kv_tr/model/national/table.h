// The form in which the national transformations are written down.
#pragma once

#include <span>

#include "kv_tr/model/type.h"

namespace kv_tr {

/// The coefficients of a national transformation: row k holds a[k] and b[k], missing rows are zero.
struct NationalTable {
    Type type;
    double rows[22][2];
};

std::span<const NationalTable> ZoneTables();  // types 10 to 19
std::span<const NationalTable> CityTables();  // 20 to 25
std::span<const NationalTable> EovTables();   // 26 to 33

}  // namespace kv_tr
