#pragma once

#include "parser/parser_grammar_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <string_view>
#include <vector>

namespace bk {

/// Builds the tree that a text describes. An entry is made when everything about it is known: its name, its
/// values side by side and their spellings behind them then go into storage of the right size.
class TreeSink {
public:
    /// `limits` outlive the sink.
    TreeSink(ParserGroup& root, bool has_escapes, ParserReadObserver* observer, const ParserLimits& limits);
    /// Hands over the entries that are whole, even when reading ends early.
    ~TreeSink();
    TreeSink(const TreeSink&) = delete;
    TreeSink& operator=(const TreeSink&) = delete;

    bool begin_entry(const EntryHead& head, const Token& token);
    void add_value(ParserWord::Type kind, std::string_view word);
    void make_function_call() noexcept { type_ = ParserEntry::TYPE_FUNCTION_CALL; }
    bool open_group(const Token& brace);
    void close_group();
    void report_fault(ParserReadObserver::Fault fault, const Token& token, std::string_view word);
    /// The text has come to its end.
    void finish();

    /// Whether a limit ended the reading.
    bool is_stopped() const noexcept { return is_stopped_; }

private:
    /// A value of the entry that is being read; of a string what stands between its quotes.
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
    CoreString shown_word(std::string_view word) const;
    void finish_entry();
    ParserEntry* make_entry(unsigned int extra_values);
    void fill_values(ParserValueList& values, bool are_all) const;
    void attach_entries();
    void discard_entries() noexcept;

    bool has_escapes_;
    ParserReadObserver* observer_;
    const ParserLimits& limits_;
    bool is_stopped_ = false;
    core_uint64 message_count_ = 0; // those beyond the limit counted, too

    bool has_entry_ = false; // the entry begun last is not made yet
    EntryHead head_;
    Token token_;
    ParserEntry::Type type_ = ParserEntry::TYPE_ENTRY;
    std::vector<PendingValue> values_;
    std::size_t text_size_ = 0; // of the text area that these values need

    std::vector<OpenGroup> groups_;     // the outermost first
    std::vector<ParserEntry*> entries_; // of all open groups
};

} // namespace bk
