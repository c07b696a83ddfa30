#include "types/container.h"

#include "tree/edits.h"
#include "types/entries.h"
#include "types/search.h"
#include "values/convert.h"
#include "values/text.h"

namespace bk_python {

namespace {

py::object get(const Container& self, const py::str& key, const py::object& fallback) {
    const bk_parser::Path path = checked_path(key);
    const ParserGroup* const group = self.group();
    unsigned int value = 0;
    const ParserEntry* const entry =
        group == nullptr ? nullptr : bk_parser::access::find_value(*group, path, value);
    return entry == nullptr || value >= entry->get_value_count() ? fallback
                                                                 : value_of(self.tree(), *entry, value);
}

py::object find(const Container& self, const py::str& key) {
    const bk_parser::Path path = checked_path(key);
    if (const ParserGroup* const group = self.group()) {
        bk_parser::PathSearch search(*group, path);
        if (search.next()) {
            return visit_handle(self.tree(), search.visit());
        }
    }
    return py::none();
}

py::object add(const Container& self, const py::str& key, const py::args& values) {
    const bk_parser::Path path = checked_path(key);
    const Given given{values.size() == 1 ? py::object(values[0]) : py::object(values)};
    const bool had_group = self.group() != nullptr;
    ParserGroup& group = self.made_group();
    Tree& tree = self.tree();
    begin_edit(tree);
    refuse_exported_way(tree, group, path);
    ParserEntry* const entry = values.empty() ? bk_parser::add(group, path)
                                              : bk_parser::access::add_values(group, path, given.values());
    if (entry == nullptr) {
        if (!had_group) {
            self.remove_made_group();
        }
        refuse_numbers(given.values());
        fail(PyExc_ValueError,
             "that path cannot be made: it has names, at most with a template, a key or the next number");
    }
    ParserGroup* const parent = parent_group(group, *entry);
    return entry_handle(tree, *entry, parent, parent->get_entries().get_count() - 1);
}

py::object insert(const Container& self, Py_ssize_t index, const py::object& given) {
    if (!is_entry(given.ptr())) {
        fail(PyExc_TypeError, std::string("an Entry is listed, not ") + Py_TYPE(given.ptr())->tp_name);
    }
    use_both(*reinterpret_cast<Handle*>(self.self), *reinterpret_cast<Handle*>(given.ptr()));
    refuse_into_itself(use_entry(given.ptr()), self);
    ParserGroup& group = self.made_group();
    const auto count = static_cast<Py_ssize_t>(group.get_entries().get_count());
    index = std::clamp<Py_ssize_t>(index < 0 ? index + count : index, 0, count);
    insert_entry(self.tree(), group, static_cast<unsigned int>(index), use_entry(given.ptr()));
    return given;
}

void move(const Container& self, const py::str& from, const py::str& to) {
    const bk_parser::Path source = checked_path(from);
    const bk_parser::Path target = checked_path(to);
    ParserGroup* const group = self.group();
    ParserEntry* const entry = group == nullptr ? nullptr : bk_parser::find(*group, source);
    if (entry == nullptr) {
        PyErr_SetObject(PyExc_KeyError, from.ptr());
        throw py::error_already_set();
    }
    Tree& tree = self.tree();
    begin_edit(tree);
    refuse_exported_way(tree, *group, target);
    if (!bk_parser::move(*group, source, target)) {
        fail(PyExc_ValueError,
             "the entry cannot move there: the last step is a plain name, and no entry moves into itself");
    }
    if (auto* const handle = static_cast<EntryObject*>(tree.handles.find(entry))) {
        handle->parent = parent_group(*group, *entry);
    }
}

std::size_t remove_all_of(const Container& self, const py::str& key) {
    const bk_parser::Path path = checked_path(key);
    ParserGroup* const group = self.group();
    return group == nullptr ? 0 : remove_all(self.tree(), *group, path);
}

py::str to_text(const Container& self, bool compact) {
    const ParserGroup* const group = self.group();
    if (group == nullptr) {
        return {};
    }
    const std::string head = Py_IS_TYPE(self.self, types.document) ? version_line() : std::string();
    return text_of(head + (compact ? compact_text(*group) : indented_text(*group)));
}

} // namespace

ParserGroup* parent_group(ParserGroup& group, const ParserEntry& entry) {
    const auto& entries = group.get_entries();
    const bool is_last = entries.get_count() != 0 && entries[entries.get_count() - 1] == &entry;
    return is_last ? &group : bk_parser::parent_of(group, entry);
}

void define_container_methods(PyObject* type) {
    define(type, "get", get, py::arg("path"), py::arg("default") = py::none(),
           "The value that a path names: the one that '@' names; else, behind a key, the next one; else the "
           "first.\n"
           "`default` when there is none.");
    define(type, "find", find, py::arg("path"), "The first entry that a path finds, or None.");
    define(
        type, "find_all",
        [](const Container& self, const py::str& path) { return find_all(self, checked_path(path)); },
        py::arg("path"),
        "The entries that a path finds, one at a time. An edit makes the search find the rest at once: it "
        "gives what\n"
        "was there before the edit.");
    define(type, "walk", walk,
           "Every entry below, an entry before what it holds. Edits are seen: an entry that moved in its "
           "group is\n"
           "followed, and when it is gone the walk goes on at its place.");
    define(type, "add", add, py::arg("path"),
           "Adds an entry for the last step of a path, with values, and the groups on the way where they are "
           "missing.");
    define(
        type, "insert", insert, py::arg("index"), py::arg("entry"),
        "Moves an entry, from wherever it is, to an index, and gives it back. The index counts the entries\n"
        "after one of the same group was taken out.");
    define(
        type, "append",
        [](const Container& self, const py::object& entry) { return insert(self, PY_SSIZE_T_MAX, entry); },
        py::arg("entry"), "Moves an entry, from wherever it is, to the end, and gives it back.");
    define(type, "move", move, py::arg("source"), py::arg("target"),
           "Moves the entry that one path finds to the end of the group that the other leads to, under its "
           "last name.");
    define(type, "remove_all", remove_all_of, py::arg("path"),
           "Removes every entry that a path finds, and gives how many there were.");
    define(
        type, "to_text", to_text, py::kw_only(), py::arg("compact") = false,
        "The entries as the text syntax writes them, one a line, with four blanks a level; those of a "
        "document behind the\n"
        "line with their version. OverflowError where that is more than 4 GiB, as beyond 32,000 levels.\n\n"
        "compact: all entries on one line.");
}

} // namespace bk_python
