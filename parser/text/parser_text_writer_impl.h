#pragma once

#include "core/text/core_text_buffer_impl.h"
#include "parser/parser_group.h"

#include <vector>

namespace bk {

class StoredValue;

/// Appends a value's text without quotes and escapes, whatever its type; nothing for a group.
void put_plain_text(TextBuffer& out, const StoredValue& value);

/// Each appends a text. When that would be too long or memory runs out, they return false, log that, and leave the output as it was.
bool print_group(CoreString& out, const ParserGroup& group, bool braces, bool pretty, unsigned int level);
bool print_entry(CoreString& out, const ParserEntry& entry, bool pretty, unsigned int level);
bool print_entry_values(CoreString& out, const ParserEntry& entry, bool pretty, unsigned int level);
bool print_value(CoreString& out, const StoredValue& value, bool pretty, unsigned int level);

/// Prints trees as text. It keeps a stack of its own, so that the depth of a tree costs none of the thread's stack.
class TextWriter {
public:
    TextWriter(CoreString& out, bool pretty) noexcept : out_(out), pretty_(pretty) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    /// When the text became too long, returns false, logs that, and leaves the output as it was.
    bool finish() const;
    bool is_too_long() const noexcept { return out_.is_too_long(); }
    /// Strings are written as they are, for texts of versions that have no escapes.
    void write_no_escapes() noexcept { has_escapes_ = false; }

    void write_group(const ParserGroup& group, bool braces, unsigned int level);
    /// Writes some entries of a group, without braces.
    void write_entries_of(const ParserGroup& group, unsigned int first, unsigned int end);
    void write_entry(const ParserEntry& entry, unsigned int level);
    void write_entry_values(const ParserEntry& entry, unsigned int level);
    void write_value(const StoredValue& value, unsigned int level);
    /// The name with its template and array suffix.
    void write_head(const ParserEntry& entry);

private:
    enum class Scope { braced_group, bare_group, entry, entry_values };

    /// A run of entries that is being written, and how far it has come.
    struct Frame {
        const ParserEntry* const* entries;
        unsigned int entry_count;
        unsigned int next_entry;
        unsigned int next_value;
        unsigned int level; // of the values; the entries are one level less deep
        Scope scope;
    };

    void open_group(const ParserGroup& group, Scope scope, unsigned int level);
    void close_frame(const Frame& frame);
    void run();
    bool write_entries(Frame& frame);
    bool write_values(Frame& frame, const ParserEntry& entry);
    void begin_entry(const Frame& frame, const ParserEntry& entry);
    void write_spellings(Frame& frame, const ParserEntry& entry, const StoredValue& first);
    void write_scalar(const StoredValue& value);
    void write_string(std::string_view text);
    void begin_line(unsigned int depth);

    TextBuffer out_;
    bool pretty_;
    bool has_escapes_ = true;
    std::vector<Frame> frames_;
};

} // namespace bk
