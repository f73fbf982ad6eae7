// What a fit is worth, for Python: its check, its warnings, its statistics and the types compared.
#pragma once

#include "kv_tr/fit/truth_check.h"
#include "kv_tr/text/texts.h"
#include "python/binding.h"

namespace kv_tr::python {

/// Python's TruthCheck.
py::object CheckOf(const TruthCheck& check);

/// The texts of the component's language; English ones before it has one.
TextLookup ShownTexts();

/// Adds the functions that the package's _fit.py asks for the rest.
void AddWorth(py::module_& module);

}  // namespace kv_tr::python
