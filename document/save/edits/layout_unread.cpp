#include "document/problems/list/shown_word_impl.h"
#include "document/save/edits/layout_edits_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>

// Words that were not read exist only in the files. So no edit may remove one, or change values that one of them may own.

namespace bk_parser {

namespace {

/// Whether the author may have meant the word as a name or a value, rather than typed a stray character.
bool may_be_meant_as_entry(std::string_view word) noexcept {
    const char first = word.front();
    return bk::is_char(first, bk::CHAR_NAME_START) || static_cast<unsigned char>(first) >= 0x80 ||
           first == '#' || first == '"' || first == '\'';
}

} // namespace

/// In `fullscreen true width 1024` the words `true` and `width` are not read, and `fullscreen` gets the value. Its author meant
/// it for `width`, so an edit of `fullscreen` must not change it.
bool LayoutEdits::owns_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now) {
    std::uint32_t end = old.value_count == 0 ? old.name.end : value_of(group, old, old.value_count - 1).end;
    end = old.braces.end == 0 ? end : old.braces.begin;
    const std::vector<TextRange>& unread = record_.unread_words();
    auto word =
        std::lower_bound(unread.begin(), unread.end(), old.name.end,
                         [](const TextRange& range, std::uint32_t place) { return range.begin < place; });
    for (; word != unread.end() && word->begin < end; ++word) {
        if (may_be_meant_as_entry(words(*word))) {
            reason_ = "the word " + shown(words(*word)) + " at " + sources_.place_of(word->begin) +
                      " was not read, and what follows it would change with entry '" +
                      std::string(now.get_name().get_view()) + "'; mend it and load the document again";
            return false;
        }
    }
    return true;
}

bool LayoutEdits::keeps_unread_words() {
    for (const TextRange& word : record_.unread_words()) {
        if (const Edit* const edit = cover_of(sources_.map().find(word.begin, 1))) {
            reason_ = "the word " + shown(words(word)) + " at " + sources_.place_of(word.begin) +
                      " was not read, and would be lost with what changed in entry '" + edit->about +
                      "'; mend it and load the document again";
            return false;
        }
    }
    return true;
}

} // namespace bk_parser
