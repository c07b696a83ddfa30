#include "document/json/read/json_tree_reader_impl.h"

#include "document/json/json_words_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"

namespace bk_parser {

namespace {

constexpr unsigned int values_seen = 1;
constexpr unsigned int kind_seen = 2;
constexpr unsigned int template_seen = 4;
constexpr unsigned int array_seen = 8;
constexpr unsigned int group_seen = 1;
constexpr unsigned int entries_seen = 2;

bool is_special(std::string_view key) noexcept {
    return key.starts_with(json_mark) && !key.starts_with(escaped_name_mark);
}

} // namespace

JsonTreeReader::JsonTreeReader(std::string_view text, JsonReader::Count count, ParserGroup& root,
                               const ParserLimits& limits, ProblemList& problems, Meter& meter)
    : reader_(text, count), tree_(root), limits_(limits), problems_(problems), meter_(meter),
      is_lines_(count == JsonReader::Count::lines) {}

void JsonTreeReader::run() {
    for (Event event = reader_.next(); event != Event::end && take(event); event = reader_.next()) {
        meter_.reach(reader_.offset());
    }
    tree_.finish();
}

/// Returns false after reporting an error.
bool JsonTreeReader::take(Event event) {
    if (event == Event::fault) {
        return syntax_fault();
    }
    if (frames_.empty()) {
        return take_top(event);
    }
    switch (frames_.back().place) {
    case Place::members:
        return take_in_members(event);
    case Place::parts:
        return take_in_parts(event);
    case Place::values:
        return take_in_values(event);
    case Place::head:
        return take_in_head(event);
    case Place::named_group:
        break;
    }
    return take_in_named_group(event);
}

bool JsonTreeReader::take_top(Event event) {
    const bool is_first = !has_begun_;
    has_begun_ = true;
    if (event == Event::object) {
        frames_.push_back({Place::members});
        return true;
    }
    if (event == Event::array && is_first && !is_lines_) {
        frames_.push_back({Place::parts});
        return true;
    }
    return shape_fault(is_lines_ || !is_first ? "each line has to be an object with an entry"
                                              : "a document is an object, or an array of objects");
}

bool JsonTreeReader::take_in_members(Event event) {
    if (event == Event::key) {
        return begin_entry();
    }
    if (event == Event::object_end) {
        end_frame();
        return true;
    }
    return take_value(event, true);
}

bool JsonTreeReader::take_in_parts(Event event) {
    if (event == Event::object) {
        frames_.push_back({Place::members});
        return true;
    }
    if (event == Event::array_end) {
        end_frame();
        return true;
    }
    return shape_fault("an array that is a group may hold only objects");
}

bool JsonTreeReader::take_in_values(Event event) {
    if (event == Event::array_end) {
        end_frame();
        return true;
    }
    return take_value(event, false);
}

bool JsonTreeReader::take_in_head(Event event) {
    if (event == Event::key) {
        return take_head_key();
    }
    if (event != Event::object_end) {
        return take_value(event, true);
    }
    if ((frames_.back().seen & values_seen) == 0) {
        return shape_fault("'$values' is missing: an entry without values has an empty array");
    }
    end_frame();
    return true;
}

bool JsonTreeReader::take_in_named_group(Event event) {
    const Frame& frame = frames_.back();
    if (event == Event::key) {
        return take_group_key();
    }
    if (event == Event::object || event == Event::array) {
        return open_group(event == Event::object ? Place::members : Place::parts, frame.name);
    }
    if (event != Event::object_end) {
        return shape_fault("'$entries' is an object, or an array of objects");
    }
    if (frame.seen != (group_seen | entries_seen)) {
        return shape_fault("a group with a name has '$group' and '$entries'");
    }
    if (frame.is_named_late && !frame.name.empty()) {
        tree_.rename_group(frame.name);
    }
    end_frame();
    return true;
}

/// Reads a value. With `is_content`, reads the whole content of an entry, where an array is a list of values.
bool JsonTreeReader::take_value(Event event, bool is_content) {
    switch (event) {
    case Event::string:
        tree_.add_value(ParserValue::TYPE_STRING, reader_.text(), reader_.is_text_of_source());
        break;
    case Event::number:
        take_number();
        break;
    case Event::yes:
        tree_.add_value(ParserValue::TYPE_BOOL, "yes", false);
        break;
    case Event::no:
        tree_.add_value(ParserValue::TYPE_BOOL, "no", false);
        break;
    case Event::object:
        return take_object(is_content);
    case Event::array:
        if (!is_content) {
            return open_group(Place::parts, {});
        }
        frames_.push_back({Place::values});
        return true;
    default:
        return shape_fault("null is not a value: an entry without values has an empty array");
    }
    value_done();
    return true;
}

/// The first key of an object decides what the object is.
bool JsonTreeReader::take_object(bool is_content) {
    const Event event = reader_.next();
    if (event == Event::fault) {
        return syntax_fault();
    }
    const std::string_view key = reader_.text();
    if (event == Event::object_end) {
        if (!open_group(Place::members, {})) {
            return false;
        }
        end_frame();
        return true;
    }
    if (!is_special(key)) {
        return open_group(Place::members, {}) && begin_entry();
    }
    if (key == group_key || key == entries_key) {
        frames_.push_back({Place::named_group});
        return take_group_key();
    }
    if (key != values_key && key != kind_key && key != template_key && key != array_key) {
        return take_tagged();
    }
    if (!is_content) {
        return shape_fault(shown(key) + " belongs to an entry, not to a value");
    }
    frames_.push_back({Place::head});
    return take_head_key();
}

/// Writes a small e for a large one, because only a small e begins an exponent in the text form.
void JsonTreeReader::take_number() {
    const std::string_view word = reader_.text();
    const bool is_int = json_number_of(word) == JsonNumber::whole;
    warn_of_number(is_int);
    const std::size_t exponent = word.find('E');
    if (exponent == std::string_view::npos) {
        tree_.add_value(is_int ? ParserValue::TYPE_INT : ParserValue::TYPE_DOUBLE, word, true);
        return;
    }
    scratch_ = word;
    scratch_[exponent] = 'e';
    tree_.add_value(ParserValue::TYPE_DOUBLE, scratch_, false);
}

bool JsonTreeReader::open_group(Place place, std::string_view name) {
    if (tree_.depth() > limits_.nesting_depth) {
        add_problem(codes::nested_too_deeply, "groups are nested too deeply: ParserLimits::nesting_depth",
                    reader_.offset(), reader_.length());
        return false;
    }
    tree_.open_group(name);
    frames_.push_back({place, true});
    return true;
}

bool JsonTreeReader::begin_entry() {
    const std::string_view key = reader_.text();
    if (!key.starts_with(json_mark)) {
        tree_.begin_entry(key, reader_.is_text_of_source());
        return true;
    }
    if (is_special(key)) {
        return shape_fault(shown(key) + " is among names: a name that begins with $ is spelled " +
                           shown("$:" + std::string(key)));
    }
    scratch_.clear();
    if (!resolve_byte_escapes(key.substr(escaped_name_mark.size()), scratch_)) {
        return shape_fault("a name after $: has \\\\ for a backslash and \\x with two digits for a byte");
    }
    tree_.begin_entry(scratch_, false);
    return true;
}

/// Handles a closing bracket.
void JsonTreeReader::end_frame() {
    const bool ends_group = frames_.back().ends_group;
    frames_.pop_back();
    if (ends_group) {
        tree_.close_group();
    }
    value_done();
}

/// Ends the entry of a member that is complete.
void JsonTreeReader::value_done() {
    if (!frames_.empty() && frames_.back().place == Place::members && tree_.is_in_entry()) {
        tree_.end_entry();
    }
}

bool JsonTreeReader::note_key(unsigned int bit) {
    unsigned int& seen = frames_.back().seen;
    if ((seen & bit) != 0) {
        return shape_fault(shown(reader_.text()) + " is there twice");
    }
    seen |= bit;
    return true;
}

bool JsonTreeReader::take_head_key() {
    const std::string_view key = reader_.text();
    if (key == values_key) {
        return note_key(values_seen);
    }
    if (key == kind_key) {
        return note_key(kind_seen) && take_kind();
    }
    if (key == array_key) {
        return note_key(array_seen) && take_array_count();
    }
    if (key != template_key) {
        return shape_fault(shown(key) + " is not a member of an entry");
    }
    std::string name;
    if (!note_key(template_seen) || !read_text(reader_.next(), name)) {
        return false;
    }
    tree_.set_template(name);
    return true;
}

bool JsonTreeReader::take_kind() {
    const Event event = reader_.next();
    if (event == Event::number) {
        unsigned int number = 0;
        if (!take_whole(ParserEntry::not_an_array, number)) {
            return false;
        }
        tree_.set_kind(static_cast<ParserEntry::Type>(number));
        return true;
    }
    if (event == Event::fault) {
        return syntax_fault();
    }
    const std::optional<ParserEntry::Type> kind =
        event == Event::string ? kind_of_word(reader_.text()) : std::nullopt;
    if (!kind) {
        return shape_fault("a kind is \"entry\", \"keyword\", \"call\" or \"raw\"");
    }
    tree_.set_kind(*kind);
    return true;
}

bool JsonTreeReader::take_array_count() {
    const Event event = reader_.next();
    unsigned int count = 0;
    if (event == Event::fault) {
        return syntax_fault();
    }
    if (event != Event::number) {
        return shape_fault("an array count is a whole number");
    }
    if (!take_whole(ParserEntry::not_an_array - 1, count)) {
        return false;
    }
    tree_.set_array_count(count);
    return true;
}

bool JsonTreeReader::take_group_key() {
    const std::string_view key = reader_.text();
    if (key == entries_key) {
        return note_key(entries_seen);
    }
    if (key != group_key) {
        return shape_fault(shown(key) + " is not a member of a group");
    }
    Frame& frame = frames_.back();
    frame.is_named_late = (frame.seen & entries_seen) != 0;
    return note_key(group_seen) && read_text(reader_.next(), frame.name);
}

} // namespace bk_parser
