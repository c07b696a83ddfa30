#include "files/files.h"
#include "values/convert.h"

#include "document/problem.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace bk_python {

namespace {

using bk_parser::Problem;

const char* severity_text(const Problem& problem) noexcept {
    return problem.severity == bk_parser::Severity::error ? "error" : "warning";
}

/// "file:line:column: error: message [code]", as bkdoc prints it.
std::string line_of(const Problem& problem) {
    std::string text = problem.file.empty() ? "<text>:" : problem.file.string() + ":";
    if (problem.line != 0) {
        text += std::to_string(problem.line) + ":" + std::to_string(problem.column) + ":";
    }
    return text + " " + severity_text(problem) + ": " + problem.message + " [" + problem.code + "]";
}

py::object file_of(const Problem& problem) {
    return problem.file.empty() ? py::none() : py::cast(problem.file);
}

py::tuple problem_state(const Problem& problem) {
    return py::make_tuple(problem.severity == bk_parser::Severity::error, py::bytes(problem.code),
                          py::bytes(problem.message), file_of(problem), problem.line, problem.column,
                          problem.offset, problem.length, py::bytes(problem.source_line),
                          problem.source_line_offset, problem.included_from);
}

Problem problem_from_state(const py::tuple& state) {
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
    return problem;
}

} // namespace

void define_problems(py::module_& module) {
    py::class_<Problem> type(module, "Problem", py::is_final(),
                             "Something that was wrong with a document, or looks wrong, and where.\n\n"
                             "str() is the line that bkdoc prints.");
    type.def_property_readonly("severity", severity_text, "'error' where something was lost, else 'warning'.")
        .def_property_readonly(
            "code", [](const Problem& problem) { return text_of(problem.code); },
            "Stable across versions; docs/problems.md has a section for each.")
        .def_property_readonly(
            "message", [](const Problem& problem) { return text_of(problem.message); },
            "What was found and what to do, on one line.")
        .def_property_readonly("file", file_of, "The file that holds the place, or None.")
        .def_readonly("line", &Problem::line, "From 1; 0 where there is no place.")
        .def_readonly("column", &Problem::column, "In characters, from 1; 0 where there is no place.")
        .def_readonly("offset", &Problem::offset, "The place in bytes of the file.")
        .def_readonly("length", &Problem::length, "So many bytes are meant.")
        .def_property_readonly(
            "source_line", [](const Problem& problem) { return text_of(problem.source_line); },
            "The line that holds the place, as it is in the file.")
        .def_property_readonly(
            "included_from", [](const Problem& problem) { return problem.included_from; },
            "The files that led to the file, the innermost first.")
        .def("__str__", [](const Problem& problem) { return text_of(line_of(problem)); })
        .def("__repr__",
             [](const Problem& problem) { return text_of("<bk_parser.Problem " + line_of(problem) + ">"); })
        .def("__eq__",
             [](const Problem& problem, const py::object& other) {
                 return py::isinstance<Problem>(other) &&
                        line_of(problem) == line_of(other.cast<const Problem&>());
             })
        .def("__hash__", [](const Problem& problem) { return py::hash(text_of(line_of(problem))); })
        .def("_state", problem_state);
    module.def("_problem_from_state", problem_from_state);
    // An object that nobody made would show what was in the memory before: only load makes problems.
    reinterpret_cast<PyTypeObject*>(type.ptr())->tp_new = nullptr;
}

} // namespace bk_python
