#include "types/entries.h"

#include <vector>

namespace bk_python {

namespace {

/// A group that is walked.
struct Level {
    PyObject* container;  // owned reference to a Group or an Entry
    EntryObject* current; // owned reference; null before the first
    unsigned int value;   // which group value of an entry is walked
    unsigned int position;
};

constexpr unsigned int first_group_value = 0xFFFFFFFFu;

ParserGroup* group_of(const Level& level) {
    const Container container{level.container};
    if (level.value == first_group_value) {
        return container.group();
    }
    container.tree();
    ParserGroup* group = nullptr;
    bk_parser::access::read(*reinterpret_cast<EntryObject*>(level.container)->entry, level.value, group);
    return group;
}

/// Moves to the next entry of the group, and returns it; null after the last.
EntryObject* next_entry(Level& level) {
    ParserGroup* const group = group_of(level);
    if (group == nullptr) {
        return nullptr;
    }
    if (level.current != nullptr && level.current->parent == group) {
        level.position = position_of(*level.current) + 1;
    }
    const auto& entries = group->get_entries();
    if (level.position >= entries.get_count()) {
        return nullptr;
    }
    Tree& tree = *reinterpret_cast<Handle*>(level.container)->tree;
    py::object next = entry_handle(tree, *entries[level.position], group, level.position);
    Py_XDECREF(level.current);
    level.current = reinterpret_cast<EntryObject*>(next.release().ptr());
    return level.current;
}

void leave(Level& level) noexcept {
    Py_XDECREF(level.current);
    Py_DECREF(level.container);
}

struct Entries {
    PyObject_HEAD Level level;
};

PyObject* next_of_entries(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&] {
        return Py_XNewRef(reinterpret_cast<PyObject*>(next_entry(reinterpret_cast<Entries*>(self)->level)));
    });
}

void free_entries(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    leave(reinterpret_cast<Entries*>(self)->level);
    PyObject_Free(self);
    Py_DECREF(type);
}

/// Walks with an explicit stack, one level for each open group.
struct Walk {
    PyObject_HEAD std::vector<Level>* levels;
    bool skips_groups;
    bool is_running; // in a thread that may be waiting for a save
};

/// The first group value of an entry at this position or later.
void enter_group(std::vector<Level>& levels, EntryObject* holder, unsigned int value) {
    for (; value < holder->entry->get_value_count(); ++value) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(*holder->entry, value, group)) {
            levels.push_back({Py_NewRef(reinterpret_cast<PyObject*>(holder)), nullptr, value, 0});
            return;
        }
    }
}

EntryObject* next_below(Walk& walk) {
    std::vector<Level>& levels = *walk.levels;
    if (!levels.empty() && levels.back().current != nullptr && !walk.skips_groups) {
        EntryObject* const holder = levels.back().current;
        use(holder->head);
        enter_group(levels, holder, 0);
    }
    walk.skips_groups = false;
    while (!levels.empty()) {
        if (EntryObject* const next = next_entry(levels.back())) {
            return next;
        }
        Level done = levels.back();
        levels.pop_back();
        if (!levels.empty() && reinterpret_cast<PyObject*>(levels.back().current) == done.container) {
            enter_group(levels, levels.back().current, done.value + 1);
        }
        leave(done);
    }
    return nullptr;
}

PyObject* next_of_walk(PyObject* self) {
    auto& walk = *reinterpret_cast<Walk*>(self);
    if (walk.is_running) {
        PyErr_SetString(PyExc_ValueError, "the walk goes on in another thread");
        return nullptr;
    }
    walk.is_running = true;
    PyObject* const next = guarded<PyObject*>(
        nullptr, [&] { return Py_XNewRef(reinterpret_cast<PyObject*>(next_below(walk))); });
    walk.is_running = false;
    return next;
}

PyObject* skip_groups(PyObject* self, PyObject*) {
    reinterpret_cast<Walk*>(self)->skips_groups = true;
    Py_RETURN_NONE;
}

void free_walk(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    std::vector<Level>* const levels = reinterpret_cast<Walk*>(self)->levels;
    PyObject_Free(self);
    Py_DECREF(type);
    for (Level& level : *levels) {
        leave(level);
    }
    delete levels;
}

PyTypeObject* make_type(const char* name, std::size_t size, PyType_Slot* slots) {
    PyType_Spec spec = {name, static_cast<int>(size), 0,
                        Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

} // namespace

py::object iterate(PyObject* container) {
    auto* const entries = PyObject_New(Entries, types.entries);
    if (entries == nullptr) {
        throw std::bad_alloc();
    }
    entries->level = {Py_NewRef(container), nullptr, first_group_value, 0};
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(entries));
}

py::object walk(const Container& container) {
    auto levels = std::make_unique<std::vector<Level>>();
    levels->reserve(8);
    auto* const walk = PyObject_New(Walk, types.walk);
    if (walk == nullptr) {
        throw std::bad_alloc();
    }
    levels->push_back({Py_NewRef(container.self), nullptr, first_group_value, 0});
    walk->levels = levels.release();
    walk->skips_groups = false;
    walk->is_running = false;
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(walk));
}

PyTypeObject* make_entries_type() {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_entries)},
        {Py_tp_iter, reinterpret_cast<void*>(PyObject_SelfIter)},
        {Py_tp_iternext, reinterpret_cast<void*>(next_of_entries)},
        {Py_tp_doc, const_cast<char*>("The entries of a group, one at a time.")},
        {0, nullptr},
    };
    return make_type("bk_parser._core.Entries", sizeof(Entries), slots);
}

PyTypeObject* make_walk_type() {
    static PyMethodDef methods[] = {
        {"skip_groups", skip_groups, METH_NOARGS, "Leaves out what the entry holds that was given last."},
        {nullptr, nullptr, 0, nullptr},
    };
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_walk)},
        {Py_tp_iter, reinterpret_cast<void*>(PyObject_SelfIter)},
        {Py_tp_iternext, reinterpret_cast<void*>(next_of_walk)},
        {Py_tp_methods, methods},
        {Py_tp_doc, const_cast<char*>("Every entry below a group, an entry before what it holds.")},
        {0, nullptr},
    };
    return make_type("bk_parser._core.Walk", sizeof(Walk), slots);
}

} // namespace bk_python
