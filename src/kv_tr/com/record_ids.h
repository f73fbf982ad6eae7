// The identifiers of the published records in the type library.
#pragma once

#include "kv_tr/text/windows_api.h"

namespace kv_tr::com {

inline constexpr GUID RecordId(unsigned char number) {
    return {0x5bb3fed9, 0x84b0, 0x431d, {0x80, 0x47, 0x1a, 0x6f, 0xf7, 0x97, 0, number}};
}
inline constexpr GUID kTrPrm = RecordId(2);
inline constexpr GUID kAffinPrm = RecordId(3);
inline constexpr GUID kXYs4Tr = RecordId(4);

}  // namespace kv_tr::com
