// What Qt says, in languages that Qt has no translation for.
#pragma once

#include <span>

namespace kv_tr {

/// UTF-8; the English words as Qt has them, letters for Alt included.
struct QtWord {
    const char* english;
    const char* romanian;
    const char* vietnamese;
    const char* serbian;
};

std::span<const QtWord> QtWordTable();

}  // namespace kv_tr
