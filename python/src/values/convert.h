#pragma once

#include "types/handles.h"

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

/// Converts between Python objects and values of entries. Texts are UTF-8. Other bytes become lone surrogates
/// ("surrogateescape", as in file names), and convert back unchanged.
namespace bk_python {

/// A new reference: bool, int, float, str, bytes, Group, or None for a value without content.
py::object value_of(Tree& tree, const ParserEntry& entry, unsigned int value);
/// All values of an Entry.
py::tuple value_tuple(PyObject* self);

py::str text_of(std::string_view text);
/// A file name in UTF-8.
std::string path_text(const std::filesystem::path& path);
/// The characters of a str.
std::string text_from(py::handle text);

/// A Python object, converted to values. Convert before looking at a tree: the conversion may run Python code, which may edit
/// the tree.
class Given {
public:
    explicit Given(py::handle object);

    std::span<const bk_parser::GivenValue> values() const noexcept { return values_; }
    bool is_list() const noexcept { return is_list_; }
    bk_parser::access::ListEnd end() const noexcept {
        return is_list_ ? bk_parser::access::ListEnd::cut : bk_parser::access::ListEnd::keep;
    }
    void append(py::handle object) { add_single(object); }

private:
    void add_single(py::handle object);
    void add_integer(py::handle number);
    bool add_bytes(py::handle object);
    bool add_buffer(py::handle object, bool takes_list);
    bool add_plain(py::handle object, bool takes_list);
    void add_all(py::handle iterable);

    std::vector<bk_parser::GivenValue> values_;
    std::deque<std::string> texts_;
    bool is_list_ = false;
};

/// ValueError when one of them is a number that no value can hold.
void refuse_numbers(std::span<const bk_parser::GivenValue> given);

/// Stores values in an entry. ValueError when no value can hold one of them, or when the old value is a group.
void store(Tree& tree, ParserEntry& entry, unsigned int value, std::span<const bk_parser::GivenValue> given,
           bk_parser::access::ListEnd end);

/// Reads the numbers of a buffer in C order. Returns false, and does nothing, for a format that is not a number.
bool read_numbers(const Py_buffer& buffer, std::vector<bk_parser::GivenValue>& out);

} // namespace bk_python
