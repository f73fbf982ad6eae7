// What the parts of the Python module share.
#pragma once

#include <pybind11/pybind11.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/fit/fit.h"
#include "kv_tr/published/records.h"
#include "python/arguments.h"
#include "python/enumeration.h"

namespace kv_tr::python {

namespace py = pybind11;

// Each adds its part to the module.
void AddEnumerations(py::module_& module);
void AddErrors(py::module_& module);
void AddRecords(py::module_& module);
void AddClsTrCalc(py::module_& module);
void AddClsTr(py::module_& module);
void AddFunctions(py::module_& module);
void AddPorts(py::module_& module);
void AddTransformation(py::module_& module);
void AddInverse(py::module_& module);
void AddFit(py::module_& module);
void AddReport(py::module_& module);
void AddPointFiles(py::module_& module);

/// The component's own namespace in Python.
inline py::module_ Module() { return py::module_::import("kv_tr._kv_tr"); }

/// The name of the type of an object, for complaints.
std::string TypeNameOf(py::handle object);

/// What a Python object is in C++, without conversions; TypeError with its name when it is
/// something else. Other complaints get the name too.
template <class Value>
Value Converted(const py::object& given, const std::string& name, const char* wanted) {
    py::detail::make_caster<Value> caster;
    try {
        if (caster.load(given, false)) return py::detail::cast_op<Value>(std::move(caster));
    } catch (const std::overflow_error& error) {
        throw std::overflow_error(name + ": " + error.what());
    } catch (const py::value_error& error) {
        throw py::value_error(name + ": " + error.what());
    }
    throw py::type_error(name + " must be " + wanted + ", not " + TypeNameOf(given));
}

/// The solution that a word means, 'documented' or 'accurate'; ValueError with the name for others.
Solution SolutionFrom(const py::object& given, const std::string& name);

/// A property's setter, whose complaints name the property.
template <class Setter>
py::cpp_function Setting(const char* name, Setter setter) {
    return {setter, py::name(name)};
}

/// Adds a public variable of the class as a property.
template <class Class, class Value, class... Options>
void AddVariable(py::class_<Class, Options...>& type, const char* name, Value Class::*variable,
                 const char* doc) {
    type.def_property(
        name, [variable](const Class& self) { return self.*variable; },
        Setting(name, [variable](Class& self, const Value& value) { self.*variable = value; }),
        doc);
}

/// A coordinate that is a number; any other is ValueError with its name.
double Finite(double value, const std::string& name);

/// Copies of control points that come as records or as tuples of their fields. Anything else is
/// TypeError, a coordinate that is no finite number ValueError, each with index and field.
std::vector<typeXYs4Tr> PairsFrom(const py::iterable& given);

}  // namespace kv_tr::python
