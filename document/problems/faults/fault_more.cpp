#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/list/shown_word_impl.h"

/// Counts the skipped words that no message names. One mistake is one problem, which says how far the mistake reaches.
namespace bk_parser {

/// Counts a word that is skipped because of the mistake that was reported last.
void FaultStory::skip_too(std::string_view word) {
    ++more_.count;
    more_.last = word;
}

void FaultStory::tell_more() {
    const More more = std::exchange(more_, {});
    if (more.count == 0 || more.problem == ProblemList::not_kept) {
        return;
    }
    const Spot last = spot_of(more.last);
    const SourceFile& file = sources_.file_of(last);
    const std::size_t line = file.text.place_of(last.offset).line;
    const bool is_of_one_file = last.inclusion == more.told_at.inclusion;
    std::string where;
    if (!is_of_one_file || file.text.place_of(more.told_at.offset).line != line) {
        where = is_of_one_file ? "line " + std::to_string(line)
                               : "line " + std::to_string(line) + " of " + file.name.shown;
    }
    std::string text = "; ";
    if (more.count == 1) {
        text += shown(more.last) + (where.empty() ? "" : " in " + where) + " is skipped, too";
    } else {
        text += std::to_string(more.count) + " more words" + (where.empty() ? "" : " up to " + where) +
                " are skipped, too";
    }
    problems_.append(more.problem, text);
}

} // namespace bk_parser
