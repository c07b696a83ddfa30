#pragma once

#include <string>

namespace bkdoc {

/// The manual page for man(1), made from the command table.
std::string manual_page();

} // namespace bkdoc
