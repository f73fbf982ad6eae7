// Arrays of hosts.
#include "kv_tr/com/pairs_array.h"

#include <algorithm>

#include "kv_tr/com/record_ids.h"
#include "kv_tr/com/values.h"
#include "kv_tr/published/errors.h"

namespace kv_tr::com {

std::vector<kv_tr::typeXYs4Tr> PairsOf(SAFEARRAY* array) {
    if (!array) return {};
    if (SafeArrayGetElemsize(array) != sizeof(::typeXYs4Tr)) throw Failure{DISP_E_TYPEMISMATCH};
    const ArrayElements<const ::typeXYs4Tr> elements(array);
    if (!(*elements).empty() && array->rgsabound[0].lLbound != 0) {
        throw RuntimeError(ErrorNumber::kSubscript, "The array must start at index 0");
    }
    std::vector<kv_tr::typeXYs4Tr> pairs;
    pairs.reserve((*elements).size());
    for (const ::typeXYs4Tr& pair : *elements) {
        pairs.push_back({.sId = Utf8(pair.sId),
                         .dXsour = pair.dXsour,
                         .dYsour = pair.dYsour,
                         .dXdest = pair.dXdest,
                         .dYdest = pair.dYdest,
                         .dXerr = pair.dXerr,
                         .dYerr = pair.dYerr,
                         .bNotUsed = FromCom(pair.bNotUsed)});
    }
    return pairs;
}

void SetPairs(SAFEARRAY** array, const std::vector<kv_tr::typeXYs4Tr>& pairs) {
    OwnArray fresh(NewArray({.type = VT_RECORD, .record = kXYs4Tr}, pairs.size()));
    {
        const ArrayElements<::typeXYs4Tr> elements(fresh.Get());
        std::ranges::transform(pairs, (*elements).begin(), [](const kv_tr::typeXYs4Tr& pair) {
            return ::typeXYs4Tr{
                MakeBstr(pair.sId), pair.dXsour, pair.dYsour, pair.dXdest,
                pair.dYdest,        pair.dXerr,  pair.dYerr,  ToCom(bool{pair.bNotUsed})};
        });
    }
    ReplaceArray(array, fresh);
}

std::vector<double> NumbersOf(SAFEARRAY* array) {
    if (!array) return {};
    if (SafeArrayGetElemsize(array) != sizeof(double)) throw Failure{DISP_E_TYPEMISMATCH};
    const ArrayElements<const double> elements(array);
    return {(*elements).begin(), (*elements).end()};
}

void SetNumbers(SAFEARRAY** array, const std::vector<double>& numbers) {
    OwnArray fresh(NewArray({.type = VT_R8}, numbers.size()));
    {
        const ArrayElements<double> elements(fresh.Get());
        std::ranges::copy(numbers, (*elements).begin());
    }
    ReplaceArray(array, fresh);
}

}  // namespace kv_tr::com
