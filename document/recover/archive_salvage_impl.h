#pragma once

#include "document/recover/lost_parts_impl.h"
#include "parser/parser_archive.h"

#include <string_view>

namespace bk_parser {

/// Reads what can be read of an archive that may be damaged anywhere. Leaves out words that name no string. When the number of
/// strings or of words contradicts the rest, goes by the place from which the words reach exactly to the end of the file.
void salvage_archive(std::string_view bytes, ParserArchive& archive, LostParts& lost);

} // namespace bk_parser
