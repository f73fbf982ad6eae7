// The SHA-256 checksum (FIPS 180-4), by which a reader recognises a file.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// The SHA-256 of the bytes as 64 hexadecimal digits, in lower case.
std::string Sha256(std::string_view bytes);

}  // namespace kv_tr
