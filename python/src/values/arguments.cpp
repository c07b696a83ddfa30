#include "values/arguments.h"

#include "values/convert.h"

#include <pybind11/stl/filesystem.h>

#include <memory>

namespace bk_python {

namespace {

/// Refuses a str, which is iterable, too, and would be taken letter by letter.
template <class Action>
void each_of(py::handle object, const char* name, const Action& act) {
    PyObject* const given = object.ptr();
    const bool is_single =
        PyUnicode_Check(given) || PyBytes_Check(given) || PyObject_HasAttrString(given, "__fspath__");
    if (is_single || (Py_TYPE(given)->tp_iter == nullptr && PySequence_Check(given) == 0)) {
        fail(PyExc_TypeError, std::string(name) + " is a list of str, not " + Py_TYPE(given)->tp_name);
    }
    const py::object iterator = stolen(PyObject_GetIter(given));
    while (PyObject* const item = PyIter_Next(iterator.ptr())) {
        act(py::reinterpret_steal<py::object>(item));
    }
    if (PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
}

} // namespace

std::filesystem::path path_from(py::handle object) {
    const py::object native = stolen(PyOS_FSPath(object.ptr()));
    PyObject* checked = nullptr;
    if (PyUnicode_FSConverter(native.ptr(), &checked) == 0) {
        throw py::error_already_set();
    }
    Py_DECREF(checked);
    return native.cast<std::filesystem::path>();
}

std::filesystem::path optional_path_from(py::handle object) {
    if (object.is_none()) {
        return {};
    }
    std::filesystem::path path = path_from(object);
    if (path.empty()) { // which None stands for here
        fail(PyExc_ValueError, "an empty path names no file");
    }
    return path;
}

std::vector<std::filesystem::path> paths_from(py::handle object, const char* name) {
    std::vector<std::filesystem::path> paths;
    each_of(object, name, [&](const py::object& item) { paths.push_back(path_from(item)); });
    return paths;
}

std::vector<std::string> texts_from(py::handle object, const char* name) {
    std::vector<std::string> texts;
    each_of(object, name, [&](const py::object& item) { texts.push_back(text_from(item)); });
    return texts;
}

std::string content_from(py::handle object) {
    return PyUnicode_Check(object.ptr()) ? text_from(object) : bytes_from(object);
}

std::string bytes_from(py::handle object) {
    Py_buffer view;
    if (PyObject_GetBuffer(object.ptr(), &view, PyBUF_SIMPLE) != 0) {
        throw py::error_already_set();
    }
    const std::unique_ptr<Py_buffer, void (*)(Py_buffer*)> held(&view, PyBuffer_Release);
    return std::string(static_cast<const char*>(view.buf), static_cast<std::size_t>(view.len));
}

} // namespace bk_python
