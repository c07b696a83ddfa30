#pragma once

#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"
#include "parser/text/parser_grammar_impl.h"

#include <string_view>
#include <vector>

namespace bk {

/// Builds the tree that a text describes. Makes an entry only when everything about it is known, so that one block of the right size can
/// hold its values and, after them, their spellings.
class TreeSink {
public:
    /// `limits` outlive the sink. A text of many bytes gets pages of its own.
    TreeSink(ParserGroup& root, bool has_escapes, ParserReadObserver* observer, const ParserLimits& limits,
             std::size_t text_size = 0);
    /// Hands over the entries that are whole, even when reading ends early.
    ~TreeSink();
    TreeSink(const TreeSink&) = delete;
    TreeSink& operator=(const TreeSink&) = delete;

    bool begin_entry(const EntryHead& head, const Token& token) {
        finish_entry();
        if (head.had_suffix && !is_name_by_itself(head.name)) { // as in "yes[2]"
            report_fault(ParserReadObserver::FAULT_INVALID_NAME, token, head.name);
            return false;
        }
        has_entry_ = true;
        fields_ = {head.name, head.is_keyword ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY,
                   token.line, token.column, head.array_count};
        template_name_ = head.template_name;
        return true;
    }

    // Constructs the value in place: copying it right after its fields were stored would cause a store-forwarding stall.
    void add_value(ParserWord::Type kind, std::string_view word) {
        if (kind == ParserWord::TYPE_STRING) {
            add_string(word);
            return;
        }
        if (kind == ParserWord::TYPE_BINARY_DATA) {
            owns_memory_ = true;
        } else {
            owns_memory_ |= StoredValue::is_kept_apart(ParserValue::TYPE_WORD, word.size());
            text_size_ += StoredValue::spelling_need(word.size()) + 1;
        }
        values_.emplace_back(value_type_of(kind), word, false);
    }

    /// A whole entry without groups.
    void add_entry(const KnownEntry& known);
    /// An entry and the group that is all it holds.
    bool open_group(const KnownEntry& known, const Token& brace);

    void make_function_call() noexcept { fields_.type = ParserEntry::TYPE_FUNCTION_CALL; }
    bool open_group(const Token& brace);
    void close_group();
    void report_fault(ParserReadObserver::Fault fault, const Token& token, std::string_view word);
    /// Called at the end of the text.
    void finish();
    /// Tells faults only to the observer, and logs none.
    void leave_log_out() noexcept { logs_ = false; }

    /// Whether a limit ended the reading.
    bool is_stopped() const noexcept { return is_stopped_; }

private:
    /// A value of the entry that is being read; for a string, the part between its quotes.
    struct PendingValue {
        PendingValue(ParserValue::Type value_type, std::string_view word, bool with_escapes) noexcept
            : begin(word.data()), size(static_cast<unsigned int>(word.size())), type(value_type),
              has_escapes(with_escapes) {}

        const char* begin;
        unsigned int size;
        ParserValue::Type type;
        bool has_escapes;

        std::string_view text() const noexcept { return {begin, size}; }
    };
    /// A group whose entries are being collected, and how many of the collected ones belong to groups around it.
    struct OpenGroup {
        ParserGroup* group;
        std::size_t first_entry;
    };

    bool may_log(ParserReadObserver::Fault fault) noexcept;
    CoreString message_of(ParserReadObserver::Fault fault, std::string_view word) const;
    CoreString shown_word(std::string_view word) const;
    void add_string(std::string_view word);
    void finish_entry() {
        if (has_entry_) {
            make_entry(0);
        }
    }
    ParserEntry* make_entry(unsigned int extra_values);
    void add_word_by_word(const KnownEntry& known);
    ParserEntry* make_known(const KnownEntry& known, unsigned int count, std::size_t text_size);
    bool may_nest(const Token& brace);
    void list_group(ParserEntry* entry, ParserGroup* group);
    void fill_values(ParserValueList& values) const;
    static void fill_value(StoredValue* place, const PendingValue& value, char*& text);
    void attach_entries();
    void discard_entries() noexcept;

    bool has_escapes_;
    ParserReadObserver* observer_;
    const ParserLimits& limits_;
    bool is_stopped_ = false;
    bool logs_ = true;
    core_uint64 message_count_ = 0; // counts those beyond the limit too

    bool has_entry_ = false; // the entry begun last is not made yet
    EntryFields fields_;
    std::string_view template_name_;
    std::vector<PendingValue> values_;
    std::size_t text_size_ = 0; // of the text area that these values need
    bool owns_memory_ = false;  // one of the values owns memory outside of the entry's block

    UnfinishedPages pages_;             // none for a small text
    std::vector<OpenGroup> groups_;     // the outermost first
    std::vector<ParserEntry*> entries_; // of all open groups
};

} // namespace bk
