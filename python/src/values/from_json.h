#pragma once

#include "python.h"

#include <string_view>

namespace bk_python {

/// Parses JSON to dict, list, str, int, float, bool and None.
py::object objects_from_json(std::string_view json);

} // namespace bk_python
