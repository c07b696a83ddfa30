#pragma once

#include "document/recover/lost_parts_impl.h"
#include "parser/parser_archive.h"

#include <string_view>

namespace bk_parser {

/// Reads what can be read of an archive that may be damaged anywhere. Words that name no string are left out. Where the number of
/// strings, or of words, contradicts the rest, the place is taken at which the words end with the file.
void salvage_archive(std::string_view bytes, ParserArchive& archive, LostParts& lost);

} // namespace bk_parser
