#include "files/files.h"
#include "types/handles.h"
#include "values/arguments.h"
#include "values/convert.h"

#include "document/text_diff.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace bk_python {

namespace {

using bk_parser::SaveOptions;

std::optional<bk_parser::Form> form_of(const std::optional<std::string>& name) {
    if (!name) {
        return {};
    }
    if (*name == "text") {
        return bk_parser::Form::text;
    }
    if (*name == "binary") {
        return bk_parser::Form::binary;
    }
    if (*name == "cipher") {
        return bk_parser::Form::enciphered;
    }
    if (*name == "archive") {
        return bk_parser::Form::archive;
    }
    fail(PyExc_ValueError, "a form is 'text', 'binary', 'cipher' or 'archive', not '" + *name + "'");
}

[[noreturn]] void fail_save(const std::string& reason, const std::vector<bk_parser::Problem>& losses) {
    const py::object error = py::reinterpret_borrow<py::object>(types.save_error)(text_of(reason));
    py::list list;
    for (const bk_parser::Problem& loss : losses) {
        list.append(problem_object(loss));
    }
    error.attr("losses") = list;
    PyErr_SetObject(types.save_error, error.ptr());
    throw py::error_already_set();
}

/// Runs `act` on a document with the interpreter's lock released. Other threads run meanwhile; those that use this document
/// wait.
template <class Action>
auto without_lock(const DocumentSelf& self, const Action& act) {
    wait_for_forks();
    Tree& tree = *use_group(self.ptr()).head.tree;
    const TreeRef kept(&tree);
    const Occupation occupied(tree);
    const py::gil_scoped_release unlocked;
    return act(*tree.document());
}

std::vector<std::filesystem::path> save(const DocumentSelf& self, const py::object& path,
                                        const std::optional<std::string>& form, const std::string& key,
                                        bool keep_layout, bool lossy, bool into_includes) {
    const std::filesystem::path file = optional_path_from(path);
    const SaveOptions options{form_of(form), key, keep_layout, lossy, into_includes};
    bk_parser::SaveResult result = without_lock(
        self, [&](bk_parser::Document& document) { return bk_parser::save(document, file, options); });
    if (!result.ok()) {
        fail_save(result.reason, result.losses);
    }
    return std::move(result.written);
}

/// The change of each file, as `diff -u` writes it.
py::str diff(const DocumentSelf& self, const py::object& path, bool keep_layout, bool lossy,
             bool into_includes) {
    const std::filesystem::path file = optional_path_from(path);
    const SaveOptions options{{}, {}, keep_layout, lossy, into_includes};
    std::string text;
    const bk_parser::SavePreview preview = without_lock(self, [&](bk_parser::Document& document) {
        bk_parser::SavePreview shown = bk_parser::preview_save(document, file, options);
        for (const bk_parser::FileChange& change : shown.changes) {
            const std::string name = path_text(change.path);
            text += bk_parser::unified_diff(change.before, change.after, name, name);
        }
        return shown;
    });
    if (!preview.ok()) {
        fail_save(preview.reason, preview.losses);
    }
    return text_of(text);
}

} // namespace

void define_save() {
    const auto type = reinterpret_cast<PyObject*>(types.document);
    define(type, "save", save, py::arg("path") = py::none(), py::kw_only(), py::arg("form") = py::none(),
           py::arg("key") = "", py::arg("keep_layout") = true, py::arg("lossy") = false,
           py::arg("into_includes") = true,
           "Saves to a path, or to the file that it was loaded from, and gives the files that were replaced. "
           "Text keeps\n"
           "its layout: only the bytes of what was changed change. Raises SaveError, and leaves every file "
           "as it was,\n"
           "when what would be written does not read back as this very tree.\n\n"
           "form: 'text', 'binary', 'cipher' or 'archive'; that of the file when it is not given.\n"
           "lossy: save although the form cannot carry everything.\n\n"
           "Other threads run meanwhile; those that use this document wait.");
    define(type, "diff", diff, py::arg("path") = py::none(), py::kw_only(), py::arg("keep_layout") = true,
           py::arg("lossy") = false, py::arg("into_includes") = true,
           "What a save would change, as `diff -u` writes it; nothing is written.");
}

} // namespace bk_python
