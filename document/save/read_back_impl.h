#pragma once

#include "parser/parser_group.h"
#include "parser/text/parser_grammar_impl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// By how much the places of entries differ from what the entries say, in the order of the document: neighbours that
/// moved by as much are one run.
class PlaceShifts {
public:
    void add(const ParserEntry& entry, core_ulong line, core_ulong column) {
        const Run shift{1, line - entry.get_line(), column - entry.get_column()};
        if (!runs_.empty() && runs_.back().lines == shift.lines && runs_.back().columns == shift.columns) {
            ++runs_.back().count;
        } else {
            runs_.push_back(shift);
        }
    }
    /// Lets the entries of the tree say their new places. When memory runs out, some keep the old ones: a later save that keeps
    /// the layout then knows them as new.
    void apply(const ParserGroup& root) const noexcept;

private:
    void apply_runs(const ParserGroup& root) const;

    struct Run {
        std::uint64_t count;
        core_ulong lines; // modulo 2^32, as columns
        core_ulong columns;
    };

    std::vector<Run> runs_;
};

/// Reads a text and compares it, word by word, with the tree that it shall say. Nothing is built.
class ReadBack {
public:
    ReadBack(std::string_view text, const ParserGroup& root, bool has_escapes);

    /// The version of an enciphered text is an entry, which is not compared.
    void pass_over_version() noexcept { passes_over_version_ = true; }

    /// Whether the text says just that tree.
    bool run();
    /// The entry at which it does not; null when that is behind the last one.
    const ParserEntry* difference() const noexcept { return difference_; }
    const PlaceShifts& shifts() const noexcept { return shifts_; }

    // The sink of the grammar.
    bool begin_entry(const bk::EntryHead& head, const bk::Token& token);
    void add_value(ParserWord::Type kind, std::string_view word);
    void make_function_call() noexcept { levels_.back().is_call = true; }
    bool open_group(const bk::Token&);
    void close_group();
    void report_fault(ParserReadObserver::Fault, const bk::Token&, std::string_view) noexcept {}

private:
    struct Level {
        ParserEntry* const* entries;
        unsigned int count;
        unsigned int next = 0;
        const ParserEntry* entry = nullptr; // that is being read
        unsigned int value_count = 0;
        bool is_call = false;
    };

    void enter(const ParserGroup& group);
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
    bool is_passing_over_ = false;
    bool is_equal_ = true;
    const ParserEntry* difference_ = nullptr;
    std::vector<Level> levels_;
    PlaceShifts shifts_;
};

} // namespace bk_parser
