#pragma once

#include "types/handles.h"

namespace bk_python {

/// The slots of Group, Document and Entry.
PyObject* get_item(PyObject* self, PyObject* key) noexcept;
int set_item(PyObject* self, PyObject* key, PyObject* content) noexcept;
int has_item(PyObject* self, PyObject* key) noexcept;
Py_ssize_t count_items(PyObject* self) noexcept;
PyObject* iterate_items(PyObject* self) noexcept;
PyObject* compare_trees(PyObject* self, PyObject* other, int operation) noexcept;

/// The methods of Group, Document and Entry.
void define_container_methods(PyObject* type);

PyTypeObject* make_group_type();
PyTypeObject* make_document_type(PyTypeObject* group);
PyTypeObject* make_entry_type();
void define_group_methods();
void define_entry_methods();

/// The group below the container that has the entry, which must be somewhere in it.
ParserGroup* parent_group(ParserGroup& group, const ParserEntry& entry);
/// Parses a path; PathError when it is malformed.
bk_parser::Path checked_path(py::handle text);

} // namespace bk_python
