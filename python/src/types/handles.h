#pragma once

#include "python.h"
#include "tree/tree.h"

namespace bk_python {

/// What every Python object of a tree begins with. None of them refers to a Python object that could lead back to it, so
/// that the collector has nothing to do with them.
struct Handle {
    PyObject_HEAD Tree* tree; // counted
};

/// Stands for an entry; there is one for each entry at a time, so that `is` tells entries apart.
struct EntryObject {
    Handle head;
    ParserEntry* entry;
    ParserGroup* parent;       // that lists the entry; null for an entry that was taken out
    unsigned int position;     // where it was seen last
    unsigned int export_count; // buffers of its values, which may not change meanwhile
};

/// Stands for a group. The one of a document's root is of the type Document.
struct GroupObject {
    Handle head;
    ParserGroup* group;
};

/// What the module makes once, and what it counts.
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

/// The tree of a handle, when no save works on it. What a handle stands for may be looked at after this, until Python code
/// runs again.
inline Tree& use(Handle& handle) {
    while (handle.tree->is_busy) {
        wait_until_free(*handle.tree);
    }
    return *handle.tree;
}
/// Neither is being saved when this is done.
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

/// New references.
py::object entry_handle(Tree& tree, ParserEntry& entry, ParserGroup* parent, unsigned int position);
py::object group_handle(Tree& tree, ParserGroup& group);
py::object visit_handle(Tree& tree, const bk_parser::Visit& visit);
/// Of a new tree, which is this handle's from then on.
py::object document_handle(bk_parser::LoadResult loaded);
py::object detached_handle(std::unique_ptr<ParserEntry> entry, std::uint64_t origin = 0);

/// Where an entry stands in the group that lists it.
unsigned int position_of(EntryObject& handle);
/// The entry that holds a group, or None.
py::object holder_handle(Tree& tree, ParserGroup& group);

/// Slots that all handles share.
void free_entry(PyObject* self) noexcept;
void free_group(PyObject* self) noexcept;

/// The group whose entries a Group, a Document or an Entry is asked for: of an entry its first one. Null for an entry
/// without a group.
struct Container {
    PyObject* self = nullptr;

    Tree& tree() const { return use(*reinterpret_cast<Handle*>(self)); }
    ParserGroup* group() const {
        tree();
        return is_entry(self) ? first_group(*reinterpret_cast<EntryObject*>(self)->entry)
                              : reinterpret_cast<GroupObject*>(self)->group;
    }
    /// Gives an entry without a group one.
    ParserGroup& made_group() const;
    /// Takes that one away again.
    void remove_made_group() const;
};

/// The object that a method is called on, which is of that type.
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
