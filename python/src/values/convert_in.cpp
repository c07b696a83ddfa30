#include "values/convert.h"

#include "tree/edits.h"

#include "document/access/value_plan_impl.h"

namespace bk_python {

namespace {

/// Clears the error that a buffer of this kind is not available; keeps any other error.
bool is_refused_buffer() {
    if (PyErr_ExceptionMatches(PyExc_BufferError) || PyErr_ExceptionMatches(PyExc_TypeError) ||
        PyErr_ExceptionMatches(PyExc_ValueError)) {
        PyErr_Clear();
        return true;
    }
    throw py::error_already_set();
}

[[noreturn]] void fail_type(py::handle given) {
    fail(PyExc_TypeError,
         std::string("a value is a bool, int, float, str or bytes, not ") + Py_TYPE(given.ptr())->tp_name);
}

/// Refuses masked arrays and masked numbers, because their buffers also have the numbers that they hide.
void refuse_masked(py::handle object) {
    if (!py::hasattr(object, "mask")) {
        return;
    }
    const py::object mask = object.attr("mask");
    if (py::hasattr(mask, "any") && py::bool_(mask.attr("any")())) {
        fail(PyExc_TypeError, "a masked number is no value; fill the array first, as with filled(0)");
    }
}

class Buffer {
public:
    Buffer(py::handle object, int flags) : is_held_(PyObject_GetBuffer(object.ptr(), &view, flags) == 0) {}
    ~Buffer() {
        if (is_held_) {
            PyBuffer_Release(&view);
        }
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    bool is_held() const noexcept { return is_held_; }

    Py_buffer view{};

private:
    bool is_held_;
};

} // namespace

std::string text_from(py::handle text) {
    if (!PyUnicode_Check(text.ptr())) {
        fail(PyExc_TypeError, std::string("a str is wanted, not ") + Py_TYPE(text.ptr())->tp_name);
    }
    Py_ssize_t size = 0;
    if (const char* const characters = PyUnicode_AsUTF8AndSize(text.ptr(), &size)) {
        return std::string(characters, static_cast<std::size_t>(size));
    }
    if (!PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) {
        throw py::error_already_set();
    }
    PyErr_Clear();
    const py::object bytes = stolen(PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
    return std::string(PyBytes_AS_STRING(bytes.ptr()),
                       static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())));
}

Given::Given(py::handle object) {
    PyObject* const given = object.ptr();
    const bool is_single = PyUnicode_Check(given) || PyLong_Check(given) || PyFloat_Check(given);
    if (is_single) {
        add_single(object);
    } else if (PyList_Check(given) || PyTuple_Check(given)) {
        is_list_ = true;
        add_all(object);
    } else if (add_bytes(object) || add_buffer(object, true) || add_plain(object, true)) {
        return;
    } else if (PyIndex_Check(given) || given == Py_None || PyDict_Check(given) || is_entry(given) ||
               is_group(given)) {
        add_single(object);
    } else {
        is_list_ = true;
        if (Py_TYPE(given)->tp_iter == nullptr && PySequence_Check(given) == 0) {
            fail_type(object);
        }
        add_all(object);
    }
}

void Given::add_all(py::handle iterable) {
    const py::object iterator = stolen(PyObject_GetIter(iterable.ptr()));
    while (PyObject* const item = PyIter_Next(iterator.ptr())) {
        add_single(py::reinterpret_steal<py::object>(item));
    }
    if (PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
}

void Given::add_single(py::handle object) {
    PyObject* const given = object.ptr();
    if (PyBool_Check(given)) {
        values_.emplace_back(given == Py_True);
    } else if (PyLong_Check(given)) {
        add_integer(object);
    } else if (PyFloat_Check(given)) {
        values_.emplace_back(PyFloat_AS_DOUBLE(given));
    } else if (PyUnicode_Check(given)) {
        values_.emplace_back(std::string_view(texts_.emplace_back(text_from(object))));
    } else if (add_bytes(object) || add_buffer(object, false) || add_plain(object, false)) {
        return;
    } else if (PyIndex_Check(given)) {
        add_integer(stolen(PyNumber_Index(given)));
    } else {
        fail_type(object);
    }
}

void Given::add_integer(py::handle number) {
    int overflow = 0;
    const long long value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    if (overflow == 0) {
        if (value == -1 && PyErr_Occurred() != nullptr) {
            throw py::error_already_set();
        }
        values_.emplace_back(value);
        return;
    }
    const unsigned long long large = PyLong_AsUnsignedLongLong(number.ptr());
    if (PyErr_Occurred() != nullptr) {
        PyErr_Clear();
        fail(PyExc_OverflowError, "no value holds an integer of that size exactly");
    }
    values_.emplace_back(large);
}

/// Converts bytes, bytearray, and a memoryview of bytes.
bool Given::add_bytes(py::handle object) {
    // Goes through Python's attributes, because the format of a released view may be gone.
    const bool is_view = PyMemoryView_Check(object.ptr()) && py::str("B").equal(object.attr("format"));
    if (!PyBytes_Check(object.ptr()) && !PyByteArray_Check(object.ptr()) && !is_view) {
        return false;
    }
    const py::object bytes = stolen(PyBytes_FromObject(object.ptr()));
    const std::string& kept = texts_.emplace_back(PyBytes_AS_STRING(bytes.ptr()),
                                                  static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())));
    values_.emplace_back(std::as_bytes(std::span(kept.data(), kept.size())));
    return true;
}

/// Converts arrays of numbers. One without dimensions is a single number.
bool Given::add_buffer(py::handle object, bool takes_list) {
    if (PyObject_CheckBuffer(object.ptr()) == 0) {
        return false;
    }
    refuse_masked(object);
    const Buffer buffer(object, PyBUF_FULL_RO);
    if (!buffer.is_held()) {
        return !is_refused_buffer();
    }
    // A single date of NumPy exports its bytes as a buffer.
    const bool is_bytes =
        buffer.view.ndim != 0 && py::hasattr(object, "ndim") && py::int_(0).equal(object.attr("ndim"));
    if (is_bytes || (buffer.view.ndim != 0 && !takes_list)) {
        return false;
    }
    is_list_ = is_list_ || buffer.view.ndim != 0;
    return read_numbers(buffer.view, values_);
}

/// Converts arrays that read_numbers cannot, such as texts and 16-bit numbers, by their own tolist().
bool Given::add_plain(py::handle object, bool takes_list) {
    if (PyObject_CheckBuffer(object.ptr()) == 0 || !py::hasattr(object, "tolist")) {
        return false;
    }
    const bool is_table = py::hasattr(object, "ravel") && object.attr("ndim").cast<int>() > 1;
    const py::object row = is_table ? object.attr("ravel")() : py::reinterpret_borrow<py::object>(object);
    const py::object plain = row.attr("tolist")();
    const bool is_list = PyList_Check(plain.ptr());
    if (Py_TYPE(plain.ptr()) == Py_TYPE(object.ptr()) || (is_list && !takes_list)) {
        fail_type(object);
    }
    is_list_ = is_list_ || is_list;
    if (is_list) {
        add_all(plain);
    } else {
        add_single(plain);
    }
    return true;
}

void refuse_numbers(std::span<const bk_parser::GivenValue> given) {
    for (const bk_parser::GivenValue& one : given) {
        if (!bk_parser::plan_value(one, nullptr)) {
            fail(
                PyExc_ValueError,
                "no value holds that: it is not-a-number, infinite, or an integer that a double would round");
        }
    }
}

void store(Tree& tree, ParserEntry& entry, unsigned int value, std::span<const bk_parser::GivenValue> given,
           bk_parser::access::ListEnd end) {
    refuse_exported(tree, entry);
    const bool was_key = entry.get_value_type(0) == ParserValue::TYPE_STRING;
    if (!bk_parser::access::set_values(entry, value, given, end)) {
        refuse_numbers(given);
        fail(PyExc_ValueError, "a group stands there; remove it first, or name an entry in it");
    }
    if (was_key || entry.get_value_type(0) == ParserValue::TYPE_STRING) {
        tree.forget_paths();
    }
}

} // namespace bk_python
