#pragma once

#include "python.h"

#include <filesystem>
#include <string>
#include <vector>

/// Converts arguments of functions to C++. TypeError for another type.
namespace bk_python {

/// A str, bytes or os.PathLike; ValueError for a null character.
std::filesystem::path path_from(py::handle object);
/// The same; None gives an empty path, and an empty path is a ValueError.
std::filesystem::path optional_path_from(py::handle object);
/// Any iterable of paths, but not a single path. `name` is the argument's name, for messages.
std::vector<std::filesystem::path> paths_from(py::handle object, const char* name);
/// Any iterable of str, but not a str.
std::vector<std::string> texts_from(py::handle object, const char* name);
/// The characters of a str, or the bytes of any object with a buffer: bytes, bytearray, memoryview.
std::string content_from(py::handle object);
/// The same, but not a str.
std::string bytes_from(py::handle object);

} // namespace bk_python
