#pragma once

#include "types/handles.h"

namespace bk_python {

/// Iterates over the entries of a container. Follows an entry that moved within its group. After a removed one, continues with
/// the entry at its position.
py::object iterate(PyObject* container);
/// Iterates over every entry below a container, parents first, in each group as `iterate` does.
py::object walk(const Container& container);

PyTypeObject* make_entries_type();
PyTypeObject* make_walk_type();

} // namespace bk_python
