#pragma once

#include "types/handles.h"

namespace bk_python {

/// The list of values of an entry, as Entry.values shows it: it stays one with the entry.
struct ValuesObject {
    PyObject_HEAD PyObject* entry; // counted
};

py::object values_handle(PyObject* entry);
PyTypeObject* make_values_type();
/// The methods that need no slot.
void define_values_methods();

/// The buffer of values that are numbers of one type, in place.
int get_numbers(PyObject* self, Py_buffer* view, int flags) noexcept;
void release_numbers(PyObject* self, Py_buffer* view) noexcept;

} // namespace bk_python
