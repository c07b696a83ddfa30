#pragma once

#include "document/save/proof/place_shifts_impl.h"
#include "parser/parser_group.h"
#include "parser/text/parser_grammar_impl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Parses a text and compares it, word by word, with the tree that it should have. Builds no tree.
class ReadBack {
public:
    ReadBack(std::string_view text, const ParserGroup& root, bool has_escapes)
        : ReadBack(text, root, 0, root.get_entries().get_count(), has_escapes) {}
    /// Compares with some entries of a group only.
    ReadBack(std::string_view text, const ParserGroup& group, unsigned int first, unsigned int end,
             bool has_escapes);

    /// Skips the entry that holds the version of an enciphered text.
    void pass_over_version() noexcept { passes_over_version_ = true; }

    /// The text is a piece of a larger one. It begins with an entry, at this line and column, both from 0, and one more entry
    /// of this name follows the compared ones.
    void read_piece(core_ulong line, core_ulong column, std::string_view next_name) noexcept {
        lines_before_ = line;
        columns_before_ = column;
        next_name_ = next_name;
    }

    /// Whether the text has exactly that tree.
    bool run();
    /// The first entry that differs; null when the text has more than the tree.
    const ParserEntry* difference() const noexcept { return difference_; }
    const PlaceShifts& shifts() const noexcept { return shifts_; }

    // The functions that the grammar calls.
    bool begin_entry(const bk::EntryHead& head, const bk::Token& token);
    void add_value(ParserWord::Type kind, std::string_view word);
    void make_function_call() noexcept { levels_.back().is_call = true; }
    bool open_group(const bk::Token&);
    void close_group();
    void report_fault(ParserReadObserver::Fault, const bk::Token&, std::string_view) noexcept {
        if (!next_name_.empty() && !has_begun_) {
            fail(nullptr); // the value may belong to the entry before the piece
        }
    }

private:
    struct Level {
        ParserEntry* const* entries;
        unsigned int count;
        unsigned int next = 0;
        const ParserEntry* entry = nullptr; // being read
        unsigned int value_count = 0;
        bool is_call = false;
    };

    void enter(const ParserGroup& group, unsigned int first, unsigned int end);
    const ParserEntry* take_entry(Level& level) noexcept;
    void finish_entry();
    void finish_group();
    void fail(const ParserEntry* entry) noexcept {
        difference_ = is_equal_ ? entry : difference_;
        is_equal_ = false;
    }

    std::string_view text_;
    bool has_escapes_;
    bool passes_over_version_ = false;
    core_ulong lines_before_ = 0;
    core_ulong columns_before_ = 0;
    std::string_view next_name_;
    bool has_begun_ = false;
    bool has_seen_next_ = false;
    bool is_passing_over_ = false;
    bool is_equal_ = true;
    const ParserEntry* difference_ = nullptr;
    std::vector<Level> levels_;
    PlaceShifts shifts_;
};

} // namespace bk_parser
