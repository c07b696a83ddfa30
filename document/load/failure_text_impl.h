#pragma once

#include "document/problems/list/problem_codes_impl.h"
#include "parser/files/parser_source_host_impl.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The code and the words of a failure.
std::string_view failure_code(const bk::SourceFailure& failure, bool has_key);
std::string failure_text(const bk::SourceFailure& failure, bool has_key);

/// `most` is the smaller of what the library can read and of what the limits leave.
std::string too_large_text(std::string_view name, core_uint64 size, core_uint64 most);

/// "4,738"
std::string grouped_number(core_uint64 number);
/// "cut.bin is cut off: 4,738 bytes announced, 1,988 present"
std::string cut_off_text(std::string_view name, core_uint64 announced, core_uint64 present);
/// "3 bytes after the end of lamp.bin are not read"
std::string rest_text(std::string_view name, core_uint64 count);
/// Why these bytes cannot be read as a text, for example "is a PNG image, not a document"; empty when they can.
std::string why_no_text(std::string_view bytes);

} // namespace bk_parser
