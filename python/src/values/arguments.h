#pragma once

#include "python.h"

#include <filesystem>
#include <string>
#include <vector>

/// Arguments of functions, as C++ has them. TypeError for what is of another type.
namespace bk_python {

/// A str, bytes or os.PathLike; ValueError for one with a null character.
std::filesystem::path path_from(py::handle object);
/// The same, or an empty one for None; ValueError for an empty one.
std::filesystem::path optional_path_from(py::handle object);
/// Any iterable of paths but a path. `name` is the argument's.
std::vector<std::filesystem::path> paths_from(py::handle object, const char* name);
/// Any iterable of str but a str.
std::vector<std::string> texts_from(py::handle object, const char* name);
/// The characters of a str, or the bytes of whatever shows them: bytes, bytearray, memoryview.
std::string content_from(py::handle object);
/// The same without str.
std::string bytes_from(py::handle object);

} // namespace bk_python
