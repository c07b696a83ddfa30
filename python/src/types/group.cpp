#include "types/container.h"

#include "tree/edits.h"
#include "types/equal.h"
#include "values/convert.h"

namespace bk_python {

namespace {

std::string count_text(unsigned int count) {
    return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

PyObject* represent_group(PyObject* self) noexcept {
    return guarded<PyObject*>(nullptr, [&] {
        const unsigned int count = use_group(self).group->get_entries().get_count();
        return text_of("<bk_parser.Group, " + count_text(count) + ">").release().ptr();
    });
}

PyObject* represent_document(PyObject* self) noexcept {
    return guarded<PyObject*>(nullptr, [&] {
        const GroupObject& handle = use_group(self);
        const std::filesystem::path& path = handle.head.tree->document()->path();
        const std::string file = path.empty() ? "" : " '" + path_text(path) + "'";
        const unsigned int count = handle.group->get_entries().get_count();
        return text_of("<bk_parser.Document" + file + ", " + count_text(count) + ">").release().ptr();
    });
}

PyObject* parent_of_group(PyObject* self, void*) {
    return guarded<PyObject*>(nullptr, [&] {
        const GroupObject& handle = use_group(self);
        return holder_handle(*handle.head.tree, *handle.group).release().ptr();
    });
}

PyObject* new_document(PyTypeObject*, PyObject* arguments, PyObject* names) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        static const char* known[] = {nullptr};
        if (PyArg_ParseTupleAndKeywords(arguments, names, ":Document", const_cast<char**>(known)) == 0) {
            return nullptr;
        }
        return document_handle({}).release().ptr();
    });
}

} // namespace

PyTypeObject* make_group_type() {
    static PyGetSetDef fields[] = {
        {"parent", parent_of_group, nullptr,
         "The entry that holds the group; None for a document and a detached group.", nullptr},
        {nullptr, nullptr, nullptr, nullptr, nullptr},
    };
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_group)},
        {Py_tp_repr, reinterpret_cast<void*>(represent_group)},
        {Py_tp_richcompare, reinterpret_cast<void*>(compare_trees)},
        {Py_tp_hash, reinterpret_cast<void*>(PyObject_HashNotImplemented)},
        {Py_tp_iter, reinterpret_cast<void*>(iterate_items)},
        {Py_tp_getset, fields},
        {Py_mp_length, reinterpret_cast<void*>(count_items)},
        {Py_mp_subscript, reinterpret_cast<void*>(get_item)},
        {Py_mp_ass_subscript, reinterpret_cast<void*>(set_item)},
        {Py_sq_contains, reinterpret_cast<void*>(has_item)},
        {Py_tp_doc,
         const_cast<char*>("An ordered list of entries: the content of an entry, or of a document.")},
        {0, nullptr},
    };
    // BASETYPE allows subclasses. Only Document needs it, so the module removes it after creating Document.
    static PyType_Spec spec = {"bk_parser._core.Group", sizeof(GroupObject), 0,
                               Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION,
                               slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

PyTypeObject* make_document_type(PyTypeObject* group) {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_group)},
        {Py_tp_new, reinterpret_cast<void*>(new_document)},
        {Py_tp_repr, reinterpret_cast<void*>(represent_document)},
        {Py_tp_richcompare, reinterpret_cast<void*>(compare_trees)},
        {Py_tp_hash, reinterpret_cast<void*>(PyObject_HashNotImplemented)},
        {Py_tp_doc,
         const_cast<char*>("A document: the group that holds everything, and where it came from.\n\n"
                           "Document() is an empty one.")},
        {0, nullptr},
    };
    static PyType_Spec spec = {"bk_parser._core.Document", sizeof(GroupObject), 0, Py_TPFLAGS_DEFAULT, slots};
    PyObject* const type = PyType_FromSpecWithBases(&spec, reinterpret_cast<PyObject*>(group));
    group->tp_flags &= ~static_cast<unsigned long>(Py_TPFLAGS_BASETYPE);
    return reinterpret_cast<PyTypeObject*>(type);
}

void define_group_methods() {
    const auto type = reinterpret_cast<PyObject*>(types.group);
    define_container_methods(type);
    define(
        type, "clear",
        [](const GroupSelf& self) {
            const GroupObject& handle = use_group(self.ptr());
            clear(*handle.head.tree, *handle.group);
        },
        "Removes every entry. One for which a Python object stands lives on, detached.");
}

} // namespace bk_python
