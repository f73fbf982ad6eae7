// Where a member stands in a JSON text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv_tr::workbench {

struct JsonPlace {
    std::size_t line = 0;    ///< from 1; 0 where there is no such member
    std::size_t column = 0;  ///< in bytes, from 1
};

/// The place of a byte.
JsonPlace PlaceOfByte(std::string_view text, std::size_t byte);

/// Where a text stops being JSON with numbers in the range of doubles.
JsonPlace PlaceOfFault(std::string_view text);

/// A member that an object has twice, the first such one, and where it stands again. The text is
/// JSON.
struct RepeatedMember {
    std::string name{};  ///< "points[3].source"; empty where there is none
    JsonPlace place{};
};
RepeatedMember FindRepeated(std::string_view text);

/// Where the value of a member such as "points[3].source" ends, in a text that is JSON.
JsonPlace PlaceOfMember(std::string_view text, const std::string& member);

}  // namespace kv_tr::workbench
