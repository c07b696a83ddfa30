#pragma once

#include "python.h"

#include "document/load.h"

namespace bk_python {

/// Makes a Python Problem. Only loads and saves make them.
PyTypeObject* make_problem_type();
void define_problems(py::module_& module);
py::object problem_object(bk_parser::Problem problem);
std::vector<bk_parser::Problem> problems_from(const py::list& list);
/// load, parse, and the fields of a Document about its origin.
void define_load(py::module_& module);
/// Returns the document, or raises LoadError when nothing could be read.
py::object loaded_document(bk_parser::LoadResult loaded);
/// Document.save and related methods.
void define_save();
/// Pickling, by the binary form in memory.
void define_bytes(py::module_& module);

/// JSON, in both directions.
void define_json(py::module_& module);

} // namespace bk_python
