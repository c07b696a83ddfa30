#include "files/files.h"
#include "tree/edits.h"
#include "types/equal.h"
#include "types/handles.h"
#include "values/arguments.h"
#include "values/convert.h"
#include "values/text.h"

#include "parser/parser_limits.h"

#include <limits>

namespace bk_python {

namespace {

/// Whether the binary form can carry all of a group: it has names and values only.
bool is_carried(const ParserGroup& group) {
    for (const bk_parser::Visit& visit : bk_parser::walk(group)) {
        const ParserEntry& entry = visit.entry();
        const bool is_plain =
            entry.get_type() == ParserEntry::TYPE_ENTRY || entry.get_type() == ParserEntry::TYPE_KEYWORD;
        if (!is_plain || entry.is_template() || entry.is_array()) {
            return false;
        }
    }
    return true;
}

bool decode(std::string_view bytes, ParserGroup& group) {
    if (bytes.size() > std::numeric_limits<unsigned int>::max()) {
        return false;
    }
    CoreVector<char> data;
    data.add_range(bytes.data(), static_cast<unsigned int>(bytes.size()));
    core_uint64 position = 0;
    return group.set_binary(data, position, ParserLimits::untrusted()) && position == data.get_count();
}

std::string_view view_of(const CoreVector<char>& bytes) noexcept {
    return {bytes.get_data(), bytes.get_count()};
}

/// A reader ends a string at a NUL and takes the rest for the next field.
void refuse_nul(const ParserGroup& group) {
    for (const bk_parser::Visit& visit : bk_parser::walk(group)) {
        const ParserEntry& entry = visit.entry();
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            std::string_view text;
            if (entry.get_value_type(i) == ParserValue::TYPE_STRING &&
                bk_parser::access::read(entry, i, text) && text.find('\0') != text.npos) {
                fail(PyExc_ValueError, "the binary form carries no string with a NUL, as in the entry " +
                                           std::string(entry.get_name().get_view()));
            }
        }
    }
}

py::bytes to_binary(const Container& self) {
    const ParserGroup* const group = self.group();
    if (group != nullptr) {
        refuse_nul(*group);
    }
    const CoreVector<char> bytes = group == nullptr ? CoreVector<char>() : group->get_binary(false);
    return py::bytes(bytes.get_data(), bytes.get_count());
}

/// Stores the tree in the binary form if that carries everything, else as text. Reads the result back before returning it.
py::tuple state_of(const ParserGroup& group) {
    if (is_carried(group)) {
        const CoreVector<char> bytes = group.get_binary(false);
        ParserGroup read{CoreString()};
        if (decode(view_of(bytes), read) && are_equal(group, read)) {
            return py::make_tuple("binary", py::bytes(bytes.get_data(), bytes.get_count()));
        }
    }
    for (const auto print : {compact_text, indented_text}) {
        const std::string text = version_line() + print(group);
        const bk_parser::LoadResult read = bk_parser::parse(text);
        if (are_equal(group, read.document.root())) {
            return py::make_tuple("text", py::bytes(text));
        }
    }
    fail(PyExc_ValueError, "neither the binary form nor the text syntax carries this tree");
}

bk_parser::LoadResult restored(const std::string& form, const std::string& content) {
    bk_parser::LoadResult loaded;
    bool is_whole = true;
    {
        const py::gil_scoped_release unlocked;
        if (form == "binary") {
            is_whole = decode(content, loaded.document.root());
        } else {
            bk_parser::LoadResult read = bk_parser::parse(content);
            is_whole = read.ok();
            // A document from memory has no layout to keep, and no file.
            read.document.root().move_entries(loaded.document.root(), 0);
        }
    }
    if (!is_whole) {
        fail(PyExc_ValueError, "the bytes are no document, or are cut off");
    }
    return loaded;
}

py::object from_binary(const py::object& data) {
    return document_handle(restored("binary", bytes_from(data)));
}

py::object group_from_state(const std::string& form, const py::bytes& content) {
    bk_parser::LoadResult loaded = restored(form, content);
    auto group = std::make_unique<ParserGroup>(CoreString());
    loaded.document.root().move_entries(*group, 0);
    ParserGroup& target = *group;
    const TreeRef tree(new Tree(std::move(group), 0));
    return group_handle(*tree, target);
}

py::object entry_from_state(const std::string& form, const py::bytes& content) {
    bk_parser::LoadResult loaded = restored(form, content);
    std::unique_ptr<ParserEntry> entry = bk_parser::take(loaded.document.root(), 0u);
    if (entry == nullptr) {
        fail(PyExc_ValueError, "the bytes hold no entry");
    }
    return detached_handle(copy_of(*entry));
}

py::tuple entry_state(const EntrySelf& self) {
    ParserGroup group{CoreString()};
    bk_parser::insert(group, 0, copy_of(*use_entry(self.ptr()).entry));
    return state_of(group);
}

} // namespace

void define_bytes(py::module_& module) {
    module.def("from_binary", from_binary, py::arg("data"),
               "A document from the binary form, as to_binary gives it. Other threads run meanwhile.");
    const char* const to_binary_text =
        "The entries in the binary form: names and values, without kinds, templates and array counts.\n"
        "ValueError for a string with a NUL, which that form does not carry.";
    define(reinterpret_cast<PyObject*>(types.group), "to_binary", to_binary, to_binary_text);
    define(reinterpret_cast<PyObject*>(types.entry), "to_binary", to_binary, to_binary_text);
    module.def("_document_from_state",
               [](const std::string& form, const py::bytes& content, const py::list& problems) {
                   bk_parser::LoadResult loaded = restored(form, content);
                   loaded.problems = problems_from(problems);
                   return document_handle(std::move(loaded));
               });
    module.def("_group_from_state", group_from_state);
    module.def("_entry_from_state", entry_from_state);
    define(reinterpret_cast<PyObject*>(types.group), "_state",
           [](const GroupSelf& self) { return state_of(*use_group(self.ptr()).group); });
    define(reinterpret_cast<PyObject*>(types.entry), "_state", entry_state);
}

} // namespace bk_python
