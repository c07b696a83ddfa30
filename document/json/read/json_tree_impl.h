#pragma once

#include "document/json/read/json_reader_impl.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Builds the entries of a group: begin an entry, add values, which may be groups with entries of their own, and end it.
class JsonTree {
public:
    explicit JsonTree(ParserGroup& root) { levels_.push_back({&root, 0}); }
    ~JsonTree();
    JsonTree(const JsonTree&) = delete;
    JsonTree& operator=(const JsonTree&) = delete;

    /// Characters inside the source, which outlives this object, are referenced; others are copied.
    void begin_entry(std::string_view name, bool is_of_source);
    void set_kind(ParserEntry::Type kind) noexcept { open_.back().kind = kind; }
    void set_template(std::string_view name) { open_.back().template_name = name; }
    void set_array_count(unsigned int count) noexcept { open_.back().array_count = count; }
    /// Adds a value from its spelling, from the characters of a string, or from bytes.
    void add_value(ParserValue::Type type, std::string_view text, bool is_of_source);
    void end_entry();

    void open_group(std::string_view name);
    void close_group();
    /// Names the last group after its entries were read.
    void rename_group(std::string_view name);

    /// Whether an entry of the innermost open group is open.
    bool is_in_entry() const noexcept { return !open_.empty() && open_.back().level == levels_.size(); }
    /// How many groups are open, the outermost counted.
    std::size_t depth() const noexcept { return levels_.size(); }
    /// Ends all open groups and entries.
    void finish();

private:
    /// Characters in the source or in `texts_`.
    struct Text {
        const char* source; // null for characters in `texts_`
        std::size_t offset;
        std::size_t size;
    };
    struct Pending {
        ParserValue::Type type;
        Text text;
        ParserGroup* group; // of a group
    };
    struct OpenEntry {
        Text name;
        std::string template_name;
        ParserEntry::Type kind;
        unsigned int array_count;
        std::size_t first_value;
        std::size_t first_text;
        std::size_t level; // level of the group that has this entry
    };
    struct Level {
        ParserGroup* group;
        std::size_t first_entry;
    };

    Text keep(std::string_view text, bool is_of_source);
    std::string_view view(const Text& text) const noexcept;
    std::size_t text_need(const Pending& pending) const noexcept;
    void make_value(void* place, Pending& pending, char*& text);
    void fill_values(ParserEntry& entry, std::size_t first);

    std::vector<Level> levels_;
    std::vector<OpenEntry> open_;
    std::vector<Pending> pending_;      // values of all open entries, outermost first
    std::vector<ParserEntry*> entries_; // entries of all open groups, outermost first
    std::string texts_;                 // copied characters of the open entries
};

} // namespace bk_parser
