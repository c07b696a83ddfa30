#pragma once

#include "document/json/write/json_output_impl.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string_view>
#include <vector>

namespace bk_parser {

/// Writes a tree in the lossless shape. A group whose names all differ is an object; any other is an array with an object for
/// each entry. Depth costs heap, not stack.
class JsonWriter {
public:
    /// No line breaks when `indent` is 0.
    JsonWriter(JsonOutput& out, unsigned int indent) : out_(out), indent_(indent) {}

    /// Returns false when the sink wants no more.
    bool write(const ParserGroup& root);
    /// Writes each entry of the group as an object on a line of its own.
    bool write_lines(const ParserGroup& root);

private:
    enum class Shape { object, array, line };

    /// A group, and how much of it is written.
    struct Level {
        ParserEntry* const* entries;
        unsigned int count;
        Shape shape;
        bool is_wrapped;        // inside an object with the group's name
        unsigned int entry = 0; // the current or next one
        unsigned int value = 0; // the next value of that entry
        bool is_first = true;   // no entry is written yet
        bool is_in_entry = false;
        bool has_list = false; // the entry's values are in an array
        bool has_head = false; // inside an object with the entry's other parts
    };

    bool run();
    void advance();
    void open_group(const ParserGroup& group);
    void close_group();
    void begin_entry(Level& level, const ParserEntry& entry);
    void put_head(const ParserEntry& entry);
    bool write_values(Level& level, const ParserEntry& entry);
    void end_entry(Level& level);
    void put_value(const bk::StoredValue& value);
    void put_scalar(ParserValue::Type type, std::string_view word);
    void put_name(std::string_view name);
    void put_text(std::string_view text);
    void put_key(std::string_view key);
    void put_comma() { out_.put(indent_ == 0 ? "," : ", "); }
    void break_line();

    JsonOutput& out_;
    unsigned int indent_;
    std::vector<Level> levels_;
};

} // namespace bk_parser
