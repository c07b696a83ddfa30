#include "files/files.h"
#include "types/handles.h"
#include "values/convert.h"

#include "document/problem.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace bk_python {

namespace {

using bk_parser::Problem;

struct ProblemObject {
    PyObject_HEAD Problem problem;
};

const Problem& problem_of(PyObject* self) noexcept {
    return reinterpret_cast<ProblemObject*>(self)->problem;
}

const char* severity_text(const Problem& problem) noexcept {
    return problem.severity == bk_parser::Severity::error ? "error" : "warning";
}

/// "file:line:column: error: message [code]", as bkdoc prints it.
std::string line_of(const Problem& problem) {
    std::string text = problem.file.empty() ? "<text>:" : path_text(problem.file) + ":";
    if (problem.line != 0) {
        text += std::to_string(problem.line) + ":" + std::to_string(problem.column) + ":";
    }
    return text + " " + severity_text(problem) + ": " + problem.message + " [" + problem.code + "]";
}

py::object file_of(const Problem& problem) {
    return problem.file.empty() ? py::none() : py::cast(problem.file);
}

py::tuple problem_state(const ProblemSelf& self) {
    const Problem& problem = problem_of(self.ptr());
    return py::make_tuple(problem.severity == bk_parser::Severity::error, py::bytes(problem.code),
                          py::bytes(problem.message), file_of(problem), problem.line, problem.column,
                          problem.offset, problem.length, py::bytes(problem.source_line),
                          problem.source_line_offset, problem.included_from);
}

py::object problem_from_state(const py::tuple& state) {
    Problem problem;
    problem.severity = state[0].cast<bool>() ? bk_parser::Severity::error : bk_parser::Severity::warning;
    problem.code = state[1].cast<std::string>();
    problem.message = state[2].cast<std::string>();
    problem.file = state[3].is_none() ? std::filesystem::path() : state[3].cast<std::filesystem::path>();
    problem.line = state[4].cast<unsigned int>();
    problem.column = state[5].cast<unsigned int>();
    problem.offset = state[6].cast<std::size_t>();
    problem.length = state[7].cast<std::size_t>();
    problem.source_line = state[8].cast<std::string>();
    problem.source_line_offset = state[9].cast<std::size_t>();
    problem.included_from = state[10].cast<std::vector<std::filesystem::path>>();
    return problem_object(std::move(problem));
}

/// A getter that returns get(problem).
template <py::object (*get)(const Problem&)>
PyObject* problem_getter(PyObject* self, void*) {
    return guarded<PyObject*>(nullptr, [&] { return get(problem_of(self)).release().ptr(); });
}

template <class Member, Member Problem::*member>
py::object field(const Problem& problem) {
    return py::cast(problem.*member);
}

template <std::string Problem::*member>
py::object text_field(const Problem& problem) {
    return text_of(problem.*member);
}

py::object severity_of(const Problem& problem) {
    return py::str(severity_text(problem));
}

PyObject* spell_problem(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&] { return text_of(line_of(problem_of(self))).release().ptr(); });
}

PyObject* represent_problem(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&] {
        return text_of("<bk_parser.Problem " + line_of(problem_of(self)) + ">").release().ptr();
    });
}

PyObject* compare_problems(PyObject* self, PyObject* other, int operation) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        if ((operation != Py_EQ && operation != Py_NE) || !Py_IS_TYPE(other, types.problem)) {
            return Py_NewRef(Py_NotImplemented);
        }
        const bool is_same = line_of(problem_of(self)) == line_of(problem_of(other));
        return PyBool_FromLong(is_same == (operation == Py_EQ) ? 1 : 0);
    });
}

Py_hash_t hash_problem(PyObject* self) {
    return guarded<Py_hash_t>(-1, [&] { return py::hash(text_of(line_of(problem_of(self)))); });
}

void free_problem(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    reinterpret_cast<ProblemObject*>(self)->problem.~Problem();
    PyObject_Free(self);
    Py_DECREF(type);
}

PyGetSetDef problem_fields[] = {
    {"severity", problem_getter<severity_of>, nullptr, "'error' where something was lost, else 'warning'.",
     nullptr},
    {"code", problem_getter<text_field<&Problem::code>>, nullptr,
     "Stable across versions; docs/problems.md has a section for each.", nullptr},
    {"message", problem_getter<text_field<&Problem::message>>, nullptr,
     "What was found and what to do, on one line.", nullptr},
    {"file", problem_getter<file_of>, nullptr, "The file that holds the place, or None.", nullptr},
    {"line", problem_getter<field<unsigned int, &Problem::line>>, nullptr,
     "From 1; 0 where there is no place.", nullptr},
    {"column", problem_getter<field<unsigned int, &Problem::column>>, nullptr,
     "In characters, from 1; 0 where there is no place.", nullptr},
    {"offset", problem_getter<field<std::size_t, &Problem::offset>>, nullptr,
     "The place in bytes of the file.", nullptr},
    {"length", problem_getter<field<std::size_t, &Problem::length>>, nullptr, "So many bytes are meant.",
     nullptr},
    {"source_line", problem_getter<text_field<&Problem::source_line>>, nullptr,
     "The line that holds the place, as it is in the file.", nullptr},
    {"included_from", problem_getter<field<std::vector<std::filesystem::path>, &Problem::included_from>>,
     nullptr, "The files that led to the file, the innermost first.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

} // namespace

py::object problem_object(Problem problem) {
    auto* const object = PyObject_New(ProblemObject, types.problem);
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    new (&object->problem) Problem(std::move(problem));
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(object));
}

std::vector<Problem> problems_from(const py::list& list) {
    std::vector<Problem> problems;
    for (const py::handle item : list) {
        if (!Py_IS_TYPE(item.ptr(), types.problem)) {
            fail(PyExc_TypeError, "a Problem is wanted");
        }
        problems.push_back(problem_of(item.ptr()));
    }
    return problems;
}

PyTypeObject* make_problem_type() {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_problem)},
        {Py_tp_str, reinterpret_cast<void*>(spell_problem)},
        {Py_tp_repr, reinterpret_cast<void*>(represent_problem)},
        {Py_tp_richcompare, reinterpret_cast<void*>(compare_problems)},
        {Py_tp_hash, reinterpret_cast<void*>(hash_problem)},
        {Py_tp_getset, problem_fields},
        {Py_tp_doc,
         const_cast<char*>("Something that was wrong with a document, or looks wrong, and where.\n\n"
                           "str() is the line that bkdoc prints.")},
        {0, nullptr},
    };
    static PyType_Spec spec = {"bk_parser._core.Problem", sizeof(ProblemObject), 0,
                               Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

void define_problems(py::module_& module) {
    define(reinterpret_cast<PyObject*>(types.problem), "_state", problem_state);
    module.def("_problem_from_state", problem_from_state);
}

} // namespace bk_python
