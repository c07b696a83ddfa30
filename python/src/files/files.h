#pragma once

#include "python.h"

namespace bk_python {

/// The type Problem.
void define_problems(py::module_& module);
/// load, parse and the fields of a Document that say where it came from.
void define_load(py::module_& module);
/// Document.save and its kin.
void define_save();
/// The binary form in memory, for pickling.
void define_bytes(py::module_& module);

} // namespace bk_python
