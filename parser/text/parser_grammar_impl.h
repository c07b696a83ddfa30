#pragma once

#include "parser/parser_read_observer.h"
#include "parser/text/parser_entry_cutter_impl.h"
#include "parser/text/parser_word_stream_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <vector>

namespace bk {

/// The grammar of documents, one loop over the words of a text. It calls a sink:
///
///     bool begin_entry(const EntryHead&, const Token&)   false when the name is refused
///     void add_value(ParserWord::Type, std::string_view) a value of the entry begun last
///     void make_function_call()                          that entry holds an argument list
///     void close_arguments()                             optional: that list is closed
///     bool open_group(const Token&)                      that entry holds a group, whose entries follow; false
///                                                        when the text is not to be read any further
///     void close_group()
///     void report_fault(ParserReadObserver::Fault, const Token&, std::string_view word)
///     void see_word(std::string_view)                    optional: each word before the grammar takes it
///     void add_entry(const KnownEntry&)                  optional: a whole entry instead of the first two calls; and one
///     bool open_group(const KnownEntry&, const Token&)   that holds a group alone. Their words are not seen
///
/// Faults do not stop the loop. Groups nest on a stack of the loop's own.
template <class Sink>
class Grammar {
public:
    using Fault = ParserReadObserver::Fault;

    Grammar(std::string_view text, Sink& sink) : words_(text), cutter_(text), sink_(sink) {}

    /// Takes the words of the outermost group one by one, because the caller asks for each of them.
    void watch_outermost() noexcept { is_watched_ = true; }

    /// Returns false when the text is empty, when its last word was a fault or the empty tag, and when the sink stopped the loop.
    /// Calls `on_word` before each word, with the stream and whether the word belongs to the outermost group. An entry that was cut
    /// whole counts as one word.
    template <class OnWord>
    bool run(OnWord on_word) {
        if (words_.at_end()) {
            return false;
        }
        while (!words_.at_end()) {
            on_word(words_, outer_.empty());
            if constexpr (takes_entries || !sees_words) {
                if (!take_entries(on_word)) {
                    return false;
                }
            }
            if (words_.next() && !take(words_.word())) {
                if (is_stopped_) {
                    return false;
                }
                sink_.report_fault(ParserReadObserver::FAULT_TEXT_AFTER_END, words_.token(), "}");
                return true;
            }
        }
        for (const Level& level : outer_) {
            sink_.report_fault(ParserReadObserver::FAULT_GROUP_LEFT_OPEN, level.brace, "{");
        }
        const ParserWord::Type last = (outer_.empty() ? level_ : outer_.front()).last_kind;
        return last != ParserWord::TYPE_EMPTY_TAG && last != ParserWord::TYPE_INVALID;
    }

private:
    /// What the loop knows of a group that is being read.
    struct Level {
        bool has_entry = false;
        bool has_taken = false;  // the entry took a value, the empty tag counted
        bool has_values = false; // values are stored in it
        bool is_keyword = false;
        bool is_function_call = false;
        ParserWord::Type last_kind = ParserWord::TYPE_INVALID;
        Token brace; // where the group inside was opened
    };

    static constexpr bool sees_words = requires(Sink & sink, std::string_view word) { sink.see_word(word); };
    static constexpr bool takes_entries = requires(Sink & sink, const KnownEntry& known) {
        sink.add_entry(known);
    };

    /// Takes whole entries as long as the cutter is certain of them; then the rules below look at each word. Returns false when the
    /// sink stops the loop.
    template <class OnWord>
    bool take_entries(OnWord on_word) {
        const char* const word = words_.next_start();
        if (word == nullptr || !is_char(*word, CHAR_NAME_START) || (is_watched_ && outer_.empty()) ||
            (level_.has_entry && !level_.has_taken) || !cutter_.seek(word)) {
            return true;
        }
        const std::size_t outermost = is_watched_ ? 1 : 0; // its closing brace is taken as a word
        while (cutter_.cut(known_, outer_.size() > outermost) && take_entry()) {
            words_.pass(cutter_.at());
            on_word(words_, outer_.empty());
        }
        if (cutter_.at() != word) {
            words_.go_on_at(cutter_.at(), cutter_.place());
        }
        return !is_stopped_;
    }

    /// Returns false when the sink stops the loop.
    bool take_entry() {
        if (known_.kind == KnownEntry::close) {
            if constexpr (sees_words) {
                sink_.see_word(known_.text);
            }
            close_group();
            return true;
        }
        if constexpr (takes_entries) {
            if (known_.kind == KnownEntry::group) {
                is_stopped_ = !sink_.open_group(known_, cutter_.brace());
            } else {
                sink_.add_entry(known_);
            }
        } else {
            tell_entry();
        }
        level_.has_entry = true;
        level_.has_taken = true; // enough: the next word is a name or ends the group
        if (known_.kind == KnownEntry::group) {
            level_.last_kind = ParserWord::TYPE_IDENTIFIER;
            enter_group(cutter_.brace());
        }
        return !is_stopped_;
    }

    /// Tells the sink of the entry in parts, as the rules below would.
    void tell_entry() {
        sink_.begin_entry(known_.entry_head(), known_.token(words_.begin()));
        if (known_.kind == KnownEntry::group) {
            is_stopped_ = !sink_.open_group(cutter_.brace());
        } else if (known_.kind == KnownEntry::string) {
            sink_.add_value(ParserWord::TYPE_STRING, known_.word());
        } else if (known_.kind == KnownEntry::boolean) {
            sink_.add_value(ParserWord::TYPE_BOOL, known_.word());
        } else {
            known_.for_each_number([this](std::string_view word, bool is_double) {
                sink_.add_value(is_double ? ParserWord::TYPE_DOUBLE : ParserWord::TYPE_INT, word);
            });
        }
    }

    /// Returns false at the brace that ends the outermost group, and when the sink stops the loop.
    bool take(std::string_view word) {
        if constexpr (sees_words) {
            sink_.see_word(word);
        }
        if (is_char(word[0], CHAR_DELIMITER) && word[0] != ':') { // a lone ':' is an unknown word
            return take_delimiter(word);
        }
        take_word(word);
        return true;
    }

    bool take_delimiter(std::string_view word) {
        switch (word[0]) {
        case '=':
            take_operator(word);
            return true;
        case ',':
            take_separator(word);
            return true;
        case '{':
            return open_group(word);
        case '}':
            return close_group();
        case '(':
            open_arguments(word);
            return true;
        default:
            close_arguments(word);
            return true;
        }
    }

    void take_word(std::string_view word) {
        const unsigned int first = classes_of(word[0]);
        if ((first & CHAR_NAME_START) != 0) {
            take_name(word);
        } else if (is_char(word.data()[word[0] == '-' ? 1 : 0], CHAR_DIGIT)) { // no digit follows a lone "-"
            const bool has_quotes = (words_.classes() & CHAR_QUOTE) != 0;
            take_value(word, has_quotes ? classify_value(word) : classify_number(word, words_.classes()));
        } else if (is_string_word(word)) {
            take_value(word, ParserWord::TYPE_STRING); // only strings begin with a quote
        } else if (is_keyword_word(word)) {
            begin_entry({word, {}, no_array, true, false});
        } else {
            take_value(word, classify_value(word));
        }
    }

    void take_name(std::string_view word) {
        if (words_.has_name_characters_only()) {
            if (is_bool_word(word)) {
                take_value(word, ParserWord::TYPE_BOOL);
            } else {
                begin_entry({word, {}, no_array, false, false});
            }
            return;
        }
        NameParts name;
        NameParts template_name;
        const NameKind kind = classify_name(word, name, template_name);
        if (kind == NameKind::none) {
            take_value(word, classify_value(word));
        } else if (kind == NameKind::invalid) {
            fault(ParserReadObserver::FAULT_UNKNOWN_WORD, name.base);
        } else if (template_name.has_template) {
            fault(ParserReadObserver::FAULT_TEMPLATE_INSIDE_TEMPLATE, name.base);
        } else {
            begin_entry(
                {name.base, template_name.base, name.array_count, false, name.base.size() != word.size()});
        }
    }

    void begin_entry(const EntryHead& head) {
        const bool has_empty_entry = level_.has_entry & !level_.has_taken;
        if (words_.at_end() | has_empty_entry) { // both are rare, so three tests share one branch
            fault(ParserReadObserver::FAULT_NO_VALUE, head.name);
            return;
        }
        level_.has_entry = sink_.begin_entry(head, words_.token());
        level_.has_taken = false;
        level_.has_values = false;
        level_.is_keyword = head.is_keyword;
        level_.is_function_call = false;
        level_.last_kind = ParserWord::TYPE_IDENTIFIER;
    }

    void take_value(std::string_view word, ParserWord::Type kind) {
        if (!is_value_kind(kind)) {
            fault(ParserReadObserver::FAULT_UNKNOWN_WORD, word);
            return;
        }
        if (!level_.has_entry) {
            fault(ParserReadObserver::FAULT_VALUE_WITHOUT_ENTRY, word);
            return;
        }
        if (kind != ParserWord::TYPE_EMPTY_TAG) {
            sink_.add_value(kind, word);
            level_.has_values = true;
        }
        level_.has_taken = true;
        level_.last_kind = kind;
    }

    void take_operator(std::string_view word) {
        if (level_.last_kind == ParserWord::TYPE_IDENTIFIER) {
            level_.last_kind = ParserWord::TYPE_OPERATOR;
        } else {
            drop_entry(ParserReadObserver::FAULT_WRONGLY_PLACED, word);
        }
    }

    void take_separator(std::string_view word) {
        if (is_value_kind(level_.last_kind)) {
            level_.last_kind = ParserWord::TYPE_SEPARATOR;
        } else {
            drop_entry(ParserReadObserver::FAULT_WRONGLY_PLACED, word);
        }
    }

    bool open_group(std::string_view word) {
        if (!level_.has_entry) {
            fault(ParserReadObserver::FAULT_GROUP_WITHOUT_ENTRY, word);
            return true;
        }
        const Token brace = words_.token();
        if (!sink_.open_group(brace)) {
            is_stopped_ = true;
            return false;
        }
        enter_group(brace);
        return true;
    }

    void enter_group(const Token& brace) {
        level_.has_entry = false; // a group ends the entry that holds it
        level_.brace = brace;
        outer_.push_back(level_);
        level_ = Level();
    }

    bool close_group() {
        if (outer_.empty()) {
            return false;
        }
        sink_.close_group();
        level_ = outer_.back();
        outer_.pop_back();
        return true;
    }

    void open_arguments(std::string_view word) {
        if (!level_.has_entry) {
            drop_entry(ParserReadObserver::FAULT_ARGUMENTS_WITHOUT_ENTRY, word);
        } else if (level_.has_values) {
            drop_entry(ParserReadObserver::FAULT_ARGUMENTS_AFTER_VALUES, word);
        } else if (level_.is_function_call) {
            drop_entry(ParserReadObserver::FAULT_ARGUMENTS_INSIDE_ARGUMENTS, word);
        } else if (level_.is_keyword) {
            drop_entry(ParserReadObserver::FAULT_ARGUMENTS_ON_KEYWORD, word);
        } else {
            sink_.make_function_call();
            level_.is_function_call = true;
        }
    }

    void close_arguments(std::string_view word) {
        if (!level_.has_entry) {
            drop_entry(ParserReadObserver::FAULT_CLOSING_WITHOUT_ENTRY, word);
        } else if (!level_.is_function_call) {
            drop_entry(ParserReadObserver::FAULT_CLOSING_NO_ARGUMENTS, word);
        } else {
            level_.has_entry = false;
            if constexpr (requires(Sink & sink) { sink.close_arguments(); }) {
                sink_.close_arguments();
            }
        }
    }

    void fault(Fault fault, std::string_view word) {
        level_.last_kind = ParserWord::TYPE_INVALID;
        sink_.report_fault(fault, words_.token(), word);
    }

    void drop_entry(Fault reason, std::string_view word) {
        level_.has_entry = false;
        fault(reason, word);
    }

    WordStream words_;
    EntryCutter cutter_;
    KnownEntry known_;
    Sink& sink_;
    Level level_;              // the innermost group
    std::vector<Level> outer_; // the groups around it, the outermost first
    bool is_stopped_ = false;
    bool is_watched_ = false;
};

} // namespace bk
