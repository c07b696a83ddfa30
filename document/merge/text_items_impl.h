#pragma once

#include "document/layout/source_tokens_impl.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// An entry or a directive of a text, with the comments and white space before it and the rest of its line. The items
/// of a group and its tail together are everything between its braces.
struct TextItem {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint64_t label = 0;   // hash of the name, template and first string; of the whole of a directive
    std::uint64_t content = 0; // hash of the words and comments, without their layout
    std::uint64_t head = 0;    // the same hash of what is before its brace
    std::uint64_t tail_content = 0; // hash of the comments after its last item
    std::uint64_t rest_content = 0; // hash of its closing brace and what follows that
    std::uint32_t parent = 0;
    std::uint32_t open_end = 0; // after "{"; 0 when it holds no group
    std::uint32_t tail = 0;     // where what follows its last item begins
    std::uint32_t close = 0;    // where "}" is
    std::vector<std::uint32_t> items;
};

/// A text by its items. Item 0 is the text itself.
struct TextItems {
    std::string_view source;
    std::vector<TextItem> items;
    bool has_faults = false; // then there are no items

    explicit TextItems(std::string_view text);
    std::string_view text(std::uint32_t begin, std::uint32_t end) const noexcept {
        return source.substr(begin, end - begin);
    }
};

} // namespace bk_parser
