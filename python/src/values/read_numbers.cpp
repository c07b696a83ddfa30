#include "values/convert.h"

#include <cstring>

namespace bk_python {

namespace {

using bk_parser::GivenValue;

template <class T>
GivenValue number_at(const char* place) noexcept {
    T number;
    std::memcpy(&number, place, sizeof number);
    return GivenValue(number);
}

template <>
GivenValue number_at<bool>(const char* place) noexcept {
    return GivenValue(*place != 0);
}

using NumberReader = GivenValue (*)(const char*) noexcept;

template <class T>
NumberReader reader_of(Py_ssize_t size) noexcept {
    return size == static_cast<Py_ssize_t>(sizeof(T)) ? &number_at<T> : nullptr;
}

/// Finds the reader for a format letter of the struct module, in native or standard size; null for a format that is not a
/// number.
NumberReader reader_of(const char* format, Py_ssize_t size) noexcept {
    std::string_view letters = format == nullptr ? "B" : format;
    if (!letters.empty() && (letters.front() == '@' || letters.front() == '=' || letters.front() == '<')) {
        letters.remove_prefix(1);
    }
    if (letters.size() != 1) {
        return nullptr;
    }
    switch (letters.front()) {
    case '?':
        return reader_of<bool>(size);
    case 'f':
        return reader_of<float>(size);
    case 'd':
        return reader_of<double>(size);
    case 'b':
    case 'h':
    case 'i':
    case 'l':
    case 'q':
    case 'n':
        return size == 1   ? &number_at<signed char>
               : size == 2 ? &number_at<short>
               : size == 4 ? &number_at<int>
                           : reader_of<long long>(size);
    case 'B':
    case 'H':
    case 'I':
    case 'L':
    case 'Q':
    case 'N':
        return size == 1   ? &number_at<unsigned char>
               : size == 2 ? &number_at<unsigned short>
               : size == 4 ? &number_at<unsigned int>
                           : reader_of<unsigned long long>(size);
    default:
        return nullptr;
    }
}

} // namespace

bool read_numbers(const Py_buffer& buffer, std::vector<GivenValue>& out) {
    const NumberReader read = reader_of(buffer.format, buffer.itemsize);
    if (read == nullptr || buffer.suboffsets != nullptr || buffer.ndim > 8 ||
        (buffer.ndim != 0 && buffer.shape == nullptr)) {
        return false;
    }
    // Some exporters of contiguous numbers, such as ctypes, give no strides even on request.
    Py_ssize_t strides[8] = {};
    Py_ssize_t count = 1;
    for (int i = buffer.ndim; i-- != 0;) {
        strides[i] = buffer.strides == nullptr ? count * buffer.itemsize : buffer.strides[i];
        count *= buffer.shape[i];
    }
    out.reserve(out.size() + static_cast<std::size_t>(count));
    Py_ssize_t index[8] = {};
    const char* place = static_cast<const char*>(buffer.buf);
    for (; count != 0; --count) {
        out.push_back(read(place));
        for (int i = buffer.ndim; i-- != 0;) {
            place += strides[i];
            if (++index[i] < buffer.shape[i]) {
                break;
            }
            place -= strides[i] * buffer.shape[i];
            index[i] = 0;
        }
    }
    return true;
}

} // namespace bk_python
