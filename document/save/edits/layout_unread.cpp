#include "document/problems/list/shown_word_impl.h"
#include "document/save/edits/layout_edits_impl.h"

// Words that were not read are in the files alone: no edit may take one away.

namespace bk_parser {

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
