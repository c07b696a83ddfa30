#pragma once

#include "document/save/record/entry_lookup_impl.h"
#include "parser/parser_group.h"
#include "parser/text/parser_grammar_impl.h"

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace bk_parser {

inline constexpr std::uint32_t no_index = 0xFFFFFFFFu;

/// A range of the expanded text.
struct TextRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

/// An entry of the old text, or a run of unchanged entries.
struct OldEntry {
    TextRange name;               // of the first entry, with template and array suffix
    std::uint32_t last_begin = 0; // of the last entry
    std::uint32_t end = 0;        // after the last word that was read
    std::uint32_t tail = 0;       // after skipped words, too, up to the next entry
    std::uint32_t count = 1;
    std::uint32_t new_index = no_index; // position of the first in its new group; none when it is gone
    bool has_changed = false;
    bool has_own_change = false; // something besides its group changed
    // Only for a changed entry:
    bool is_call = false;
    bool has_same_group = false;      // its group exists, unchanged
    bool has_known_entries = false;   // some entries of its group exist
    std::uint32_t arguments_open = 0; // after "("
    std::uint32_t first_value = 0;    // position in the values of its group
    std::uint32_t value_count = 0;    // without the group
    TextRange empty_tag;
    TextRange braces; // empty without a group
    std::uint32_t group = no_index;
    core_ulong line = 0;
    core_ulong column = 0;
};

/// A changed group of the old text.
struct OldGroup {
    std::uint32_t open = 0;           // after "{"
    std::uint32_t close = 0;          // before "}"
    const ParserGroup* now = nullptr; // the group as it is now
    std::vector<OldEntry> entries;
    std::vector<TextRange> values;
};

/// Reads the old text again, and compares it with the tree that was made from it and then edited. Recognises entries by the
/// line and column that they got when they were read. Merges unchanged entries into one range, so that memory is in proportion
/// to the changes.
class LayoutRecord {
public:
    LayoutRecord(std::string_view text, const ParserGroup& root, bool has_escapes);

    /// Finds the changes. has_changes() is false when there are none.
    void run();
    bool has_changes() const noexcept { return root_ != no_index; }
    std::uint32_t root() const noexcept { return root_; }
    const OldGroup& group(std::uint32_t i) const noexcept { return groups_[i]; }
    std::uint32_t group_count() const noexcept { return static_cast<std::uint32_t>(groups_.size()); }
    /// Words that were not read into the tree, in their order.
    const std::vector<TextRange>& unread_words() const noexcept { return unread_; }
    /// The name, with its template and array suffix, of the outermost entry whose group is not closed; empty when all are.
    TextRange open_group_name() const noexcept { return open_name_; }

    // The functions that the grammar calls.
    void see_word(std::string_view word) noexcept {
        before_word_ = last_end_;
        read_before_word_ = read_end_;
        last_begin_ = offset(word.data());
        last_end_ = last_begin_ + static_cast<std::uint32_t>(word.size());
        read_end_ = last_end_;
        if (word == bk::empty_tag) {
            innermost().entry.empty_tag = {last_begin_, last_end_};
        }
    }
    void add_entry(const bk::KnownEntry& known);
    bool open_group(const bk::KnownEntry& known, const bk::Token& brace);
    bool begin_entry(const bk::EntryHead& head, const bk::Token& token);
    void add_value(ParserWord::Type kind, std::string_view word);
    void make_function_call() noexcept {
        innermost().entry.is_call = true;
        innermost().entry.arguments_open = last_end_;
    }
    bool open_group(const bk::Token& brace);
    void close_group();
    void report_fault(ParserReadObserver::Fault fault, const bk::Token& token, std::string_view);

private:
    /// A group that is being read.
    struct Level {
        EntryLookup now;
        std::uint32_t open = 0;
        std::size_t first_entry = 0;
        std::size_t first_value = 0;
        bool has_entry = false;
        bool is_same =
            false; // the current entry is unchanged, at `same_index`; `entry` then describes an earlier one
        TextRange same_name;
        std::uint32_t same_index = 0;
        OldEntry entry;
        bk::EntryHead head; // head of the entry, when it has twins
        const ParserEntry* match = nullptr;
        bool is_renamed = false; // the match has another name
        bool has_same_values = true;
    };

    std::uint32_t offset(const char* place) const noexcept {
        return static_cast<std::uint32_t>(place - text_.data());
    }
    Level& innermost() noexcept { return levels_[depth_ - 1]; }
    const Level& innermost() const noexcept { return levels_[depth_ - 1]; }
    void enter(const ParserGroup* now, std::uint32_t open);
    static void check_renamed(Level& level) noexcept;
    void match_entry(Level& level, std::uint32_t index, const bk::EntryHead& head);
    void settle_twins(std::string_view group_text, bool has_group);
    unsigned int likeness(const ParserEntry& candidate, std::string_view group_text, bool has_group) const;
    std::string_view value_word(const Level& level, std::uint32_t i) const noexcept;
    void compare_value(Level& level, std::uint32_t i, ParserWord::Type kind, std::string_view word) const;
    void leave_out(const bk::Token& token);
    void add_in_parts(const bk::KnownEntry& known);
    void finish_entry(std::uint32_t end, std::uint32_t tail);
    void finish_same(Level& level, std::uint32_t end, std::uint32_t tail);
    bool lengthen_run(const Level& level, std::uint32_t index, std::uint32_t begin, std::uint32_t end,
                      std::uint32_t tail) noexcept;
    std::uint32_t finish_group(std::uint32_t close);
    bool is_as_it_was(const Level& level) const noexcept;

    std::string_view text_;
    bool has_escapes_;
    std::vector<Level> levels_; // the first `depth_` are open; the others are kept for reuse
    std::size_t depth_ = 0;
    std::vector<OldEntry> entries_; // of all open groups
    std::vector<TextRange> values_;
    std::deque<OldGroup> groups_;
    std::vector<TextRange> unread_;
    TextRange open_name_;
    std::uint32_t root_ = no_index;
    std::uint32_t read_end_ = 0; // end of the last word that was read
    std::uint32_t read_before_word_ = 0;
    std::uint32_t before_word_ = 0;
    std::uint32_t last_begin_ = 0;
    std::uint32_t last_end_ = 0;
    std::uint32_t text_end_;
};

} // namespace bk_parser
