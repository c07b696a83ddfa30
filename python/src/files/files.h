#pragma once

#include "python.h"

#include "document/load.h"

namespace bk_python {

/// A Problem of Python. Only loads and saves make them.
PyTypeObject* make_problem_type();
void define_problems(py::module_& module);
py::object problem_object(bk_parser::Problem problem);
std::vector<bk_parser::Problem> problems_from(const py::list& list);
/// load, parse and the fields of a Document that say where it came from.
void define_load(py::module_& module);
/// The document, or LoadError when nothing could be read.
py::object loaded_document(bk_parser::LoadResult loaded);
/// Document.save and its kin.
void define_save();
/// The binary form in memory, for pickling.
void define_bytes(py::module_& module);

/// JSON, both ways.
void define_json(py::module_& module);

} // namespace bk_python
