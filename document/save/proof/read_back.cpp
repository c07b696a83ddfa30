#include "document/save/proof/read_back_impl.h"

#include "document/save/record/value_text_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

namespace bk_parser {

ReadBack::ReadBack(std::string_view text, const ParserGroup& group, unsigned int first, unsigned int end,
                   bool has_escapes)
    : text_(text), has_escapes_(has_escapes) {
    enter(group, first, end);
}

bool ReadBack::run() {
    bk::Grammar<ReadBack> grammar(text_, *this);
    grammar.run([](const auto&...) {});
    while (is_equal_ && levels_.size() > 1) { // groups that the text never closes
        close_group();
    }
    if (is_equal_) {
        finish_group();
    }
    if (!next_name_.empty() && !has_seen_next_) {
        fail(nullptr);
    }
    return is_equal_;
}

void ReadBack::enter(const ParserGroup& group, unsigned int first, unsigned int end) {
    levels_.push_back({group.get_entries().get_data() + first, end - first});
}

const ParserEntry* ReadBack::take_entry(Level& level) noexcept {
    while (level.next < level.count) {
        if (const ParserEntry* const entry = level.entries[level.next++]) {
            return entry;
        }
    }
    return nullptr;
}

bool ReadBack::begin_entry(const bk::EntryHead& head, const bk::Token& token) {
    if (head.had_suffix && !bk::is_name_by_itself(head.name)) {
        return false;
    }
    finish_entry();
    has_begun_ = true;
    if (!is_equal_) {
        return true;
    }
    is_passing_over_ = passes_over_version_ && levels_.size() == 1 && head.name == bk::version_keyword;
    if (is_passing_over_) {
        return true;
    }
    Level& level = levels_.back();
    if (!next_name_.empty() && levels_.size() == 1 && level.next == level.count) {
        is_passing_over_ = head.name == next_name_ && !has_seen_next_;
        has_seen_next_ = is_passing_over_;
    }
    if (is_passing_over_) {
        return true;
    }
    level.entry = take_entry(level);
    level.value_count = 0;
    level.is_call = false;
    if (level.entry == nullptr || level.entry->get_name().get_view() != head.name ||
        level.entry->get_template().get_view() != head.template_name ||
        level.entry->get_array_count() != head.array_count) {
        fail(level.entry);
        return true;
    }
    shifts_.add(*level.entry, token.line + lines_before_,
                token.column + (token.line == 1 ? columns_before_ : 0));
    return true;
}

void ReadBack::add_value(ParserWord::Type kind, std::string_view word) {
    if (!is_equal_ || is_passing_over_) {
        return;
    }
    Level& level = levels_.back();
    if (level.value_count >= level.entry->get_value_count() ||
        !reads_as(kind, word, bk::EntryAccess::value(*level.entry, level.value_count), has_escapes_)) {
        fail(level.entry);
    }
    ++level.value_count;
}

bool ReadBack::open_group(const bk::Token&) {
    if (!is_equal_ || is_passing_over_) {
        fail(nullptr);
        return false; // stop: the result is known
    }
    Level& level = levels_.back();
    const ParserEntry& entry = *level.entry;
    const ParserGroup* const group = level.value_count < entry.get_value_count()
                                         ? bk::EntryAccess::value(entry, level.value_count).group()
                                         : nullptr;
    ++level.value_count;
    if (group == nullptr || !group->get_name().is_empty()) {
        fail(&entry);
        return false;
    }
    enter(*group, 0, group->get_entries().get_count());
    return true;
}

void ReadBack::close_group() {
    if (is_equal_) {
        finish_group();
        levels_.pop_back();
    }
}

void ReadBack::finish_group() {
    finish_entry();
    if (is_equal_) {
        if (const ParserEntry* const missing = take_entry(levels_.back())) {
            fail(missing);
        }
    }
}

void ReadBack::finish_entry() {
    Level& level = levels_.back();
    const ParserEntry* const entry = level.entry;
    level.entry = nullptr;
    if (!is_equal_ || entry == nullptr) {
        return;
    }
    const ParserEntry::Type type = level.is_call                            ? ParserEntry::TYPE_FUNCTION_CALL
                                   : entry->get_name().get_view()[0] == '#' ? ParserEntry::TYPE_KEYWORD
                                                                            : ParserEntry::TYPE_ENTRY;
    if (level.value_count != entry->get_value_count() || entry->get_type() != type) {
        fail(entry);
    }
}

} // namespace bk_parser
