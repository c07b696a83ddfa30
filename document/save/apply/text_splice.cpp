#include "document/save/apply/text_splice_impl.h"

#include "document/save/apply/text_edits_impl.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace bk_parser {

TextSplice splice(CoreString& text, std::vector<Edit> edits) {
    sort_edits(edits);
    TextSplice splice{edits.front().begin, edits.front().end, 0};
    for (Edit& edit : edits) {
        splice.old_end = std::max(splice.old_end, edit.end);
        edit.begin -= splice.begin;
        edit.end -= splice.begin;
    }
    const std::size_t size = text.get_length();
    const std::string put =
        edited(text.get_view().substr(splice.begin, splice.old_end - splice.begin), edits);
    splice.new_end = splice.begin + put.size();
    const std::size_t rest = size - splice.old_end;
    const std::size_t new_size = splice.new_end + rest;
    if (new_size > CoreString::max_length) {
        throw std::length_error("splice");
    }
    char* const bytes = text.resize(static_cast<unsigned int>(std::max(size, new_size)));
    std::memmove(bytes + splice.new_end, bytes + splice.old_end, rest);
    std::copy(put.begin(), put.end(), bytes + splice.begin);
    text.resize(static_cast<unsigned int>(new_size));
    return splice;
}

} // namespace bk_parser
