// Control points for the tests of the component, of the library and as arrays of records.
#pragma once

#include <vector>

#include "com/com_client.h"
#include "kv_tr/published/records.h"

namespace com_client {

inline constexpr GUID kXYs4Tr{
    0x5bb3fed9, 0x84b0, 0x431d, {0x80, 0x47, 0x1a, 0x6f, 0xf7, 0x97, 0, 4}};

/// What a type of the library describes.
ComPtr<ITypeInfo> TypeOf(REFGUID id);
ComPtr<IRecordInfo> RecordOf(REFGUID id);

/// Enough points for order 5, nowhere symmetric, with residuals that differ.
std::vector<kv_tr::typeXYs4Tr> Points();

/// The same as hosts keep them. The caller destroys the array.
SAFEARRAY* RecordsOf(const std::vector<kv_tr::typeXYs4Tr>& points, LONG first = 0);

}  // namespace com_client
