#pragma once

#include "document/problems/faults/fault_record_impl.h"
#include "document/problems/files/joins_impl.h"
#include "document/problems/files/line_reader_impl.h"
#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "parser/parser_limits.h"

#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bk_parser {

/// Turns faults into problems: one for each mistake, however many faults it caused.
///
/// A fault is caused by the one before it when
/// - it is in a part of the source that is explained as a whole: the line of a merge conflict's mark, a comment of
///   another language, a string in single quotes, a comment that is read as text after an unclosed quote; or
/// - no entry began since, and it says only that there is none: after a fault that ended an entry, a value, a
///   comma or a brace belongs to nothing until the next name.
class FaultStory {
public:
    /// The caller keeps the arguments alive as long as the story.
    FaultStory(const FaultRecorder& faults, const SourceMap& sources, const Joins& joins,
               const ParserLimits& limits, Losses& losses, ProblemList& problems);

    /// Reports the errors, and finds what else was lost. Linear in the faults and the lengths of their lines. Reports to `pace` how many
    /// faults are done.
    void explain(bk::Pace& pace);
    /// Reports the mistakes that may be warnings.
    void tell();

private:
    using Records = std::span<const FaultRecord>;

    /// The place of the warning that explains faults; none when an error explains them.
    using Reason = std::optional<Spot>;

    /// A part of a source whose faults are explained.
    struct Cover {
        std::size_t inclusion = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
        Reason reason;
    };
    /// A misspelt directive. Whether it is an error shows only when all faults are explained.
    struct Misspelled {
        const FaultRecord* record;
        Spot spot;
    };
    /// Words that were skipped because of the mistake that was reported last, and that its message does not name.
    struct More {
        std::size_t problem = ProblemList::not_kept;
        std::size_t count = 0;
        std::string_view last;
        Spot told_at;
    };
    /// A word of a run of names without values.
    struct Name {
        std::string_view word;
        Spot spot;
        bool begins_line; // no other name of the run is before it on its line
        bool is_joined;   // a removed comment or directive joined it of several words
    };

    // fault_story.cpp
    std::size_t tell_from(std::size_t i);
    bool is_explained(const FaultRecord& record, const Spot& spot);
    void lose(const FaultRecord& record, const Reason& reason);
    bool is_joined(const FaultRecord& record) const noexcept;
    bool is_consequence(const FaultRecord& record) const;
    bool is_covered(const Spot& spot) const noexcept;
    void cover(const Spot& spot, std::size_t begin, std::size_t end, const Reason& reason = {}) noexcept;
    void cover_line(const Spot& spot, const Reason& reason = {});
    std::string_view word_of(const FaultRecord& record) const noexcept;
    std::string_view text_of(const Spot& spot) const;
    Spot spot_of(std::string_view word) const;
    /// Reports an error, because everything that the grammar skips is one.
    template <std::invocable Compose>
    void add(std::string_view code, const Compose& compose, const Spot& spot) {
        tell_more();
        problems_.add(Severity::error, code, compose, spot);
        more_ = {problems_.last_kept(), 0, {}, spot};
    }
    void add(std::string_view code, std::string_view message, const Spot& spot) {
        add(
            code, [message] { return std::string(message); }, spot);
    }

    // fault_more.cpp
    void skip_too(std::string_view word);
    void tell_more();

    // fault_words.cpp
    void tell_word(const FaultRecord& record, const Spot& spot);
    void tell_string(std::string_view word, const Spot& spot);
    void tell_name(std::string_view word, const Spot& spot);
    bool tell_other_comment(std::string_view word, const Spot& spot);
    bool tell_single_quotes(std::string_view word, const Spot& spot);

    // fault_lines.cpp
    bool tell_conflict(const Spot& spot);
    bool tell_comment_as_text(const Spot& spot);

    // fault_names.cpp
    std::size_t tell_names(std::size_t i);
    std::vector<Name> names_of_run(Records run, bool has_head);
    void tell_name_without_value(std::span<const Name> names, std::size_t follower_count);

    // fault_places.cpp
    void tell_place(const FaultRecord& record, const Spot& spot);
    void tell_misspelled(const Misspelled& directive);
    void tell_groups_left_open(Records records);
    void tell_text_after_end(const FaultRecord& record, const Spot& spot);

    Records records_;
    std::string_view text_;
    const SourceMap& sources_;
    const Joins& joins_;
    const ParserLimits& limits_;
    Losses& losses_;
    ProblemList& problems_;

    LineReaders lines_;
    std::vector<bool> has_open_quote_; // of files
    Cover cover_;
    Cover conflict_;
    std::vector<Misspelled> misspelled_;
    More more_;
    const FaultRecord* last_ = nullptr;       // the last that was reported or explained
    Reason last_reason_;                      // of that one
    const FaultRecord* lost_brace_ = nullptr; // a brace that opened no group
};

} // namespace bk_parser
