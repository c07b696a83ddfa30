#pragma once

#include "types/handles.h"

namespace bk_python {

/// The list of values of an entry, as Entry.values shows it. It stays a view of the entry.
struct ValuesObject {
    PyObject_HEAD PyObject* entry; // owned reference
};

py::object values_handle(PyObject* entry);
PyTypeObject* make_values_type();
/// The methods besides the slots.
void define_values_methods();

/// The buffer of values that are all numbers of one type, without a copy.
int get_numbers(PyObject* self, Py_buffer* view, int flags) noexcept;
void release_numbers(PyObject* self, Py_buffer* view) noexcept;

} // namespace bk_python
