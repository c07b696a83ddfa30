#pragma once

#include "types/handles.h"

#include <vector>

namespace bk_python {

/// The iterator of find_all. It searches step by step until the tree is edited. Before the edit it finds the rest at once, so
/// that it returns what was there before.
struct Search {
    Handle head;
    PyObject* container; // owned reference; keeps the searched group alive
    bk_parser::PathSearch* cursor;
    std::vector<PyObject*>* found; // owned references found ahead; null before that
    std::size_t given;             // how many of these were returned, and are no longer owned
    Search** place;                // the pointer in the list that refers to this; null outside of the list
    Search* next;

    /// Finds the rest. When memory runs out, keeps what was found, and the search can go on.
    void settle();
    /// Removes this from the tree's list, and deletes the cursor.
    void end() noexcept;
};

py::object find_all(const Container& container, const bk_parser::Path& path);
PyTypeObject* make_search_type();

} // namespace bk_python
