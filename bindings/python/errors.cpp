// The component's run-time errors as a Python exception with their number.
#include "kv_tr/published/errors.h"

#include "python/binding.h"

namespace kv_tr::python {

void AddErrors(py::module_& module) {
    const auto type = py::reinterpret_steal<py::object>(PyErr_NewExceptionWithDoc(
        "kv_tr.RuntimeError",
        "An error that the component does not handle itself. `number` tells the cases apart:\n"
        "9 an index beyond an array or pairs that were let go, 11 a division by zero, 52 a file\n"
        "that is not open, 57 and 61 the system failed to read or to write, 91 an engine that was\n"
        "torn down, 326 a text that no string table has.",
        PyExc_RuntimeError, nullptr));
    if (!type) throw py::error_already_set();
    module.attr("RuntimeError") = type;

    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            std::rethrow_exception(thrown);
        } catch (const RuntimeError& error) {
            const py::object raised = Module().attr("RuntimeError")(error.what());
            raised.attr("number") = static_cast<int>(error.Number());
            PyErr_SetObject(py::type::handle_of(raised).ptr(), raised.ptr());
        }
    });
}

}  // namespace kv_tr::python
