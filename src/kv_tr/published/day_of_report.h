// The day that a report bears.
#pragma once

#include <optional>
#include <string>

namespace kv_tr {

/// "2026-05-31" for today, or for the day that the environment variable SOURCE_DATE_EPOCH names
/// (seconds since 1970, in UTC), so that reports can come out the same again; nothing when the
/// variable is no such number.
std::optional<std::string> DayOfReport();

}  // namespace kv_tr
