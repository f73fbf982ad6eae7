// How numbers, texts and the component's own objects come from Python.
#include "python/arguments.h"

#include <stdexcept>

#include "python/binding.h"

namespace kv_tr::python {
namespace {

/// Whether Python could make a float of the object although it is no real number.
bool OnlyLooksLikeNumber(py::handle source) {
    if (PyUnicode_Check(source.ptr()) || PyComplex_Check(source.ptr())) return true;
    if (!py::hasattr(source, "dtype")) return false;
    const auto kind = py::str(source.attr("dtype").attr("kind")).cast<std::string>();
    return kind.find_first_not_of("biufO") != std::string::npos;
}

}  // namespace

std::string IntegerText(const py::object& integer) {
    PyObject* text = PyObject_Str(integer.ptr());
    if (text == nullptr) {
        PyErr_Clear();
        return "an integer of thousands of digits";
    }
    const auto digits = py::reinterpret_steal<py::str>(text).cast<std::string>();
    constexpr std::size_t kShown = 30;
    return digits.size() <= kShown ? digits
                                   : "an integer of " + std::to_string(digits.size()) + " digits";
}

bool LoadNumber(py::handle source, double& value) {
    PyObject* object = source.ptr();
    if (PyFloat_CheckExact(object) == 0 && PyLong_CheckExact(object) == 0 &&
        OnlyLooksLikeNumber(source)) {
        return false;
    }
    value = PyFloat_AsDouble(object);
    if (value != -1.0 || PyErr_Occurred() == nullptr) return true;
    if (PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
        PyErr_Clear();
        return false;
    }
    if (PyErr_ExceptionMatches(PyExc_OverflowError) == 0) throw py::error_already_set();
    PyErr_Clear();
    const bool isInteger = PyLong_Check(object) != 0;
    throw std::overflow_error(
        (isInteger ? IntegerText(py::reinterpret_borrow<py::object>(source)) : TypeNameOf(source)) +
        " is too large for a float");
}

bool LoadInteger(py::handle source, std::int64_t least, std::int64_t greatest,
                 std::int64_t& value) {
    if (PyIndex_Check(source.ptr()) == 0) return false;
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(source.ptr()));
    if (!number) throw py::error_already_set();
    int overflow = 0;
    value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    if (overflow == 0 && value >= least && value <= greatest) return true;
    throw std::overflow_error(IntegerText(number) + " is out of range, integers from " +
                              std::to_string(least) + " to " + std::to_string(greatest) +
                              " are accepted");
}

void RefuseSurrogates(py::handle source) {
    if (PyUnicode_Check(source.ptr()) == 0) return;
    throw py::value_error(py::repr(source).cast<std::string>() +
                          " has lone surrogates, which are no characters");
}

void RefuseEmpty(py::handle source, const std::type_info& type) {
    auto* object = reinterpret_cast<py::detail::instance*>(source.ptr());
    const auto* known = py::detail::get_type_info(type);
    if (object->get_value_and_holder(known, false).value_ptr() != nullptr) return;
    throw py::type_error("this " + TypeNameOf(source) + " is empty: its __init__ was not called");
}

}  // namespace kv_tr::python
