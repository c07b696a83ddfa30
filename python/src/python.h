#pragma once

// Python's headers must come before those of the standard library.
#include <pybind11/pybind11.h>

#include <new>
#include <stdexcept>
#include <utility>

namespace bk_python {

namespace py = pybind11;

/// Turns a C++ exception into a Python exception, in a function that the interpreter calls. Keeps a Python exception that is
/// already set.
template <class Result, class Action>
Result guarded(Result failure, const Action& act) noexcept {
    try {
        return act();
    } catch (py::error_already_set& error) {
        error.restore();
    } catch (const py::builtin_exception& error) {
        error.set_error();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::length_error& error) {
        PyErr_SetString(PyExc_OverflowError, error.what());
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    }
    return failure;
}

/// Owns a new reference that a call of the interpreter returned.
inline py::object stolen(PyObject* object) {
    if (object == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::object>(object);
}

/// Adds a method to a type.
template <class Function, class... Extra>
void define(PyObject* type, const char* name, Function&& function, const Extra&... extra) {
    const py::handle owner(type);
    py::setattr(
        owner, name,
        py::cpp_function(std::forward<Function>(function), py::name(name), py::is_method(owner), extra...));
}

[[noreturn]] inline void fail(PyObject* type, const std::string& message) {
    PyErr_SetString(type, message.c_str());
    throw py::error_already_set();
}

} // namespace bk_python
