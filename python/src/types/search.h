#pragma once

#include "types/handles.h"

#include <vector>

namespace bk_python {

/// What find_all gives: a search that goes on at each step, until the tree is edited. Then it finds the rest at once and gives
/// that out, so that what it gives is what was there before the edit.
struct Search {
    Handle head;
    PyObject* container; // counted; keeps the group that is searched
    bk_parser::PathSearch* cursor;
    std::vector<PyObject*>* found; // counted; what was found ahead, null before that
    std::size_t given;             // how many of these were given out, and are not counted any more
    Search** place; // the pointer of the list that points here; null when it is not in the list
    Search* next;

    /// Finds the rest. When memory ends, what was found stays, and the search can go on.
    void settle();
    /// Out of the tree's list, without a cursor.
    void end() noexcept;
};

py::object find_all(const Container& container, const bk_parser::Path& path);
PyTypeObject* make_search_type();

} // namespace bk_python
