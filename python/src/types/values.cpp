#include "types/values.h"

#include "tree/edits.h"
#include "values/convert.h"

#include "document/access/value_write_impl.h"

namespace bk_python {

namespace {

PyObject* entry_of(PyObject* self) noexcept {
    return reinterpret_cast<ValuesObject*>(self)->entry;
}

Py_ssize_t count_of(PyObject* self) {
    return static_cast<Py_ssize_t>(use_entry(entry_of(self)).entry->get_value_count());
}

/// Converts a Python index, which may count from the end.
unsigned int checked_index(Py_ssize_t index, Py_ssize_t count) {
    index += index < 0 ? count : 0;
    if (index < 0 || index >= count) {
        fail(PyExc_IndexError, "the entry has no such value");
    }
    return static_cast<unsigned int>(index);
}

py::list as_list(PyObject* self) {
    return py::list(value_tuple(entry_of(self)));
}

Py_ssize_t length(PyObject* self) {
    return guarded<Py_ssize_t>(-1, [&] { return count_of(self); });
}

/// Python only passes indexes from the beginning here.
PyObject* item(PyObject* self, Py_ssize_t index) {
    return guarded<PyObject*>(nullptr, [&] {
        const EntryObject& handle = use_entry(entry_of(self));
        if (index < 0 || index >= static_cast<Py_ssize_t>(handle.entry->get_value_count())) {
            fail(PyExc_IndexError, "the entry has no such value");
        }
        return value_of(*handle.head.tree, *handle.entry, static_cast<unsigned int>(index)).release().ptr();
    });
}

PyObject* subscript(PyObject* self, PyObject* key) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        if (PySlice_Check(key)) {
            return stolen(PyObject_GetItem(as_list(self).ptr(), key)).release().ptr();
        }
        const Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
        if (index == -1 && PyErr_Occurred() != nullptr) {
            throw py::error_already_set();
        }
        return item(self, static_cast<Py_ssize_t>(index < 0 ? index + count_of(self) : index));
    });
}

void remove_at(PyObject* self, Py_ssize_t index) {
    EntryObject& handle = use_entry(entry_of(self));
    const unsigned int value = checked_index(index, static_cast<Py_ssize_t>(handle.entry->get_value_count()));
    remove_value(*handle.head.tree, *handle.entry, value);
}

/// Where a slice begins, how far its places are apart, and how many there are.
struct Places {
    Py_ssize_t begin = 0;
    Py_ssize_t step = 0;
    Py_ssize_t count = 0;

    Py_ssize_t at(Py_ssize_t i) const noexcept { return begin + i * step; }
};

Places places_of(PyObject* self, PyObject* slice) {
    Places places;
    Py_ssize_t end = 0;
    if (PySlice_Unpack(slice, &places.begin, &end, &places.step) != 0) {
        throw py::error_already_set();
    }
    places.count = PySlice_AdjustIndices(count_of(self), &places.begin, &end, places.step);
    return places;
}

void remove_places(PyObject* self, const Places& places) {
    const EntryObject& handle = use_entry(entry_of(self));
    CoreBasicArray<unsigned int> values(static_cast<unsigned int>(places.count));
    for (Py_ssize_t i = 0; i < places.count; ++i) {
        values[static_cast<unsigned int>(i)] = static_cast<unsigned int>(places.at(i));
    }
    remove_values(*handle.head.tree, *handle.entry, values);
}

void set_item(PyObject* self, PyObject* key, PyObject* content) {
    const Given given(content);
    if (given.is_list()) {
        fail(PyExc_TypeError, "one place takes one value");
    }
    const Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
    if (index == -1 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    EntryObject& handle = use_entry(entry_of(self));
    store(*handle.head.tree, *handle.entry,
          checked_index(index, static_cast<Py_ssize_t>(handle.entry->get_value_count())), given.values(),
          given.end());
}

void insert_at(PyObject* self, Py_ssize_t index, std::span<const bk_parser::GivenValue> given) {
    EntryObject& handle = use_entry(entry_of(self));
    ParserEntry& entry = *handle.entry;
    const auto count = static_cast<Py_ssize_t>(entry.get_value_count());
    index = std::clamp<Py_ssize_t>(index < 0 ? index + count : index, 0, count);
    store(*handle.head.tree, *handle.entry, static_cast<unsigned int>(count), given,
          bk_parser::access::ListEnd::keep);
    for (unsigned int i = 0; index != count && i < given.size(); ++i) {
        entry.move_value(static_cast<unsigned int>(count) + i, static_cast<unsigned int>(index) + i);
    }
    handle.head.tree->forget_paths();
}

/// Stores values one by one from a position on. Each keeps the number type of the old value there.
void store_from(PyObject* self, Py_ssize_t place, std::span<const bk_parser::GivenValue> given) {
    const EntryObject& handle = use_entry(entry_of(self));
    store(*handle.head.tree, *handle.entry, static_cast<unsigned int>(place), given,
          bk_parser::access::ListEnd::keep);
}

/// The values outside the slice stay as they are.
void set_range(PyObject* self, const Places& places, std::span<const bk_parser::GivenValue> given) {
    const auto given_count = static_cast<Py_ssize_t>(given.size());
    const Py_ssize_t common = std::min(places.count, given_count);
    if (common != 0) {
        store_from(self, places.begin, given.first(static_cast<std::size_t>(common)));
    }
    if (given_count > common) {
        insert_at(self, places.begin + common, given.subspan(static_cast<std::size_t>(common)));
    } else if (places.count > common) {
        remove_places(self, {places.begin + common, 1, places.count - common});
    }
}

void set_places(PyObject* self, const Places& places, std::span<const bk_parser::GivenValue> given) {
    if (static_cast<Py_ssize_t>(given.size()) != places.count) {
        fail(PyExc_ValueError, "a slice with a step takes as many values as it has places");
    }
    const ParserEntry& entry = *use_entry(entry_of(self)).entry;
    for (Py_ssize_t i = 0; i < places.count; ++i) {
        if (entry.get_value_type(static_cast<unsigned int>(places.at(i))) == ParserValue::TYPE_GROUP) {
            fail(PyExc_ValueError, "a group stands there; remove it first");
        }
    }
    for (Py_ssize_t i = 0; i < places.count; ++i) {
        store_from(self, places.at(i), given.subspan(static_cast<std::size_t>(i), 1));
    }
}

void set_slice(PyObject* self, PyObject* key, PyObject* content) {
    const Given given{py::list(py::reinterpret_borrow<py::object>(content))};
    const Places places = places_of(self, key);
    const EntryObject& handle = use_entry(entry_of(self));
    refuse_exported(*handle.head.tree, *handle.entry);
    refuse_numbers(given.values());
    (places.step == 1 ? set_range : set_places)(self, places, given.values());
}

int assign_subscript(PyObject* self, PyObject* key, PyObject* content) {
    return guarded<int>(-1, [&] {
        if (content != nullptr) {
            (PySlice_Check(key) ? set_slice : set_item)(self, key, content);
        } else if (PySlice_Check(key)) {
            remove_places(self, places_of(self, key));
        } else {
            const Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
            if (index == -1 && PyErr_Occurred() != nullptr) {
                throw py::error_already_set();
            }
            remove_at(self, index);
        }
        return 0;
    });
}

PyObject* iterate_values(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&] { return PyObject_GetIter(value_tuple(entry_of(self)).ptr()); });
}

PyObject* compare(PyObject* self, PyObject* other, int operation) {
    return guarded<PyObject*>(nullptr, [&]() -> PyObject* {
        const bool is_other_list = PyList_Check(other) || PyTuple_Check(other);
        if (!is_other_list && !Py_IS_TYPE(other, types.values)) {
            return Py_NewRef(Py_NotImplemented);
        }
        const py::list list(py::reinterpret_borrow<py::object>(other));
        return PyObject_RichCompare(as_list(self).ptr(), list.ptr(), operation);
    });
}

PyObject* represent(PyObject* self) {
    return guarded<PyObject*>(nullptr, [&] { return PyObject_Repr(as_list(self).ptr()); });
}

void free_values(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    Py_DECREF(entry_of(self));
    PyObject_Free(self);
    Py_DECREF(type);
}

} // namespace

py::object values_handle(PyObject* entry) {
    auto* const values = PyObject_New(ValuesObject, types.values);
    if (values == nullptr) {
        throw std::bad_alloc();
    }
    values->entry = Py_NewRef(entry);
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(values));
}

PyTypeObject* make_values_type() {
    static PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(free_values)},
        {Py_tp_iter, reinterpret_cast<void*>(iterate_values)},
        {Py_tp_repr, reinterpret_cast<void*>(represent)},
        {Py_tp_richcompare, reinterpret_cast<void*>(compare)},
        {Py_tp_hash, reinterpret_cast<void*>(PyObject_HashNotImplemented)},
        {Py_sq_length, reinterpret_cast<void*>(length)},
        {Py_sq_item, reinterpret_cast<void*>(item)},
        {Py_mp_length, reinterpret_cast<void*>(length)},
        {Py_mp_subscript, reinterpret_cast<void*>(subscript)},
        {Py_mp_ass_subscript, reinterpret_cast<void*>(assign_subscript)},
        {Py_bf_getbuffer, reinterpret_cast<void*>(get_numbers)},
        {Py_bf_releasebuffer, reinterpret_cast<void*>(release_numbers)},
        {Py_tp_doc, const_cast<char*>("The values of an entry, as a list that stays one with the entry.")},
        {0, nullptr},
    };
    static PyType_Spec spec = {"bk_parser._core.Values", sizeof(ValuesObject), 0,
                               Py_TPFLAGS_DEFAULT | Py_TPFLAGS_SEQUENCE | Py_TPFLAGS_DISALLOW_INSTANTIATION,
                               slots};
    return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

void define_values_methods() {
    const auto type = reinterpret_cast<PyObject*>(types.values);
    define(
        type, "append",
        [](const ValuesSelf& self, const py::object& value) {
            Given given(value);
            if (given.is_list()) {
                fail(PyExc_TypeError, "append takes one value; extend takes several");
            }
            insert_at(self.ptr(), PY_SSIZE_T_MAX, given.values());
        },
        py::arg("value"), "Adds a value at the end.");
    define(
        type, "extend",
        [](const ValuesSelf& self, const py::object& values) {
            insert_at(self.ptr(), PY_SSIZE_T_MAX, Given(values).values());
        },
        py::arg("values"), "Adds the values of a list, an array or another iterable at the end.");
    define(
        type, "insert",
        [](const ValuesSelf& self, Py_ssize_t index, const py::object& value) {
            const Given given(value);
            if (given.is_list()) {
                fail(PyExc_TypeError, "insert takes one value");
            }
            insert_at(self.ptr(), index, given.values());
        },
        py::arg("index"), py::arg("value"), "Adds a value before the one at an index.");
    define(
        type, "clear",
        [](const ValuesSelf& self) {
            remove_places(self.ptr(), {0, 1, count_of(self.ptr())});
        },
        "Removes all values. A group for which a Python object stands lives on, detached.");
    define(
        type, "tolist", [](const ValuesSelf& self) { return as_list(self.ptr()); },
        "A list of the values as they are now.");
    define(
        type, "index",
        [](const ValuesSelf& self, const py::object& value, Py_ssize_t start, Py_ssize_t stop) {
            return as_list(self.ptr()).attr("index")(value, start, stop);
        },
        py::arg("value"), py::arg("start") = 0, py::arg("stop") = PY_SSIZE_T_MAX,
        "Where a value stands first; ValueError when it does not.");
    define(
        type, "count",
        [](const ValuesSelf& self, const py::object& value) {
            return as_list(self.ptr()).attr("count")(value);
        },
        py::arg("value"), "How often a value is there.");
}

} // namespace bk_python
