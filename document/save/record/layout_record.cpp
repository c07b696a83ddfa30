#include "document/save/record/layout_record_impl.h"

#include "document/save/proof/read_back_impl.h"
#include "document/save/record/value_text_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

bool has_head(const ParserEntry& entry, const bk::EntryHead& head) {
    return entry.get_name().get_view() == head.name &&
           entry.get_template().get_view() == head.template_name &&
           entry.get_array_count() == head.array_count;
}

ParserEntry::Type type_of(const OldEntry& entry, char first) noexcept {
    return entry.is_call  ? ParserEntry::TYPE_FUNCTION_CALL
           : first == '#' ? ParserEntry::TYPE_KEYWORD
                          : ParserEntry::TYPE_ENTRY;
}

/// The last value of an entry if it is a group; else null.
const ParserGroup* last_group(const ParserEntry* entry) noexcept {
    if (entry == nullptr || !entry->has_value()) {
        return nullptr;
    }
    return bk::EntryAccess::value(*entry, entry->get_value_count() - 1).group();
}

} // namespace

LayoutRecord::LayoutRecord(std::string_view text, const ParserGroup& root, bool has_escapes)
    : text_(text), has_escapes_(has_escapes), text_end_(static_cast<std::uint32_t>(text.size())) {
    enter(&root, 0);
}

/// Opens a level. Reuses a closed one if there is one: constructing a level for each group makes the save of a large document 5% slower.
void LayoutRecord::enter(const ParserGroup* now, std::uint32_t open) {
    if (depth_ == levels_.size()) {
        levels_.emplace_back();
    }
    ++depth_;
    Level& level = innermost();
    level.now.reset(now);
    level.open = open;
    level.first_entry = entries_.size();
    level.first_value = values_.size();
    level.has_entry = false;
    level.is_same = false;
}

void LayoutRecord::run() {
    bk::Grammar<LayoutRecord> grammar(text_, *this);
    grammar.run([](const auto&...) {});
    while (depth_ > 1) { // groups that the text never closes
        open_name_ = levels_[depth_ - 2].entry.name;
        before_word_ = last_end_;
        read_before_word_ = read_end_;
        last_begin_ = text_end_;
        close_group();
    }
    finish_entry(read_end_, last_end_);
    root_ = is_as_it_was(innermost()) ? no_index : finish_group(text_end_);
}

bool LayoutRecord::begin_entry(const bk::EntryHead& head, const bk::Token& token) {
    finish_entry(read_before_word_, before_word_);
    if (head.had_suffix && !bk::is_name_by_itself(head.name)) {
        leave_out(token);
        return false;
    }
    Level& level = innermost();
    level.has_entry = true;
    level.entry = OldEntry();
    OldEntry& entry = level.entry;
    entry.name = {token.start, token.start + token.length};
    entry.last_begin = token.start;
    entry.first_value = static_cast<std::uint32_t>(values_.size() - level.first_value);
    entry.line = token.line;
    entry.column = token.column;
    match_entry(level, level.now.find(token.line, token.column, head.name), head);
    if (!level.now.twins().empty()) {
        level.head = head;
    }
    return true;
}

void LayoutRecord::match_entry(Level& level, std::uint32_t index, const bk::EntryHead& head) {
    level.entry.new_index = index;
    level.match = index == no_index ? nullptr : level.now.group()->get_entries()[index];
    level.is_renamed = level.match != nullptr && level.match->get_name().get_view() != head.name;
    if (level.is_renamed && !bk::EntryAccess::may_have_had_name(*level.match, head.name)) {
        level.entry.new_index = no_index; // came from another document
        level.match = nullptr;
        level.is_renamed = false;
    }
    level.has_same_values = true;
    level.entry.has_changed = level.match == nullptr || !has_head(*level.match, head);
}

std::string_view LayoutRecord::value_word(const Level& level, std::uint32_t i) const noexcept {
    const TextRange range = values_[level.first_value + level.entry.first_value + i];
    return text_.substr(range.begin, range.end - range.begin);
}

/// How much a candidate is like the entry that was read last, from 0 to 3.
unsigned int LayoutRecord::likeness(const ParserEntry& candidate, std::string_view group_text,
                                    bool has_group) const {
    const Level& level = innermost();
    const OldEntry& entry = level.entry;
    const std::uint32_t count = entry.value_count + (has_group ? 1 : 0);
    unsigned int like = has_head(candidate, level.head) ? 1 : 0;
    bool has_same_values = candidate.get_value_count() == count;
    for (std::uint32_t i = 0; i < entry.value_count && has_same_values; ++i) {
        const std::string_view word = value_word(level, i);
        has_same_values =
            reads_as(bk::classify_value(word), word, bk::EntryAccess::value(candidate, i), has_escapes_);
    }
    like += has_same_values ? 1 : 0;
    if (!has_same_values || !has_group) {
        return like + (has_same_values ? 1 : 0);
    }
    const ParserGroup* const group = last_group(&candidate);
    return like + (group != nullptr && ReadBack(group_text, *group, has_escapes_).run() ? 1 : 0);
}

/// Chooses between an entry and its copies, which have the same line and column: the one most like the old entry keeps its
/// layout. `group_text` begins after the "{".
void LayoutRecord::settle_twins(std::string_view group_text, bool has_group) {
    Level& level = innermost();
    if (level.now.twins().empty()) {
        return;
    }
    std::uint32_t best = level.entry.new_index;
    unsigned int most = likeness(*level.match, group_text, has_group);
    for (const std::uint32_t twin : level.now.twins()) {
        const unsigned int like = likeness(*level.now.group()->get_entries()[twin], group_text, has_group);
        if (like > most) {
            most = like;
            best = twin;
        }
    }
    if (best != level.entry.new_index) {
        level.now.choose(best);
        match_entry(level, best, level.head);
        const OldEntry& entry = level.entry;
        for (std::uint32_t i = 0; i < entry.value_count; ++i) {
            const std::string_view word = value_word(level, i);
            compare_value(level, i, bk::classify_value(word), word);
        }
    }
}

void LayoutRecord::add_value(ParserWord::Type kind, std::string_view word) {
    Level& level = innermost();
    const std::uint32_t begin = offset(word.data());
    last_end_ = begin + static_cast<std::uint32_t>(word.size());
    read_end_ = last_end_;
    values_.push_back({begin, last_end_});
    compare_value(level, level.entry.value_count++, kind, word);
}

void LayoutRecord::compare_value(Level& level, std::uint32_t i, ParserWord::Type kind,
                                 std::string_view word) const {
    OldEntry& entry = level.entry;
    if (entry.has_changed && !level.is_renamed) {
        return;
    }
    level.has_same_values = level.has_same_values && i < level.match->get_value_count() &&
                            reads_as(kind, word, bk::EntryAccess::value(*level.match, i), has_escapes_);
    entry.has_changed = entry.has_changed || !level.has_same_values;
}

void LayoutRecord::report_fault(ParserReadObserver::Fault fault, const bk::Token& token, std::string_view) {
    if (fault == ParserReadObserver::FAULT_GROUP_LEFT_OPEN) {
        return;
    }
    if (fault == ParserReadObserver::FAULT_TEXT_AFTER_END) {
        text_end_ = token.start;
        last_end_ = before_word_;
        read_end_ = read_before_word_;
        return;
    }
    leave_out(token);
}

/// Notes a word that was not read into the tree.
void LayoutRecord::leave_out(const bk::Token& token) {
    read_end_ = read_before_word_;
    unread_.push_back({token.start, token.start + token.length});
}

bool LayoutRecord::open_group(const bk::Token& brace) {
    settle_twins(text_.substr(brace.start + 1), true);
    innermost().entry.braces = {brace.start, brace.start + 1};
    enter(last_group(innermost().match), brace.start + 1);
    return true;
}

void LayoutRecord::close_group() {
    finish_entry(read_before_word_, before_word_);
    const Level& inner = innermost();
    const bool is_same = is_as_it_was(inner);
    const std::uint32_t close = last_begin_;
    const std::uint32_t group = is_same ? no_index : finish_group(close);
    const bool has_known =
        std::any_of(entries_.begin() + static_cast<std::ptrdiff_t>(inner.first_entry), entries_.end(),
                    [](const OldEntry& one) { return one.new_index != no_index; });
    entries_.resize(inner.first_entry);
    values_.resize(inner.first_value);
    --depth_;
    OldEntry& entry = innermost().entry;
    entry.braces.end = std::min(close + 1, static_cast<std::uint32_t>(text_.size()));
    entry.has_same_group = is_same;
    entry.has_known_entries = has_known;
    entry.group = group;
}

/// Whether every entry of the group is there, in order and unchanged.
bool LayoutRecord::is_as_it_was(const Level& level) const noexcept {
    const ParserGroup* const now = level.now.group();
    if (now == nullptr || (depth_ > 1 && !now->get_name().is_empty())) {
        return false;
    }
    const std::size_t count = entries_.size() - level.first_entry;
    if (count == 0) {
        return now->get_entries().get_count() == 0;
    }
    const OldEntry& entry = entries_[level.first_entry];
    return count == 1 && !entry.has_changed && entry.new_index == 0 &&
           entry.count == now->get_entries().get_count();
}

/// An entry with this place but another name may come from another document. It counts as renamed only if its values are equal.
void LayoutRecord::check_renamed(Level& level) noexcept {
    OldEntry& entry = level.entry;
    if (!level.is_renamed) {
        return;
    }
    const bool has_group = entry.braces.end != 0;
    const bool is_known = level.has_same_values &&
                          level.match->get_value_count() == entry.value_count + (has_group ? 1u : 0u) &&
                          (!has_group || entry.has_same_group || entry.has_known_entries);
    if (!is_known) {
        level.match = nullptr;
        entry.new_index = no_index;
    }
}

/// `end` is after the last word that was read, `tail` after the last word of any kind.
void LayoutRecord::finish_entry(std::uint32_t end, std::uint32_t tail) {
    Level& level = innermost();
    if (!level.has_entry) {
        return;
    }
    level.has_entry = false;
    if (level.is_same) {
        finish_same(level, end, tail);
        return;
    }
    OldEntry& entry = level.entry;
    entry.end = end;
    entry.tail = tail;
    const bool has_group = entry.braces.end != 0;
    if (!has_group) {
        settle_twins({}, false);
    }
    check_renamed(level);
    entry.has_own_change = entry.has_changed ||
                           level.match->get_value_count() != entry.value_count + (has_group ? 1u : 0u) ||
                           level.match->get_type() != type_of(entry, text_[entry.name.begin]);
    entry.has_changed = entry.has_own_change || (has_group && !entry.has_same_group);
    if (entry.has_changed) {
        entries_.push_back(entry);
        return;
    }
    values_.resize(level.first_value + entry.first_value);
    if (!lengthen_run(level, entry.new_index, entry.name.begin, end, tail)) {
        entries_.push_back(entry);
    }
}

/// Finishes an entry that was found unchanged when it was cut.
void LayoutRecord::finish_same(Level& level, std::uint32_t end, std::uint32_t tail) {
    level.is_same = false;
    if (!lengthen_run(level, level.same_index, level.same_name.begin, end, tail)) {
        OldEntry& entry = entries_.emplace_back();
        entry.name = level.same_name;
        entry.last_begin = level.same_name.begin;
        entry.end = end;
        entry.tail = tail;
        entry.new_index = level.same_index;
    }
}

/// Adds an unchanged entry to the run of unchanged entries before it. Returns false when there is none, or another entry is
/// between them now.
bool LayoutRecord::lengthen_run(const Level& level, std::uint32_t index, std::uint32_t begin,
                                std::uint32_t end, std::uint32_t tail) noexcept {
    if (entries_.size() == level.first_entry) {
        return false;
    }
    OldEntry& last = entries_.back();
    if (last.has_changed || last.new_index + last.count != index) {
        return false;
    }
    last.last_begin = begin;
    last.end = end;
    last.tail = tail;
    ++last.count;
    return true;
}

std::uint32_t LayoutRecord::finish_group(std::uint32_t close) {
    const Level& level = innermost();
    OldGroup& group = groups_.emplace_back();
    group.open = level.open;
    group.close = close;
    group.now = level.now.group();
    group.entries.assign(entries_.begin() + static_cast<std::ptrdiff_t>(level.first_entry), entries_.end());
    group.values.assign(values_.begin() + static_cast<std::ptrdiff_t>(level.first_value), values_.end());
    return static_cast<std::uint32_t>(groups_.size() - 1);
}

} // namespace bk_parser
