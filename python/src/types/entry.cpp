#include "types/container.h"

#include "tree/edits.h"
#include "types/values.h"
#include "values/convert.h"

#include <pybind11/stl/filesystem.h>

namespace bk_python {

namespace {

constexpr std::size_t shown_characters = 60;

/// A getter that returns get(entry).
template <py::object (*get)(EntryObject&)>
PyObject* getter(PyObject* self, void*) {
    return guarded<PyObject*>(nullptr, [&] { return get(use_entry(self)).release().ptr(); });
}

using Setter = void (*)(PyObject* self, py::handle content);

template <Setter set>
int setter(PyObject* self, PyObject* content, void*) {
    return guarded<int>(-1, [&] {
        if (content == nullptr) {
            fail(PyExc_AttributeError, "an entry has this as long as it is there");
        }
        set(self, content);
        return 0;
    });
}

py::object name_of(EntryObject& handle) {
    return text_of(handle.entry->get_name().get_view());
}

void set_name(PyObject* self, py::handle content) {
    const std::string name = text_from(content);
    EntryObject& handle = use_entry(self);
    if (!bk_parser::rename(*handle.entry, name)) {
        fail(PyExc_ValueError, "that is no name for this entry: names are letters, digits, '_' and '.', with "
                               "a '#' for keywords");
    }
    handle.head.tree->forget_paths();
}

py::object kind_of(EntryObject& handle) {
    switch (handle.entry->get_type()) {
    case ParserEntry::TYPE_KEYWORD:
        return py::str("keyword");
    case ParserEntry::TYPE_FUNCTION_CALL:
        return py::str("call");
    case ParserEntry::TYPE_RAW_TEXT:
        return py::str("raw");
    default:
        return py::str("entry");
    }
}

py::object template_of(EntryObject& handle) {
    return handle.entry->is_template() ? py::object(text_of(handle.entry->get_template().get_view()))
                                       : py::none();
}

void set_template(PyObject* self, py::handle content) {
    const std::string name = content.is_none() ? std::string() : text_from(content);
    ParserEntry tried(CoreString(std::string_view("entry")), ParserEntry::TYPE_ENTRY, 0, 0);
    if (!name.empty() && !bk_parser::rename(tried, name)) {
        fail(PyExc_ValueError, "that is no name for a template: names are letters, digits, '_' and '.'");
    }
    EntryObject& handle = use_entry(self);
    handle.entry->set_template(CoreString(std::string_view(name)));
    handle.head.tree->forget_paths();
}

py::object array_count_of(EntryObject& handle) {
    return handle.entry->is_array() ? py::object(py::int_(handle.entry->get_array_count())) : py::none();
}

py::object values_of(EntryObject& handle) {
    return values_handle(reinterpret_cast<PyObject*>(&handle));
}

void set_values(PyObject* self, py::handle content) {
    // `entry.values += [1]` assigns the list of values to itself after changing it.
    if (Py_IS_TYPE(content.ptr(), types.values) &&
        reinterpret_cast<ValuesObject*>(content.ptr())->entry == self) {
        return;
    }
    const Given given(content);
    EntryObject& handle = use_entry(self);
    store(*handle.head.tree, *handle.entry, 0, given.values(), bk_parser::access::ListEnd::cut);
}

py::object first_value(EntryObject& handle) {
    return handle.entry->has_value() ? value_of(*handle.head.tree, *handle.entry, 0) : py::none();
}

void set_first_value(PyObject* self, py::handle content) {
    const Given given(content);
    EntryObject& handle = use_entry(self);
    store(*handle.head.tree, *handle.entry, 0, given.values(), given.end());
}

py::object group_of(EntryObject& handle) {
    ParserGroup* const group = first_group(*handle.entry);
    return group == nullptr ? py::none() : group_handle(*handle.head.tree, *group);
}

py::object parent_of(EntryObject& handle) {
    return handle.parent == nullptr ? py::none() : holder_handle(*handle.head.tree, *handle.parent);
}

py::object path_of(EntryObject& handle) {
    return text_of(handle.head.tree->path_of(*handle.entry));
}

py::object document_of(EntryObject& handle) {
    Tree& tree = *handle.head.tree;
    return tree.document() == nullptr ? py::none() : group_handle(tree, *tree.root());
}

bk_parser::EntryPlace place_of(EntryObject& handle) {
    const bk_parser::Document* const document = handle.head.tree->document();
    return document == nullptr ? bk_parser::EntryPlace() : bk_parser::place_of(*document, *handle.entry);
}

py::object line_of(EntryObject& handle) {
    const bk_parser::EntryPlace place = place_of(handle);
    return place.is_known() ? py::object(py::int_(place.line)) : py::none();
}

py::object column_of(EntryObject& handle) {
    const bk_parser::EntryPlace place = place_of(handle);
    return place.is_known() ? py::object(py::int_(place.column)) : py::none();
}

py::object file_of(EntryObject& handle) {
    const bk_parser::EntryPlace place = place_of(handle);
    return place.is_known() && !place.file.empty() ? py::cast(place.file) : py::none();
}

std::string shortened(std::string_view name) {
    return name.size() <= shown_characters ? std::string(name)
                                           : std::string(name.substr(0, shown_characters)) + "...";
}

/// The repr: the head and, if short, the values.
PyObject* represent(PyObject* self) noexcept {
    return guarded<PyObject*>(nullptr, [&] {
        const EntryObject& handle = use_entry(self);
        const ParserEntry& entry = *handle.entry;
        std::string text = shortened(entry.get_name().get_view());
        if (entry.is_template()) {
            text += "<" + shortened(entry.get_template().get_view()) + ">";
        }
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            if (text.size() > shown_characters) {
                text += " ...";
                break;
            }
            ParserGroup* group = nullptr;
            if (bk_parser::access::read(entry, i, group)) {
                const unsigned int count = group->get_entries().get_count();
                text += " {" + std::to_string(count) + (count == 1 ? " entry}" : " entries}");
            } else {
                const py::object value = value_of(*handle.head.tree, entry, i);
                text += " " + text_from(py::repr(value)).substr(0, 2 * shown_characters);
            }
        }
        return stolen(PyUnicode_DecodeUTF8(("<bk_parser.Entry " + text + ">").data(),
                                           static_cast<Py_ssize_t>(text.size() + 18), "replace"))
            .release()
            .ptr();
    });
}

/// An entry without entries inside is still true, unlike an empty list.
int is_true(PyObject*) noexcept {
    return 1;
}

PyObject* new_entry(PyTypeObject*, PyObject* arguments, PyObject* names) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        const py::tuple given = py::reinterpret_borrow<py::tuple>(arguments);
        if (given.empty() || !PyUnicode_Check(given[0].ptr()) ||
            (names != nullptr && PyDict_Size(names) != 0)) {
            fail(PyExc_TypeError, "Entry(name, *values)");
        }
        const bk_parser::Path path = checked_path(given[0]);
        const Given values(given[py::slice(1, std::nullopt, std::nullopt)]);
        ParserGroup group{CoreString()};
        if (bk_parser::access::add_values(group, path, values.values()) == nullptr ||
            path.text().find('/') != path.text().npos) {
            refuse_numbers(values.values());
            fail(PyExc_ValueError, "Entry takes a name, at most with a template or a key");
        }
        return detached_handle(bk_parser::take(group, 0u)).release().ptr();
    });
}

PyGetSetDef fields[] = {
    {"name", getter<name_of>, setter<set_name>, "The name, of a keyword with its '#'.", nullptr},
    {"kind", getter<kind_of>, nullptr, "'entry', 'keyword', 'call' or 'raw'.", nullptr},
    {"template", getter<template_of>, setter<set_template>, "The template's name, or None.", nullptr},
    {"array_count", getter<array_count_of>, nullptr,
     "The declared size of an array, 0 when none was stated; None for no array.", nullptr},
    {"values", getter<values_of>, setter<set_values>, "The values, as a list that stays one with the entry.",
     nullptr},
    {"value", getter<first_value>, setter<set_first_value>,
     "The first value, or None. A list that is assigned replaces all.", nullptr},
    {"group", getter<group_of>, nullptr, "The first group among the values, or None.", nullptr},
    {"parent", getter<parent_of>, nullptr,
     "The entry whose group lists this one; None at the top, and for a detached one.", nullptr},
    {"path", getter<path_of>, nullptr,
     "The path that finds this entry from the document's root, and no other.", nullptr},
    {"document", getter<document_of>, nullptr, "The document; None for a detached entry.", nullptr},
    {"line", getter<line_of>, nullptr,
     "The line of its file, from 1; None where that is not known, as after a save.", nullptr},
    {"column", getter<column_of>, nullptr, "The column in characters, from 1, or None.", nullptr},
    {"file", getter<file_of>, nullptr, "The file that it was read from, or None.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

} // namespace

PyTypeObject* make_entry_type() {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_entry)},
        {Py_tp_new, reinterpret_cast<void*>(new_entry)},
        {Py_tp_repr, reinterpret_cast<void*>(represent)},
        {Py_tp_richcompare, reinterpret_cast<void*>(compare_trees)},
        {Py_tp_hash, reinterpret_cast<void*>(PyObject_HashNotImplemented)},
        {Py_tp_iter, reinterpret_cast<void*>(iterate_items)},
        {Py_tp_getset, fields},
        {Py_nb_bool, reinterpret_cast<void*>(is_true)},
        {Py_mp_length, reinterpret_cast<void*>(count_items)},
        {Py_mp_subscript, reinterpret_cast<void*>(get_item)},
        {Py_mp_ass_subscript, reinterpret_cast<void*>(set_item)},
        {Py_sq_contains, reinterpret_cast<void*>(has_item)},
        {Py_tp_doc,
         const_cast<char*>(
             "An entry: a name, values, and, when one of the values is a group, the entries in it.\n\n"
             "Entry('light<spot>', 1, 2.5) makes a detached one, which Group.append takes in.")},
        {0, nullptr},
    };
    static PyType_Spec spec = {"bk_parser._core.Entry", sizeof(EntryObject), 0, Py_TPFLAGS_DEFAULT, slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

void define_entry_methods() {
    const auto type = reinterpret_cast<PyObject*>(types.entry);
    define_container_methods(type);
    define(
        type, "remove",
        [](const EntrySelf& self) {
            EntryObject& handle = use_entry(self.ptr());
            if (handle.parent != nullptr) {
                remove_entry(*handle.head.tree, *handle.parent, position_of(handle));
            }
            return py::reinterpret_borrow<py::object>(self.ptr());
        },
        "Takes the entry out of its group, and gives it back: it lives on, detached, as long as it is kept.");
    define(
        type, "copy",
        [](const EntrySelf& self) { return detached_handle(copy_of(*use_entry(self.ptr()).entry)); },
        "A deep copy, detached.");
    define(type, "__copy__",
           [](const EntrySelf& self) { return detached_handle(copy_of(*use_entry(self.ptr()).entry)); });
    define(
        type, "__deepcopy__",
        [](const EntrySelf& self, const py::object&) {
            return detached_handle(copy_of(*use_entry(self.ptr()).entry));
        },
        py::arg("memo"));
    define(
        type, "add_group",
        [](const EntrySelf& self) {
            EntryObject& handle = use_entry(self.ptr());
            ParserGroup& group = add_group(handle);
            return group_handle(*handle.head.tree, group);
        },
        "Adds a group to the values, and gives it.");
}

} // namespace bk_python
