#include "values/convert.h"

namespace bk_python {

py::str text_of(std::string_view text) {
    return py::reinterpret_steal<py::str>(
        stolen(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"))
            .release());
}

std::string path_text(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

namespace {

PyObject* new_value(Tree& tree, const ParserEntry& entry, unsigned int value) {
    std::string_view text;
    std::span<const std::byte> bytes;
    ParserGroup* group = nullptr;
    switch (entry.get_value_type(value)) {
    case ParserValue::TYPE_BOOL:
        return PyBool_FromLong(entry.get_bool(value) ? 1 : 0);
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        return PyLong_FromLong(entry.get_int(value));
    case ParserValue::TYPE_DOUBLE:
        return PyFloat_FromDouble(entry.get_double(value));
    case ParserValue::TYPE_STRING:
        bk_parser::access::read(entry, value, text);
        return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
    case ParserValue::TYPE_BINARY_DATA:
        bk_parser::access::read(entry, value, bytes);
        return PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes.data()),
                                         static_cast<Py_ssize_t>(bytes.size()));
    case ParserValue::TYPE_GROUP:
        return bk_parser::access::read(entry, value, group) ? group_handle(tree, *group).release().ptr()
                                                            : py::none().release().ptr();
    default:
        return text_of(entry.get_word(value).get_view()).release().ptr();
    }
}

} // namespace

py::object value_of(Tree& tree, const ParserEntry& entry, unsigned int value) {
    return stolen(new_value(tree, entry, value));
}

/// Making a tuple can start the garbage collector, whose finalizers can edit the entry. So the entry is read only after the
/// tuple exists. Making the values runs no Python code.
py::tuple value_tuple(PyObject* self) {
    for (;;) {
        const unsigned int count = use_entry(self).entry->get_value_count();
        py::tuple tuple(count);
        const EntryObject& handle = use_entry(self);
        if (handle.entry->get_value_count() != count) {
            continue;
        }
        for (unsigned int i = 0; i < count; ++i) {
            PyObject* const value = new_value(*handle.head.tree, *handle.entry, i);
            if (value == nullptr) {
                throw py::error_already_set();
            }
            PyTuple_SET_ITEM(tuple.ptr(), i, value);
        }
        return tuple;
    }
}

} // namespace bk_python
