#include "types/search.h"

#include <memory>

namespace bk_python {

void Search::end() noexcept {
    delete cursor;
    cursor = nullptr;
    if (place != nullptr) {
        *place = next;
        if (next != nullptr) {
            next->place = place;
        }
        place = nullptr;
    }
}

void Search::settle() {
    if (found == nullptr) {
        found = new std::vector<PyObject*>;
    }
    for (;;) {
        found->reserve(found->size() == found->capacity() ? 2 * found->size() + 1 : found->size());
        if (!cursor->next()) {
            break;
        }
        found->push_back(visit_handle(*head.tree, cursor->visit()).release().ptr());
    }
    end();
}

namespace {

PyObject* next_of(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        auto& search = *reinterpret_cast<Search*>(self);
        use(search.head);
        if (search.found != nullptr && search.given < search.found->size()) {
            return (*search.found)[search.given++];
        }
        if (search.cursor == nullptr) {
            return nullptr;
        }
        if (search.cursor->next()) {
            return visit_handle(*search.head.tree, search.cursor->visit()).release().ptr();
        }
        search.end();
        return nullptr;
    });
}

void free_search(PyObject* self) noexcept {
    auto& search = *reinterpret_cast<Search*>(self);
    PyTypeObject* const type = Py_TYPE(self);
    search.end();
    Tree* const tree = search.head.tree;
    const std::unique_ptr<std::vector<PyObject*>> found(search.found);
    const std::size_t given = search.given;
    PyObject* const container = search.container;
    PyObject_Free(self);
    Py_DECREF(type);
    for (std::size_t i = given; found && i < found->size(); ++i) {
        Py_DECREF((*found)[i]);
    }
    Py_DECREF(container);
    tree->release();
}

} // namespace

py::object find_all(const Container& container, const bk_parser::Path& path) {
    const ParserGroup* const group = container.group();
    Tree& tree = container.tree();
    std::unique_ptr<bk_parser::PathSearch> cursor;
    if (group != nullptr) {
        cursor = std::make_unique<bk_parser::PathSearch>(*group, path);
    }
    auto* const search = PyObject_New(Search, types.search);
    if (search == nullptr) {
        throw std::bad_alloc();
    }
    tree.retain();
    search->head.tree = &tree;
    search->container = Py_NewRef(container.self);
    search->cursor = cursor.release();
    search->found = nullptr;
    search->given = 0;
    search->place = nullptr;
    search->next = nullptr;
    if (search->cursor != nullptr) {
        search->next = tree.searches;
        search->place = &tree.searches;
        if (search->next != nullptr) {
            search->next->place = &search->next;
        }
        tree.searches = search;
    }
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(search));
}

PyTypeObject* make_search_type() {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_search)},
        {Py_tp_iter, reinterpret_cast<void*>(PyObject_SelfIter)},
        {Py_tp_iternext, reinterpret_cast<void*>(next_of)},
        {Py_tp_doc, const_cast<char*>("Finds the entries of a path, one at a time.")},
        {0, nullptr},
    };
    static PyType_Spec spec = {"bk_parser._core.Search", sizeof(Search), 0,
                               Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

} // namespace bk_python
