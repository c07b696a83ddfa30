#pragma once

#include "python.h"

#include <string_view>

namespace bk_python {

/// What a text of JSON says, as dicts, lists, str, int, float, bool and None.
py::object objects_from_json(std::string_view json);

} // namespace bk_python
