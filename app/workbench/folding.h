// Texts compared as users expect: without regard to case and marks, numbers by their value.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr::workbench {

/// A text in which letters of either case, with marks and without, are the same: "Đức" and "duc".
/// Letters of other alphabets than the Latin one stay, Cyrillic and Greek ones in lower case.
std::string Folded(std::string_view utf8);

/// Whether a folded text comes before another one when they are sorted; runs of digits count as
/// numbers, so that "p9" comes before "p10".
bool IsBefore(std::string_view folded, std::string_view other);

}  // namespace kv_tr::workbench
