#pragma once

#include <string>

namespace bkdoc {

/// The manual page, made of the command table, for man(1).
std::string manual_page();

} // namespace bkdoc
