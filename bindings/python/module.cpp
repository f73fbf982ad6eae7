// The Python module behind the package kv_tr.
#include <algorithm>

#include "kv_tr/text/version.h"
#include "python/binding.h"

namespace {

namespace py = pybind11;

/// Pickles all classes as protocol 2 does. Below, Python makes an object of their common base,
/// which ends the program.
void KeepFromOldPickling(const py::module_& module) {
    const py::handle base = py::detail::get_internals().instance_base;
    const py::dict members = module.attr("__dict__");
    for (const auto& [name, member] : members) {
        if (!PyType_Check(member.ptr()) || PyObject_IsSubclass(member.ptr(), base.ptr()) != 1) {
            continue;
        }
        const auto reduce = [](const py::object& self, std::int32_t protocol) {
            const auto object = py::module_::import("builtins").attr("object");
            return object.attr("__reduce_ex__")(self, std::max(protocol, 2));
        };
        member.attr("__reduce_ex__") =
            py::cpp_function(reduce, py::name("__reduce_ex__"), py::is_method(member));
    }
}

}  // namespace

PYBIND11_MODULE(_kv_tr, module) {
    using namespace kv_tr::python;
    const py::object name = module.attr("__name__");
    module.attr("__name__") = "kv_tr";  // what classes and functions say they belong to
    module.attr("__version__") = kv_tr::Version();
    AddEnumerations(module);
    AddErrors(module);
    AddRecords(module);
    AddClsTrCalc(module);
    AddClsTr(module);
    AddFunctions(module);
    AddPorts(module);
    AddTransformation(module);
    AddInverse(module);
    AddFit(module);
    AddPointFiles(module);
    KeepFromOldPickling(module);
    module.attr("__name__") = name;
}
