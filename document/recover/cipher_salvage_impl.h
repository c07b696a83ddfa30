#pragma once

#include "core/core_string.h"
#include "document/recover/lost_parts_impl.h"

#include <string_view>

namespace bk_parser {

/// Deciphers what is there of an enciphered file that may be damaged anywhere. When the result is no text, as under a wrong key,
/// returns false and leaves `lost` as it was.
bool salvage_cipher(std::string_view bytes, std::string_view key, CoreString& text, LostParts& lost);

} // namespace bk_parser
