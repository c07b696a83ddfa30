#pragma once

#include "core/core_string.h"
#include "document/recover/lost_parts_impl.h"

#include <string_view>

namespace bk_parser {

/// Deciphers what is there of an enciphered file that may be damaged anywhere. False when what comes out is no text, as under a wrong
/// key; `lost` is as it was then.
bool salvage_cipher(std::string_view bytes, std::string_view key, CoreString& text, LostParts& lost);

} // namespace bk_parser
