#pragma once

#include "document/problems/faults/fault_record_impl.h"
#include "document/problems/files/joins_impl.h"
#include "document/problems/files/line_reader_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "document/problems/values/number_rows_impl.h"
#include "document/problems/values/value_checks_impl.h"
#include "parser/text/parser_tree_sink_impl.h"

#include <string_view>

namespace bk_parser {

/// Builds the tree, and looks at names and values on the way.
class CheckedSink {
public:
    CheckedSink(ParserGroup& root, std::string_view expanded, bool has_escapes, const ParserLimits& limits,
                const SourceMap& sources, const Joins& joins, ProblemList& problems)
        : text_(expanded), end_(expanded.data() + expanded.size()), has_escapes_(has_escapes),
          sources_(sources), joins_(joins), problems_(problems), lines_(sources), faults_(expanded),
          tree_(root, has_escapes, &faults_, limits, expanded.size()) {
        tree_.leave_log_out();
    }

    bool begin_entry(const bk::EntryHead& head, const bk::Token& token) {
        check_head(head, token);
        return tree_.begin_entry(head, token);
    }

    void add_value(ParserWord::Type kind, std::string_view word) {
        check_value(kind, word);
        tree_.add_value(kind, word);
    }

    void add_entry(const bk::KnownEntry& known) {
        check_head(known);
        if (known.kind == bk::KnownEntry::numbers) {
            check_rows(known);
        } else if (known.kind == bk::KnownEntry::string && !is_plain_text(known.text, end_)) {
            check_string(known.word());
        }
        if (is_watched_) { // else nobody asks how many there are
            value_count_ = known.value_count();
        }
        tree_.add_entry(known);
    }

    bool open_group(const bk::KnownEntry& known, const bk::Token& brace) {
        check_head(known);
        begin_group();
        return tree_.open_group(known, brace);
    }

    void make_function_call() {
        is_watched_ = true;
        is_call_open_ = true;
        tree_.make_function_call();
    }
    void close_arguments() noexcept { is_call_open_ = false; }
    bool open_group(const bk::Token& brace) {
        begin_group();
        return tree_.open_group(brace);
    }
    void close_group() {
        end_watched_entry();
        faults_.begin_or_end_group();
        tree_.close_group();
    }
    void report_fault(ParserReadObserver::Fault fault, const bk::Token& token, std::string_view) {
        faults_.add(fault, token.start, token.length);
    }
    void finish() {
        end_watched_entry();
        tell_escapes();
        tree_.finish();
    }

    const FaultRecorder& get_faults() const noexcept { return faults_; }

private:
    void check_head(const bk::EntryHead& head, const bk::Token& token) {
        end_watched_entry();
        value_count_ = 0;
        faults_.begin_entry(head.name);
        if (head.array_count != bk::no_array) {
            watch_count(head, token);
        } else if (head.is_keyword) {
            check_keyword(head, token);
        }
    }

    /// No keyword is a known entry.
    void check_head(const bk::KnownEntry& known) {
        end_watched_entry();
        faults_.begin_entry(known.head->name);
        if (known.head->array_count != bk::no_array) {
            watch_count(known.entry_head(), known.token(text_.data()));
        }
    }

    void check_value(ParserWord::Type kind, std::string_view word) {
        ++value_count_;
        switch (kind) {
        case ParserWord::TYPE_INT:
        case ParserWord::TYPE_DOUBLE:
            check_any_number(word, kind == ParserWord::TYPE_INT);
            break;
        case ParserWord::TYPE_STRING:
            if (!is_plain_text(word.substr(1, word.size() - 2), end_)) {
                check_string(word);
            }
            break;
        case ParserWord::TYPE_BINARY_DATA:
            array_count_ = bk::no_array; // one binary literal may hold a whole array
            tell(word, find_binary_flaw(word));
            break;
        default:
            break;
        }
    }

    void check_any_number(std::string_view word, bool is_int) {
        if (!is_plain_number(word, is_int, end_)) {
            check_number(word, is_int);
        }
    }
    void check_rows(const bk::KnownEntry& known) {
        const auto check = [this](std::string_view word, bool is_double) {
            check_any_number(word, !is_double);
        };
        for (const bk::KnownEntry::Numbers& row : known.rows) {
            if (!are_plain_numbers(row)) {
                row.for_each(check);
            }
        }
    }

    void begin_group() {
        array_count_ = bk::no_array; // an array may be a group
        end_watched_entry();
        faults_.begin_or_end_group();
    }
    void end_watched_entry() {
        if (is_watched_) {
            tell_watched();
        }
    }
    void watch_count(const bk::EntryHead& head, const bk::Token& token) {
        head_ = text_.substr(token.start, token.length);
        if (is_plain_count(head_, head.name.size())) {
            is_watched_ = true;
            array_count_ = head.array_count;
        } else {
            check_suffix(head);
        }
    }
    void check_suffix(const bk::EntryHead& head);
    void tell_watched();
    void check_keyword(const bk::EntryHead& head, const bk::Token& token);
    void check_call() const;
    void check_number(std::string_view word, bool is_int);
    void check_string(std::string_view word);
    void tell_escapes();
    void tell(std::string_view word, const ValueFlaw& flaw);
    Spot spot_of(std::string_view word) const {
        return sources_.find(static_cast<std::size_t>(word.data() - text_.data()), word.size());
    }

    std::string_view text_;
    const char* end_;
    bool has_escapes_;
    const SourceMap& sources_;
    const Joins& joins_;
    ProblemList& problems_;
    LineReaders lines_;

    // Of the entry begun last, groups not counted. Of a known entry only when it is watched.
    unsigned int value_count_ = 0;
    bool is_watched_ = false; // the entry begun last declares a count or has an argument list
    bool is_call_open_ = false;
    unsigned int array_count_ = bk::no_array; // that the entry begun last declares
    std::string_view head_;                   // the word of that entry
    std::string_view first_escape_;           // of a document whose version has none
    std::size_t escape_count_ = 0;            // strings that have some

    FaultRecorder faults_;
    bk::TreeSink tree_;
};

} // namespace bk_parser
