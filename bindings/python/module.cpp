// The Python module behind the package kv_tr.
#include "python/binding.h"

PYBIND11_MODULE(_kv_tr, module) {
    using namespace kv_tr::python;
    const py::object name = module.attr("__name__");
    module.attr("__name__") = "kv_tr";  // what classes and functions say they belong to
    module.attr("__version__") = KV_TR_VERSION;
    AddEnumeration(module);
    AddErrors(module);
    AddRecords(module);
    AddEngine(module);
    AddTransformation(module);
    AddFunctions(module);
    AddPorts(module);
    module.attr("__name__") = name;
}
