// The transformation types as a Python enumeration.
#include "python/enumeration.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "python/binding.h"

namespace kv_tr::python {
namespace {

#define KV_TR_TYPE(name) \
    { #name, name }
constexpr std::array<std::pair<const char*, enuTR_TYPE>, 36> kTypes{{
    KV_TR_TYPE(TR_METER_OL),    KV_TR_TYPE(TR_OL_METER),    KV_TR_TYPE(TR_AFFIN_5),
    KV_TR_TYPE(TR_HELMERT_3),   KV_TR_TYPE(TR_AFFIN),       KV_TR_TYPE(TR_HELMERT),
    KV_TR_TYPE(TR_POLI_1),      KV_TR_TYPE(TR_POLI_2),      KV_TR_TYPE(TR_POLI_3),
    KV_TR_TYPE(TR_POLI_4),      KV_TR_TYPE(TR_POLI_5),      KV_TR_TYPE(TR_BILINEAR),
    KV_TR_TYPE(TR_STG_HER),     KV_TR_TYPE(TR_STG_HKR),     KV_TR_TYPE(TR_STG_HDR),
    KV_TR_TYPE(TR_HER_STG),     KV_TR_TYPE(TR_HKR_STG),     KV_TR_TYPE(TR_HDR_STG),
    KV_TR_TYPE(TR_HER_HKR),     KV_TR_TYPE(TR_HKR_HER),     KV_TR_TYPE(TR_HDR_HKR),
    KV_TR_TYPE(TR_HKR_HDR),     KV_TR_TYPE(TR_BOV_EOV),     KV_TR_TYPE(TR_EOV_BOV),
    KV_TR_TYPE(TR_BOV_HKR),     KV_TR_TYPE(TR_HKR_BOV),     KV_TR_TYPE(TR_STG_BOV),
    KV_TR_TYPE(TR_BOV_STG),     KV_TR_TYPE(TR_STG_EOV_10e), KV_TR_TYPE(TR_HER_EOV_10e),
    KV_TR_TYPE(TR_HKR_EOV_10e), KV_TR_TYPE(TR_HDR_EOV_10e), KV_TR_TYPE(TR_EOV_STG_10e),
    KV_TR_TYPE(TR_EOV_HER_10e), KV_TR_TYPE(TR_EOV_HKR_10e), KV_TR_TYPE(TR_EOV_HDR_10e),
}};
#undef KV_TR_TYPE

}  // namespace

bool LoadType(py::handle source, enuTR_TYPE& type) {
    if (PyIndex_Check(source.ptr()) == 0 || py::isinstance<py::bool_>(source)) return false;
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(source.ptr()));
    if (!number) throw py::error_already_set();
    int overflow = 0;
    const long value = PyLong_AsLongAndOverflow(number.ptr(), &overflow);
    const auto found = std::ranges::find_if(
        kTypes, [&](const auto& row) { return overflow == 0 && row.second == value; });
    if (found == kTypes.end()) {
        throw py::value_error(IntegerText(number) + " is not a transformation type (enuTR_TYPE)");
    }
    type = found->second;
    return true;
}

py::object TypeMember(enuTR_TYPE type) {
    return Module().attr("enuTR_TYPE")(static_cast<std::int32_t>(type));
}

void AddEnumeration(py::module_& module) {
    py::dict members;
    for (const auto& [name, type] : kTypes) members[name] = static_cast<std::int32_t>(type);
    const py::object type = py::module_::import("enum").attr("IntEnum")(
        "enuTR_TYPE", members, py::arg("module") = "kv_tr");
    type.attr("__doc__") = "The type of a plane transformation.";
    module.attr("enuTR_TYPE") = type;
    for (const auto& row : kTypes) module.attr(row.first) = type.attr(row.first);
}

}  // namespace kv_tr::python
