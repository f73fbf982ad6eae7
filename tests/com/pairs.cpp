// Control points for the tests of the component.
#include "com/pairs.h"

#include <cmath>

namespace com_client {

ComPtr<ITypeInfo> TypeOf(REFGUID id) {
    static const ComPtr<ITypeLib> library = [] {
        ComPtr<ITypeLib> loaded;
        LoadRegTypeLib(LIBID_KV_Tr, 1, 0, LOCALE_NEUTRAL, &loaded);
        return loaded;
    }();
    ComPtr<ITypeInfo> info;
    if (library) library->GetTypeInfoOfGuid(id, &info);
    return info;
}

ComPtr<IRecordInfo> RecordOf(REFGUID id) {
    ComPtr<IRecordInfo> record;
    GetRecordInfoFromGuids(LIBID_KV_Tr, 1, 0, LOCALE_NEUTRAL, id, &record);
    return record;
}

std::vector<kv_tr::typeXYs4Tr> Points() {
    std::vector<kv_tr::typeXYs4Tr> points;
    for (int i = 0; i < 30; ++i) {
        const double first = 600000 + 137.25 * i + 900 * std::sin(i * 1.7);
        const double second = 200000 + 61.5 * i + 700 * std::cos(i * 2.3);
        points.push_back({.sId = "p" + std::to_string(i),
                          .dXsour = first,
                          .dYsour = second,
                          .dXdest = 1000 + 0.8 * first - 0.6 * second + 0.05 * std::sin(i * 5.0),
                          .dYdest = 5000 + 0.6 * first + 0.8 * second + 0.03 * std::cos(i * 3.0),
                          .bNotUsed = i == 7});
    }
    return points;
}

SAFEARRAY* RecordsOf(const std::vector<kv_tr::typeXYs4Tr>& points, LONG first) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(points.size()), first};
    SAFEARRAY* array = SafeArrayCreateEx(VT_RECORD, 1, &bound, RecordOf(kXYs4Tr).Get());
    void* data = nullptr;
    if (!array || FAILED(SafeArrayAccessData(array, &data))) return nullptr;
    auto* record = static_cast<::typeXYs4Tr*>(data);
    for (const kv_tr::typeXYs4Tr& point : points) {
        *record++ = {SysAllocString(Wide(point.sId).c_str()),
                     point.dXsour,
                     point.dYsour,
                     point.dXdest,
                     point.dYdest,
                     point.dXerr,
                     point.dYerr,
                     static_cast<VARIANT_BOOL>(point.bNotUsed ? -1 : 0)};
    }
    SafeArrayUnaccessData(array);
    return array;
}

}  // namespace com_client
