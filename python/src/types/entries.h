#pragma once

#include "types/handles.h"

namespace bk_python {

/// The entries of a container, one at a time. An entry that moved within the group is followed; when it is gone, the next one
/// is that which stands at its place.
py::object iterate(PyObject* container);
/// Every entry below a container, an entry before what it holds; in each group as `iterate` goes.
py::object walk(const Container& container);

PyTypeObject* make_entries_type();
PyTypeObject* make_walk_type();

} // namespace bk_python
