#include "files/files.h"
#include "types/handles.h"
#include "values/arguments.h"
#include "values/convert.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace bk_python {

namespace {

using bk_parser::LoadOptions;
using bk_parser::LoadResult;

py::list problem_list(const std::vector<bk_parser::Problem>& problems) {
    py::list list;
    for (const bk_parser::Problem& problem : problems) {
        list.append(problem_object(problem));
    }
    return list;
}

[[noreturn]] void fail_load(PyObject* type, const py::str& message, const LoadResult& loaded) {
    const py::object error = py::reinterpret_borrow<py::object>(type)(message);
    error.attr("problems") = problem_list(loaded.problems);
    PyErr_SetObject(type, error.ptr());
    throw py::error_already_set();
}

/// The load runs without the interpreter's lock. The callback takes the lock for each call.
std::function<bool(double)> progress_of(const py::object& callable) {
    if (callable.is_none()) {
        return {};
    }
    return [callable = callable.ptr()](double done) {
        const py::gil_scoped_acquire locked;
        const py::object answer = py::handle(callable)(done);
        return answer.ptr() != Py_False;
    };
}

LoadOptions options_of(const py::object& search, const py::object& progress, const std::string& key,
                       bool trusted, bool keep_places, const py::object& allow) {
    LoadOptions options;
    options.search = paths_from(search, "search");
    options.progress = progress_of(progress);
    options.key = key;
    options.limits = trusted ? ParserLimits() : ParserLimits::untrusted();
    options.keep_sources = keep_places;
    options.allow = texts_from(allow, "allow");
    return options;
}

py::object load(const py::object& path, const py::object& search, const py::object& progress,
                const std::string& key, bool beside, bool working_folder, bool follow_includes, bool trusted,
                bool keep_places, const py::object& allow) {
    const std::filesystem::path file = path_from(path);
    LoadOptions options = options_of(search, progress, key, trusted, keep_places, allow);
    options.beside = beside;
    options.working_folder = working_folder;
    options.follow_includes = follow_includes;
    LoadResult loaded;
    {
        const py::gil_scoped_release unlocked;
        loaded = bk_parser::load(file, options);
    }
    return loaded_document(std::move(loaded));
}

py::object parse(const py::object& text, const py::object& search, const py::object& progress, bool trusted,
                 bool keep_places, const py::object& allow) {
    const std::string content = content_from(text);
    const LoadOptions options = options_of(search, progress, {}, trusted, keep_places, allow);
    LoadResult loaded;
    {
        const py::gil_scoped_release unlocked;
        loaded = bk_parser::parse(content, options);
    }
    return loaded_document(std::move(loaded));
}

bk_parser::Document& document_of(const DocumentSelf& self) {
    return *use_group(self.ptr()).head.tree->document();
}

const char* form_text(bk_parser::Form form) noexcept {
    switch (form) {
    case bk_parser::Form::text:
        return "text";
    case bk_parser::Form::binary:
        return "binary";
    case bk_parser::Form::enciphered:
        return "cipher";
    default:
        return "archive";
    }
}

template <class Function>
void define_field(const char* name, Function&& get, const char* docstring) {
    const py::handle owner(reinterpret_cast<PyObject*>(types.document));
    const py::cpp_function function(std::forward<Function>(get), py::is_method(owner));
    const auto property = py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(&PyProperty_Type));
    py::setattr(owner, name, property(function, py::none(), py::none(), py::str(docstring)));
}

void define_fields() {
    define_field(
        "problems",
        [](const DocumentSelf& self) { return problem_list(use_group(self.ptr()).head.tree->problems()); },
        "What was wrong when it was loaded, in the order of the text.");
    define_field(
        "path",
        [](const DocumentSelf& self) -> py::object {
            const std::filesystem::path& path = document_of(self).path();
            return path.empty() ? py::none() : py::cast(path);
        },
        "The file that it was loaded from, or was saved to last; None for a document from memory.");
    define_field(
        "form", [](const DocumentSelf& self) { return form_text(document_of(self).form()); },
        "'text', 'binary', 'cipher' or 'archive'.");
    define_field(
        "version", [](const DocumentSelf& self) { return document_of(self).version(); },
        "The version of the syntax that its text was read by.");
    define_field(
        "dependencies", [](const DocumentSelf& self) { return document_of(self).dependencies(); },
        "The files that it includes, each once, as absolute paths.");
    define_field(
        "files",
        [](const DocumentSelf& self) {
            std::vector<std::filesystem::path> files;
            for (const bk_parser::DocumentFile& file : document_of(self).files()) {
                if (!file.path.empty()) { // text from memory has no path
                    files.push_back(file.path);
                }
            }
            return files;
        },
        "The files that it was read from, the document first, as absolute paths.");
}

} // namespace

/// Whether nothing could be read: there is an error, and no entry.
py::object loaded_document(LoadResult loaded) {
    if (loaded.cancelled) {
        fail_load(types.load_cancelled, py::str("the progress callable cancelled the load"), loaded);
    }
    if (!loaded.ok() && loaded.document.root().get_entries().is_empty()) {
        const auto error =
            std::find_if(loaded.problems.begin(), loaded.problems.end(),
                         [](const auto& problem) { return problem.severity == bk_parser::Severity::error; });
        fail_load(types.load_error, py::str(problem_object(*error)), loaded);
    }
    return document_handle(std::move(loaded));
}

void define_load(py::module_& module) {
    module.def(
        "load", load, py::arg("path"), py::kw_only(), py::arg("search") = py::tuple(),
        py::arg("progress") = py::none(), py::arg("key") = "", py::arg("beside") = true,
        py::arg("working_folder") = true, py::arg("follow_includes") = true, py::arg("trusted") = false,
        py::arg("keep_places") = true, py::arg("allow") = py::tuple(),
        "Loads a document in any stored form. Raises LoadError only when nothing could be read; else the\n"
        "document's problems say what was wrong.\n\n"
        "search: folders in which included files are looked for.\n"
        "progress: called about a hundred times with the share that is done, from 0 to 1; False cancels.\n"
        "key: decrypts an encrypted document.\n"
        "beside: look for included files beside the including one first.\n"
        "working_folder: look for them in the working folder at last. Without it a document reads alike "
        "whichever\n"
        "that folder is; \".\" in search stands for it all the same.\n"
        "follow_includes: read included files; else their directives are left out.\n"
        "trusted: read the document however much its includes or its archive make of it.\n"
        "keep_places: keep the sources in memory, so that entries know their file and line.\n"
        "allow: codes of warnings that are not told.\n\n"
        "Other threads run meanwhile.");
    module.def("parse", parse, py::arg("text"), py::kw_only(), py::arg("search") = py::tuple(),
               py::arg("progress") = py::none(), py::arg("trusted") = false, py::arg("keep_places") = true,
               py::arg("allow") = py::tuple(), "Loads a document from a text in memory.");
    define_fields();
}

} // namespace bk_python
