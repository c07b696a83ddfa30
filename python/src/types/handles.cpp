#include "types/handles.h"

#include "tree/edits.h"

namespace bk_python {

Types types;

namespace {

/// The existing handle, or a new one.
template <class Object, class Fill>
py::object handle_of(Tree& tree, const void* target, PyTypeObject* type, const Fill& fill) {
    if (void* const there = tree.handles.find(target)) {
        auto* const object = static_cast<Object*>(there);
        fill(*object);
        return py::reinterpret_borrow<py::object>(static_cast<PyObject*>(there));
    }
    tree.handles.reserve(1);
    auto* const object = PyObject_New(Object, type);
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    tree.retain();
    object->head.tree = &tree;
    if constexpr (std::is_same_v<Object, EntryObject>) {
        object->export_count = 0;
    }
    fill(*object);
    tree.handles.add(target, object);
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(object));
}

void free_handle(PyObject* self, const void* target) noexcept {
    auto* const handle = reinterpret_cast<Handle*>(self);
    PyTypeObject* const type = Py_TYPE(self);
    handle->tree->handles.erase(target);
    Tree* const tree = handle->tree;
    PyObject_Free(self);
    Py_DECREF(type);
    tree->release();
}

} // namespace

py::object entry_handle(Tree& tree, ParserEntry& entry, ParserGroup* parent, unsigned int position) {
    return handle_of<EntryObject>(tree, &entry, types.entry, [&](EntryObject& handle) {
        handle.entry = &entry;
        handle.parent = parent;
        handle.position = position;
    });
}

py::object group_handle(Tree& tree, ParserGroup& group) {
    const bool is_document = tree.document() != nullptr && tree.root() == &group;
    return handle_of<GroupObject>(tree, &group, is_document ? types.document : types.group,
                                  [&](GroupObject& handle) { handle.group = &group; });
}

py::object visit_handle(Tree& tree, const bk_parser::Visit& visit) {
    return entry_handle(tree, visit.entry(), &visit.parent(), visit.position());
}

py::object document_handle(bk_parser::LoadResult loaded) {
    const TreeRef tree(new Tree(std::move(loaded)));
    return group_handle(*tree, *tree->root());
}

py::object detached_handle(std::unique_ptr<ParserEntry> entry, std::uint64_t origin) {
    ParserEntry& target = *entry;
    const TreeRef tree(new Tree(std::move(entry), origin));
    return entry_handle(*tree, target, nullptr, 0);
}

unsigned int position_of(EntryObject& handle) {
    const auto& entries = handle.parent->get_entries();
    const unsigned int count = entries.get_count();
    if (handle.position >= count || entries[handle.position] != handle.entry) {
        handle.position = 0;
        while (handle.position < count && entries[handle.position] != handle.entry) {
            ++handle.position;
        }
    }
    return handle.position;
}

py::object holder_handle(Tree& tree, ParserGroup& group) {
    const ParserEntry* const source = group.get_source_entry();
    if (void* const there = source == nullptr ? nullptr : tree.handles.find(source)) {
        bool is_holder = false;
        each_group(*source, [&](ParserGroup& held) { is_holder = is_holder || &held == &group; });
        if (is_holder) {
            return py::reinterpret_borrow<py::object>(static_cast<PyObject*>(there));
        }
    }
    const GroupPlace place = &group == tree.root() ? GroupPlace() : tree.place_of(group);
    if (place.holder == nullptr) {
        return py::none();
    }
    return entry_handle(tree, *place.holder, place.outer, 0);
}

void free_entry(PyObject* self) noexcept {
    free_handle(self, reinterpret_cast<EntryObject*>(self)->entry);
}

void free_group(PyObject* self) noexcept {
    free_handle(self, reinterpret_cast<GroupObject*>(self)->group);
}

ParserGroup& Container::made_group() const {
    if (ParserGroup* const there = group()) {
        return *there;
    }
    return add_group(*reinterpret_cast<EntryObject*>(self));
}

void Container::remove_made_group() const {
    ParserEntry& entry = *reinterpret_cast<EntryObject*>(self)->entry;
    remove_value(tree(), entry, entry.get_value_count() - 1);
}

} // namespace bk_python
