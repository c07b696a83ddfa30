#pragma once

#include "python.h"
#include "tree/tree.h"

namespace bk_python {

/// The common head of all Python objects of a tree. None of them refers to a Python object that could refer back, so they need
/// no garbage collection.
struct Handle {
    PyObject_HEAD Tree* tree; // counted
};

/// The handle of an entry. An entry has at most one at a time, so that `is` compares entries.
struct EntryObject {
    Handle head;
    ParserEntry* entry;
    ParserGroup* parent;       // the group with the entry; null for an entry that was taken out
    unsigned int position;     // last known position
    unsigned int export_count; // exported buffers; while there are any, the values must not change
};

/// The handle of a group. That of a document's root has the type Document.
struct GroupObject {
    Handle head;
    ParserGroup* group;
};

/// The state of the module.
struct Types {
    PyTypeObject* group = nullptr;
    PyTypeObject* document = nullptr;
    PyTypeObject* entry = nullptr;
    PyTypeObject* values = nullptr;
    PyTypeObject* entries = nullptr;
    PyTypeObject* walk = nullptr;
    PyTypeObject* search = nullptr;
    PyTypeObject* problem = nullptr;
    std::size_t export_count = 0; // of all entries
    PyObject* path_error = nullptr;
    PyObject* load_error = nullptr;
    PyObject* load_cancelled = nullptr;
    PyObject* save_error = nullptr;
};
extern Types types;

inline bool is_entry(PyObject* object) noexcept {
    return Py_IS_TYPE(object, types.entry);
}
inline bool is_group(PyObject* object) noexcept {
    return PyObject_TypeCheck(object, types.group) != 0;
}

/// Waits until no save works on the tree, and returns it. Afterwards the caller may use the tree until Python code runs again.
inline Tree& use(Handle& handle) {
    while (handle.tree->is_busy) {
        wait_until_free(*handle.tree);
    }
    return *handle.tree;
}
/// Waits until no save works on either tree.
inline void use_both(Handle& one, Handle& other) {
    while (one.tree->is_busy || other.tree->is_busy) {
        use(one);
        use(other);
    }
}
inline EntryObject& use_entry(PyObject* self) {
    auto& handle = *reinterpret_cast<EntryObject*>(self);
    use(handle.head);
    return handle;
}
inline GroupObject& use_group(PyObject* self) {
    auto& handle = *reinterpret_cast<GroupObject*>(self);
    use(handle.head);
    return handle;
}

/// These return new references.
py::object entry_handle(Tree& tree, ParserEntry& entry, ParserGroup* parent, unsigned int position);
py::object group_handle(Tree& tree, ParserGroup& group);
py::object visit_handle(Tree& tree, const bk_parser::Visit& visit);
/// Makes the handle of a new tree, and gives it the tree.
py::object document_handle(bk_parser::LoadResult loaded);
py::object detached_handle(std::unique_ptr<ParserEntry> entry, std::uint64_t origin = 0);

/// The position of an entry in its group.
unsigned int position_of(EntryObject& handle);
/// The entry that holds a group, or None.
py::object holder_handle(Tree& tree, ParserGroup& group);

/// Slots of all handles.
void free_entry(PyObject* self) noexcept;
void free_group(PyObject* self) noexcept;

/// The group whose entries a Group, a Document or an Entry shows; for an Entry its first group. Null for an entry without a
/// group.
struct Container {
    PyObject* self = nullptr;

    Tree& tree() const { return use(*reinterpret_cast<Handle*>(self)); }
    ParserGroup* group() const {
        tree();
        return is_entry(self) ? first_group(*reinterpret_cast<EntryObject*>(self)->entry)
                              : reinterpret_cast<GroupObject*>(self)->group;
    }
    /// Adds a group to an entry that has none.
    ParserGroup& made_group() const;
    /// Removes that group again.
    void remove_made_group() const;
};

/// The object of a method call, which has this type.
template <PyTypeObject* Types::*type>
struct Self {
    PyObject* object = nullptr;
    PyObject* ptr() const noexcept { return object; }
};
using EntrySelf = Self<&Types::entry>;
using GroupSelf = Self<&Types::group>;
using DocumentSelf = Self<&Types::document>;
using ValuesSelf = Self<&Types::values>;
using ProblemSelf = Self<&Types::problem>;

} // namespace bk_python

namespace pybind11::detail {
template <PyTypeObject* bk_python::Types::*type>
struct type_caster<bk_python::Self<type>> {
    PYBIND11_TYPE_CASTER(bk_python::Self<type>, const_name("object"));
    bool load(handle source, bool) {
        value.object = source.ptr();
        return PyObject_TypeCheck(value.object, bk_python::types.*type) != 0;
    }
};
template <>
struct type_caster<bk_python::Container> {
    PYBIND11_TYPE_CASTER(bk_python::Container, const_name("Group | Entry"));
    bool load(handle source, bool) {
        value.self = source.ptr();
        return bk_python::is_entry(value.self) || bk_python::is_group(value.self);
    }
};
} // namespace pybind11::detail
