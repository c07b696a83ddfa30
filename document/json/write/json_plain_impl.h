#pragma once

#include "document/json/write/json_output_impl.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string_view>
#include <vector>

namespace bk_parser {

/// Writes a tree in the plain shape: each group is an object with each name once. Depth costs heap, not stack.
class PlainJsonWriter {
public:
    /// No line breaks when `indent` is 0.
    PlainJsonWriter(JsonOutput& out, unsigned int indent) : out_(out), indent_(indent) {}

    /// Returns false when the sink wants no more.
    bool write(const ParserGroup& root);

private:
    /// An entry, and the position of the first entry of its name.
    struct Item {
        const ParserEntry* entry;
        unsigned int position;
        unsigned int first;
    };
    struct Level {
        std::vector<Item> items; // sorted so that entries of one name are adjacent
        std::size_t item = 0;    // the current or next one
        unsigned int value = 0;  // the next value of that entry
        bool is_in_entry = false;
    };

    static std::vector<Item> items_of(const ParserGroup& group);
    static bool begins_name(const Level& level) noexcept;
    static bool ends_name(const Level& level) noexcept;
    void open_group(const ParserGroup& group);
    void advance();
    void begin_entry(Level& level);
    bool write_values(Level& level);
    void end_entry(Level& level);
    void put_value(const bk::StoredValue& value);
    void put_comma() { out_.put(indent_ == 0 ? "," : ", "); }
    void break_line();

    JsonOutput& out_;
    unsigned int indent_;
    std::vector<Level> levels_;
};

} // namespace bk_parser
