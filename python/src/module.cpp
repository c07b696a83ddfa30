#include "files/files.h"
#include "types/container.h"
#include "types/entries.h"
#include "types/search.h"
#include "types/values.h"

#include "core/core_log.h"

namespace bk_python {

namespace {

PyObject* make_error(py::module_& module, const char* name, PyObject* base, const char* docstring) {
    const std::string full = std::string("bk_parser.") + name;
    const py::object error = stolen(PyErr_NewExceptionWithDoc(full.c_str(), docstring, base, nullptr));
    module.attr(name) = error;
    return py::object(error).release().ptr();
}

void add_type(py::module_& module, const char* name, PyTypeObject* type) {
    if (type == nullptr) {
        throw py::error_already_set();
    }
    module.attr(name) = py::handle(reinterpret_cast<PyObject*>(type));
}

void make_types(py::module_& module) {
    types.path_error =
        make_error(module, "PathError", PyExc_ValueError,
                   "A path that is malformed: what was found, the path, and a caret under the place.");
    types.load_error = make_error(module, "LoadError", PyExc_Exception,
                                  "Nothing of a document could be read; its `problems` say why.");
    types.load_cancelled =
        make_error(module, "LoadCancelled", types.load_error, "The progress callable gave False.");
    types.save_error = make_error(module, "SaveError", PyExc_Exception,
                                  "Nothing was saved; its `losses` say what the form cannot carry.");
    add_type(module, "Group", types.group = make_group_type());
    add_type(module, "Document", types.document = make_document_type(types.group));
    add_type(module, "Entry", types.entry = make_entry_type());
    add_type(module, "Values", types.values = make_values_type());
    add_type(module, "Entries", types.entries = make_entries_type());
    add_type(module, "Walk", types.walk = make_walk_type());
    add_type(module, "Search", types.search = make_search_type());
    add_type(module, "Problem", types.problem = make_problem_type());
}

/// Makes the types immutable. Otherwise Python code could remove methods, or assign to __class__ and so turn a Group into a Document that
/// has no document.
void seal_types() {
    for (PyTypeObject* const type : {types.group, types.document, types.entry, types.values, types.entries,
                                     types.walk, types.search, types.problem}) {
        type->tp_flags |= Py_TPFLAGS_IMMUTABLETYPE;
        PyType_Modified(type);
    }
}

} // namespace

} // namespace bk_python

PYBIND11_MODULE(_core, module) {
    using namespace bk_python;
    module.doc() = "Structured documents: load, ask, change, save. See bk_parser.";
    // Silences the log: errors come as problems and exceptions.
    CoreLogHandler::s_main_log_handler->set_verbosity(0);
    make_types(module);
    define_group_methods();
    define_entry_methods();
    define_values_methods();
    define_problems(module);
    define_load(module);
    define_save();
    define_bytes(module);
    define_json(module);
    module.def("_seal_types", seal_types);
    module.def("_wait_for_saves", wait_for_saves);
    module.def("_begin_forked", begin_forked);
}
