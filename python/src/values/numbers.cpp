#include "types/values.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <memory>

/// The read-only buffer of an entry's values: the numbers in place, with the size of a value as stride.
namespace bk_python {

namespace {

struct Shape {
    Py_ssize_t count;
    Py_ssize_t stride;
    PyObject* entry; // owned reference
};

/// Whether all values are numbers of that type, in one block. Decodes numbers that have only their spelling so far. A number with a
/// spelling of a mebibyte is not in the block.
bool are_in_place(const ParserEntry& entry, ParserValue::Type type) {
    const bk::StoredValue* const first = bk::EntryAccess::values(entry).side_by_side();
    for (unsigned int i = 0; first != nullptr && i < entry.get_value_count(); ++i) {
        if (first[i].type() != type) {
            return false;
        }
        first[i].make_value();
        if (!first[i].has_scalar_inside()) {
            return false;
        }
    }
    return first != nullptr;
}

void refuse(const char* why) {
    PyErr_SetString(PyExc_BufferError, why);
    throw py::error_already_set();
}

void fill(PyObject* self, Py_buffer& view, int flags) {
    EntryObject& handle = use_entry(reinterpret_cast<ValuesObject*>(self)->entry);
    const ParserEntry& entry = *handle.entry;
    const bool is_double = entry.get_value_type(0) == ParserValue::TYPE_DOUBLE;
    const ParserValue::Type type = is_double ? ParserValue::TYPE_DOUBLE : ParserValue::TYPE_INT;
    if (!are_in_place(entry, type)) {
        refuse("the values are not all floats, or all ints");
    }
    if ((flags & PyBUF_WRITABLE) != 0) {
        refuse("a buffer of values is read only");
    }
    if ((flags & PyBUF_STRIDES) != PyBUF_STRIDES && entry.get_value_count() != 1) {
        refuse("the values do not stand next to each other; make a list or an array of them");
    }
    const bk::StoredValue& first = bk::EntryAccess::value(entry, 0);
    auto shape = std::make_unique<Shape>(Shape{static_cast<Py_ssize_t>(entry.get_value_count()),
                                               static_cast<Py_ssize_t>(sizeof(bk::StoredValue)),
                                               Py_NewRef(reinterpret_cast<PyObject*>(&handle))});
    view.buf = const_cast<double*>(&first.scalar().as_double);
    view.itemsize = is_double ? sizeof(double) : sizeof(int);
    view.len = shape->count * view.itemsize;
    view.readonly = 1;
    view.ndim = 1;
    view.format = (flags & PyBUF_FORMAT) != 0 ? const_cast<char*>(is_double ? "d" : "i") : nullptr;
    view.shape = (flags & PyBUF_ND) != 0 ? &shape->count : nullptr;
    view.strides = (flags & PyBUF_STRIDES) == PyBUF_STRIDES ? &shape->stride : nullptr;
    view.suboffsets = nullptr;
    view.internal = shape.release();
    view.obj = Py_NewRef(self);
    ++handle.export_count;
    ++types.export_count;
}

} // namespace

int get_numbers(PyObject* self, Py_buffer* view, int flags) noexcept {
    view->obj = nullptr;
    return guarded<int>(-1, [&] {
        fill(self, *view, flags);
        return 0;
    });
}

void release_numbers(PyObject*, Py_buffer* view) noexcept {
    const std::unique_ptr<Shape> shape(static_cast<Shape*>(view->internal));
    --types.export_count;
    --reinterpret_cast<EntryObject*>(shape->entry)->export_count;
    Py_DECREF(shape->entry);
}

} // namespace bk_python
