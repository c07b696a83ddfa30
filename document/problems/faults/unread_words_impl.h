#pragma once

#include "document/problems/faults/fault_record_impl.h"
#include "document/sources/source_map_impl.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

inline constexpr std::size_t most_unread_words = 100; // further ones are only counted

/// "the word 'X' at FILE:LINE was not read"
std::string unread_word(std::string_view word, const std::string& place);
/// "3 more words were not read"
std::string more_unread_words(std::size_t count);

/// Messages about the words that are not in the tree: the first hundred as by `unread_word`, then the number of the others.
std::vector<std::string> unread_words(const FaultRecorder& faults, const SourceMap& sources);

} // namespace bk_parser
