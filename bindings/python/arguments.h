// How numbers, texts and the component's own objects come from Python. Every function takes them
// this way; what is of the right kind but cannot be taken raises what says why.
#pragma once

#include <pybind11/pybind11.h>

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <typeinfo>

#include "kv_tr/model/inverse.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/platform.h"

namespace kv_tr::python {

/// The value of anything that is a real number: a float, an int, a scalar of numpy, a Decimal.
/// False for anything else, text and complex numbers included; OverflowError for what is too large.
bool LoadNumber(pybind11::handle source, double& value);

/// The value of an integer within bounds; false for anything else, OverflowError beyond them.
bool LoadInteger(pybind11::handle source, std::int64_t least, std::int64_t greatest,
                 std::int64_t& value);

/// An integer for a message, where Python refuses to print the longest.
std::string IntegerText(const pybind11::object& integer);

/// ValueError for a text that has no UTF-8 form; nothing for any other object.
void RefuseSurrogates(pybind11::handle source);

/// TypeError for an object of a type of ours whose __init__ was not called.
void RefuseEmpty(pybind11::handle source, const std::type_info& type);

class Connection;
struct KnownTransformation;
struct TypeEvent;

/// What Python holds objects of.
template <class T>
concept Bound = std::same_as<T, TR_PRM> || std::same_as<T, AFFIN_PRM> ||
    std::same_as<T, typeXYs4Tr> || std::same_as<T, clsTrCalc> || std::same_as<T, clsTr> ||
    std::same_as<T, Message> || std::same_as<T, FileRequest> || std::same_as<T, NationalInfo> ||
    std::same_as<T, Connection> || std::same_as<T, TypeEvent> ||
    std::same_as<T, KnownTransformation> || std::same_as<T, ExactInverse>;

}  // namespace kv_tr::python

namespace pybind11::detail {

template <>
struct type_caster<double> {
    PYBIND11_TYPE_CASTER(double, const_name("float"));

    bool load(handle source, bool /*convert*/) { return kv_tr::python::LoadNumber(source, value); }

    static handle cast(double number, return_value_policy /*policy*/, handle /*parent*/) {
        return PyFloat_FromDouble(number);
    }
};

template <class Integer>
struct IntegerCaster {
    PYBIND11_TYPE_CASTER(Integer, const_name("int"));

    bool load(handle source, bool /*convert*/) {
        using Limits = std::numeric_limits<Integer>;
        std::int64_t loaded = 0;
        if (!kv_tr::python::LoadInteger(source, Limits::min(), Limits::max(), loaded)) return false;
        value = static_cast<Integer>(loaded);
        return true;
    }

    static handle cast(Integer number, return_value_policy /*policy*/, handle /*parent*/) {
        return PyLong_FromLong(number);
    }
};

template <>
struct type_caster<std::int32_t> : IntegerCaster<std::int32_t> {};
template <>
struct type_caster<std::uint8_t> : IntegerCaster<std::uint8_t> {};

template <class Text, bool isView>
struct TextCaster : string_caster<Text, isView> {
    bool load(handle source, bool convert) {
        if (string_caster<Text, isView>::load(source, convert)) return true;
        kv_tr::python::RefuseSurrogates(source);
        return false;
    }
};

template <>
struct type_caster<std::string> : TextCaster<std::string, false> {};
template <>
struct type_caster<std::string_view> : TextCaster<std::string_view, true> {};

template <class T>
struct type_caster<T, enable_if_t<kv_tr::python::Bound<T>>> : type_caster_base<T> {
    bool load(handle source, bool convert) {
        if (isinstance<T>(source)) kv_tr::python::RefuseEmpty(source, typeid(T));
        return type_caster_base<T>::load(source, convert);
    }
};

}  // namespace pybind11::detail
