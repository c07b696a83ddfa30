#pragma once

#include "document/json/read/json_reader_impl.h"
#include "document/json/read/json_tree_impl.h"
#include "document/load/meter_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "parser/parser_limits.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Reads the lossless shape into a group, up to the first error.
class JsonTreeReader {
public:
    /// The arguments must outlive the reader.
    JsonTreeReader(std::string_view text, JsonReader::Count count, ParserGroup& root,
                   const ParserLimits& limits, ProblemList& problems, Meter& meter);

    void run();

private:
    using Event = JsonReader::Event;

    /// The kinds of open brackets.
    enum class Place {
        members,    // an object whose members are entries
        parts,      // an array of such objects: one group
        values,     // an array of an entry's values
        head,       // an object with what an entry has
        named_group // an object with a group's name and its entries
    };
    struct Frame {
        Place place;
        bool ends_group = false;    // its end closes a group
        unsigned int seen = 0;      // bits of the keys seen
        bool is_named_late = false; // the group's name follows its entries
        std::string name = {};      // name of a group
    };

    bool take(Event event);
    bool take_top(Event event);
    bool take_in_members(Event event);
    bool take_in_parts(Event event);
    bool take_in_values(Event event);
    bool take_in_head(Event event);
    bool take_in_named_group(Event event);

    bool take_value(Event event, bool is_content);
    bool take_object(bool is_content);
    void take_number();
    bool open_group(Place place, std::string_view name);
    bool begin_entry();
    void end_frame();
    void value_done();

    bool take_head_key();
    bool take_kind();
    bool take_array_count();
    bool take_group_key();
    bool take_tagged();
    bool take_tagged_word(ParserValue::Type type);
    bool take_binary();
    bool take_type();
    bool note_key(unsigned int bit);

    bool read_text(Event event, std::string& text);
    bool read_escaped_text(std::string& text);
    bool take_whole(unsigned int most, unsigned int& number);
    bool read_object_end();

    bool shape_fault(std::string_view message);
    bool syntax_fault();
    void warn_of_number(bool is_int);
    void add_problem(std::string_view code, std::string message, std::size_t offset, std::size_t length);

    JsonReader reader_;
    JsonTree tree_;
    const ParserLimits& limits_;
    ProblemList& problems_;
    Meter& meter_;
    std::vector<Frame> frames_;
    bool is_lines_;
    bool has_begun_ = false;
    std::string scratch_;
};

} // namespace bk_parser
