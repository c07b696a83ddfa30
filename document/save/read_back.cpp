#include "document/save/read_back_impl.h"

#include "document/save/value_text_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <new>

namespace bk_parser {

void PlaceShifts::apply(const ParserGroup& root) const noexcept {
    try {
        apply_runs(root);
    } catch (const std::bad_alloc&) {
        return;
    }
}

void PlaceShifts::apply_runs(const ParserGroup& root) const {
    std::size_t run = 0;
    std::uint64_t left = runs_.empty() ? 0 : runs_.front().count;
    std::size_t end = runs_.size(); // behind the last run that moves anything
    while (end != 0 && runs_[end - 1].lines == 0 && runs_[end - 1].columns == 0) {
        --end;
    }
    struct Level {
        const ParserGroup* group;
        unsigned int entry;
        unsigned int value;
    };
    std::vector<Level> levels{{&root, 0, 0}};
    while (!levels.empty() && run < end) {
        Level& level = levels.back();
        if (level.entry == level.group->get_entries().get_count()) {
            levels.pop_back();
            continue;
        }
        ParserEntry* const entry = level.group->get_entries()[level.entry];
        if (entry != nullptr && level.value == 0) {
            bk::EntryAccess::set_place(*entry, entry->get_line() + runs_[run].lines,
                                       entry->get_column() + runs_[run].columns);
            if (--left == 0 && ++run < end) {
                left = runs_[run].count;
            }
        }
        const unsigned int count = entry == nullptr ? 0 : entry->get_value_count();
        const ParserGroup* group = nullptr;
        if (level.value == 0 && count != 0) { // what a text says has its group as the last value
            group = bk::ValueAccess::group(bk::EntryAccess::value(*entry, count - 1));
        }
        if (group != nullptr) {
            level.value = 1;
            levels.push_back({group, 0, 0});
        } else {
            level.value = 0;
            ++level.entry;
        }
    }
}

ReadBack::ReadBack(std::string_view text, const ParserGroup& root, bool has_escapes)
    : text_(text), has_escapes_(has_escapes) {
    enter(root);
}

bool ReadBack::run() {
    bk::Grammar<ReadBack> grammar(text_, *this);
    grammar.run([](const auto&...) {});
    while (is_equal_ && levels_.size() > 1) { // groups that the text left open
        close_group();
    }
    if (is_equal_) {
        finish_group();
    }
    return is_equal_;
}

void ReadBack::enter(const ParserGroup& group) {
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    levels_.push_back({entries.get_data(), entries.get_count()});
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
    if (!is_equal_) {
        return true;
    }
    is_passing_over_ = passes_over_version_ && levels_.size() == 1 && head.name == bk::version_keyword;
    if (is_passing_over_) {
        return true;
    }
    Level& level = levels_.back();
    level.entry = take_entry(level);
    level.value_count = 0;
    level.is_call = false;
    if (level.entry == nullptr || level.entry->get_name().get_view() != head.name ||
        level.entry->get_template().get_view() != head.template_name ||
        level.entry->get_array_count() != head.array_count) {
        fail(level.entry);
        return true;
    }
    shifts_.add(*level.entry, token.line, token.column);
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
        return false; // no more is wanted
    }
    Level& level = levels_.back();
    const ParserEntry& entry = *level.entry;
    const ParserGroup* const group =
        level.value_count < entry.get_value_count()
            ? bk::ValueAccess::group(bk::EntryAccess::value(entry, level.value_count))
            : nullptr;
    ++level.value_count;
    if (group == nullptr || !group->get_name().is_empty()) {
        fail(&entry);
        return false;
    }
    enter(*group);
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
