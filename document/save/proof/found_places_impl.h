#pragma once

#include "parser/parser_group.h"
#include "parser/parser_read_observer.h"
#include "parser/text/parser_grammar_impl.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bk_parser {

/// Finds the places of the entries in a text that lost something of the tree. Looks for each entry by its name, at most 16
/// entries after the one before it. An entry that is not found has no place.
class FoundPlaces {
public:
    FoundPlaces(std::string_view text, const ParserGroup& root);

    /// Updates line and column of the entries.
    void apply() const noexcept;

    // The functions that the grammar calls.
    bool begin_entry(const bk::EntryHead& head, const bk::Token& token);
    void add_value(ParserWord::Type, std::string_view) noexcept {}
    void make_function_call() noexcept {}
    bool open_group(const bk::Token&);
    void close_group() { levels_.pop_back(); }
    void report_fault(ParserReadObserver::Fault, const bk::Token&, std::string_view) noexcept {}

private:
    struct Place {
        ParserEntry* entry;
        core_ulong line;
        core_ulong column;
    };
    struct Level {
        ParserEntry* const* entries = nullptr;
        unsigned int count = 0;
        unsigned int next = 0;
        const ParserEntry* match = nullptr;
    };

    void list(const ParserGroup& root);

    std::vector<Place> places_;
    std::unordered_map<const ParserEntry*, std::size_t> index_;
    std::vector<Level> levels_;
};

} // namespace bk_parser
