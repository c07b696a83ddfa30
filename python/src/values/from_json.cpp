#include "values/from_json.h"

#include "values/convert.h"

#include "document/json/read/json_reader_impl.h"

#include <algorithm>
#include <string>
#include <vector>

namespace bk_python {

namespace {

using Reader = bk_parser::JsonReader;
using Event = Reader::Event;

py::object number_of(std::string_view word) {
    const std::string text(word);
    if (text.find_first_of(".eE") == text.npos) {
        return stolen(PyLong_FromString(text.c_str(), nullptr, 10));
    }
    const double number = PyOS_string_to_double(text.c_str(), nullptr, nullptr);
    if (number == -1.0 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    return py::float_(number);
}

py::object value_of(Event event, std::string_view text) {
    switch (event) {
    case Event::string:
        return text_of(text);
    case Event::number:
        return number_of(text);
    case Event::yes:
        return py::bool_(true);
    case Event::no:
        return py::bool_(false);
    case Event::object:
        return py::dict();
    case Event::array:
        return py::list();
    default:
        return py::none();
    }
}

/// Builds Python objects from JSON events. Depth costs heap, not stack.
class Builder {
public:
    void set_key(std::string_view name) { key_ = text_of(name); }

    void add(const py::object& value, bool opens) {
        if (open_.empty()) {
            root_ = value;
        } else if (PyList_Check(open_.back().ptr())) {
            py::reinterpret_borrow<py::list>(open_.back()).append(value);
        } else {
            open_.back()[key_] = value;
        }
        if (opens) {
            open_.push_back(value);
        }
    }

    void close() { open_.pop_back(); }
    const py::object& root() const noexcept { return root_; }

private:
    py::object root_;
    py::object key_;
    std::vector<py::object> open_;
};

} // namespace

py::object objects_from_json(std::string_view json) {
    Reader reader(json, Reader::Count::one);
    Builder builder;
    for (;;) {
        const Event event = reader.next();
        switch (event) {
        case Event::end:
            return builder.root();
        case Event::fault:
            fail(PyExc_RuntimeError, std::string(reader.text()));
        case Event::key:
            builder.set_key(reader.text());
            break;
        case Event::object_end:
        case Event::array_end:
            builder.close();
            break;
        default:
            builder.add(value_of(event, reader.text()), event == Event::object || event == Event::array);
            break;
        }
    }
}

} // namespace bk_python
