#include "types/container.h"

#include "tree/edits.h"
#include "types/entries.h"
#include "types/equal.h"
#include "types/search.h"
#include "values/convert.h"

namespace bk_python {

namespace {

/// The first entry that a path finds, or null.
py::object find_first(const Container& container, const bk_parser::Path& path) {
    if (const ParserGroup* const group = container.group()) {
        bk_parser::PathSearch search(*group, path);
        if (search.next()) {
            return visit_handle(container.tree(), search.visit());
        }
    }
    return py::object();
}

/// Converts a Python index into a position of a container.
unsigned int entry_index(Py_ssize_t index, const ParserGroup* group) {
    const auto count = static_cast<Py_ssize_t>(group == nullptr ? 0 : group->get_entries().get_count());
    index += index < 0 ? count : 0;
    if (index < 0 || index >= count) {
        fail(PyExc_IndexError, "the group has no such entry");
    }
    return static_cast<unsigned int>(index);
}

py::object entry_at(const Container& container, Py_ssize_t index) {
    ParserGroup* const group = container.group();
    const unsigned int position = entry_index(index, group);
    return entry_handle(container.tree(), *group->get_entries()[position], group, position);
}

Py_ssize_t as_index(PyObject* key) {
    const Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
    if (index == -1 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    return index;
}

py::list list_of(PyObject* self) {
    py::list list;
    const py::object iterator = iterate(self);
    while (PyObject* const entry = PyIter_Next(iterator.ptr())) {
        list.append(py::reinterpret_steal<py::object>(entry));
    }
    if (PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    return list;
}

[[noreturn]] void fail_key(py::handle path) {
    PyErr_SetObject(PyExc_KeyError, path.ptr());
    throw py::error_already_set();
}

void assign(const Container& container, py::handle key, PyObject* content) {
    const bk_parser::Path path = checked_path(key);
    const Given given{py::handle(content)};
    unsigned int value = 0;
    ParserGroup* const there = container.group();
    Tree& tree = container.tree();
    if (there != nullptr) {
        if (const ParserEntry* const entry = bk_parser::access::find_value(*there, path, value)) {
            store(tree, const_cast<ParserEntry&>(*entry), value, given.values(), given.end());
            return;
        }
        begin_edit(tree);
        refuse_exported_way(tree, *there, path);
    }
    ParserGroup& group = container.made_group();
    if (!bk_parser::access::set_values(group, path, given.values(), given.end())) {
        if (there == nullptr) {
            container.remove_made_group();
        }
        refuse_numbers(given.values());
        fail(PyExc_ValueError,
             "there is no such entry, and it cannot be made: a path to make has names, at most with a "
             "template, a key or the next number");
    }
}

void remove_found(const Container& container, PyObject* key) {
    const bk_parser::Path path = checked_path(key);
    const ParserGroup* const group = container.group();
    Tree& tree = container.tree();
    bk_parser::Visit visit;
    {
        std::optional<bk_parser::PathSearch> search;
        if (group == nullptr || !search.emplace(*group, path).next()) {
            fail_key(key);
        }
        visit = search->visit();
    }
    if (visit.value() == bk_parser::Visit::whole_entry) {
        remove_entry(tree, visit.parent(), visit.position());
    } else {
        remove_value(tree, visit.entry(), visit.value());
    }
}

void remove_item(const Container& container, PyObject* key) {
    if (PyUnicode_Check(key)) {
        remove_found(container, key);
        return;
    }
    const Py_ssize_t index = as_index(key);
    ParserGroup* const group = container.group();
    const unsigned int position = entry_index(index, group);
    remove_entry(container.tree(), *group, position);
}

} // namespace

bk_parser::Path checked_path(py::handle text) {
    if (!PyUnicode_Check(text.ptr())) {
        fail(PyExc_TypeError, std::string("a path is a str, not ") + Py_TYPE(text.ptr())->tp_name);
    }
    const std::string spelled = text_from(text);
    bk_parser::Path path(spelled);
    if (!path.ok()) {
        PyErr_SetObject(types.path_error, text_of(bk_parser::to_text(*path.error(), spelled)).ptr());
        throw py::error_already_set();
    }
    return path;
}

PyObject* get_item(PyObject* self, PyObject* key) noexcept {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        const Container container{self};
        if (PyUnicode_Check(key)) {
            py::object found = find_first(container, checked_path(key));
            if (!found) {
                fail_key(key);
            }
            return found.release().ptr();
        }
        if (PySlice_Check(key)) {
            return stolen(PyObject_GetItem(list_of(self).ptr(), key)).release().ptr();
        }
        return entry_at(container, as_index(key)).release().ptr();
    });
}

int set_item(PyObject* self, PyObject* key, PyObject* content) noexcept {
    return guarded<int>(-1, [&] {
        if (content == nullptr) {
            remove_item(Container{self}, key);
        } else {
            assign(Container{self}, key, content);
        }
        return 0;
    });
}

int has_item(PyObject* self, PyObject* key) noexcept {
    return guarded<int>(-1, [&] {
        const Container container{self};
        if (is_entry(key)) {
            const EntryObject& entry = use_entry(key);
            return entry.parent != nullptr && entry.parent == container.group() ? 1 : 0;
        }
        const bk_parser::Path path = checked_path(key);
        const ParserGroup* const group = container.group();
        unsigned int value = 0;
        return group != nullptr && bk_parser::access::find_value(*group, path, value) != nullptr ? 1 : 0;
    });
}

Py_ssize_t count_items(PyObject* self) noexcept {
    return guarded<Py_ssize_t>(-1, [&] {
        const ParserGroup* const group = Container{self}.group();
        return static_cast<Py_ssize_t>(group == nullptr ? 0 : group->get_entries().get_count());
    });
}

PyObject* iterate_items(PyObject* self) noexcept {
    return guarded<PyObject*>(nullptr, [&] { return iterate(self).release().ptr(); });
}

PyObject* compare_trees(PyObject* self, PyObject* other, int operation) noexcept {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        const bool are_entries = is_entry(self) && is_entry(other);
        const bool are_groups = is_group(self) && is_group(other);
        if ((operation != Py_EQ && operation != Py_NE) || (!are_entries && !are_groups)) {
            return Py_NewRef(Py_NotImplemented);
        }
        use_both(*reinterpret_cast<Handle*>(self), *reinterpret_cast<Handle*>(other));
        const bool is_same = are_entries ? are_equal(*reinterpret_cast<EntryObject*>(self)->entry,
                                                     *reinterpret_cast<EntryObject*>(other)->entry)
                                         : are_equal(*reinterpret_cast<GroupObject*>(self)->group,
                                                     *reinterpret_cast<GroupObject*>(other)->group);
        return PyBool_FromLong(is_same == (operation == Py_EQ) ? 1 : 0);
    });
}

} // namespace bk_python
