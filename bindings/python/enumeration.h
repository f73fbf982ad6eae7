// The transformation types as Python enumerations, and what troubles a fit.
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "kv_tr/model/type.h"
#include "kv_tr/published/records.h"

namespace kv_tr::python {

/// The type that a Python integer names; false for anything but an integer. An integer that is no
/// type is ValueError.
bool LoadType(pybind11::handle source, enuTR_TYPE& type);

/// The member of the Python enumeration.
pybind11::object TypeMember(enuTR_TYPE type);

/// The type that a word or the integer of an enuTR_TYPE names; false for anything else. A word or
/// an integer that is no type is ValueError.
bool LoadType(pybind11::handle source, Type& type);

/// "poly2"
std::string WordOf(Type type);

/// The member of the Python enumeration of words.
pybind11::object TypeMember(Type type);

}  // namespace kv_tr::python

// Python sees enuTR_TYPE as enum.IntEnum, which pybind11's own enumerations are not.
template <>
struct pybind11::detail::type_caster<kv_tr::enuTR_TYPE> {
    PYBIND11_TYPE_CASTER(kv_tr::enuTR_TYPE, const_name("enuTR_TYPE"));

    bool load(handle source, bool /*convert*/) { return kv_tr::python::LoadType(source, value); }

    static handle cast(kv_tr::enuTR_TYPE type, return_value_policy /*policy*/, handle /*parent*/) {
        return kv_tr::python::TypeMember(type).release();
    }
};

// Python sees Type as an enumeration of words.
template <>
struct pybind11::detail::type_caster<kv_tr::Type> {
    PYBIND11_TYPE_CASTER(kv_tr::Type, const_name("Type"));

    bool load(handle source, bool /*convert*/) { return kv_tr::python::LoadType(source, value); }

    static handle cast(kv_tr::Type type, return_value_policy /*policy*/, handle /*parent*/) {
        return kv_tr::python::TypeMember(type).release();
    }
};
