#pragma once

#include "pattern/pattern_program.h"

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// A regular expression. The search follows all alternatives at once, character by character. So its time is at most the length
/// of the text times the size of the pattern, for every pattern, and it uses no stack.
///
/// Texts are UTF-8; a byte that belongs to no character counts as one. The syntax has . [a-z] [^a-z] \d \w \s \D \W \S, \b and
/// \B, ^ and $ (begin and end of the text), | ( ) (?: ) * + ? and {2} {2,} {2,5}. It has no back references. With ignores_case,
/// ASCII letters match both cases.
class Pattern {
public:
    Pattern(std::string_view text, const PatternOptions& options);

    /// Why the pattern is malformed, in one line; empty when it is well-formed.
    const std::string& error() const noexcept { return error_; }
    /// In bytes of the pattern.
    std::size_t error_offset() const noexcept { return error_offset_; }

    /// Whether the pattern matches somewhere in the text. Not thread-safe: a search uses buffers of this object.
    bool fits(std::string_view text);

private:
    /// The steps at which the search goes on, each once.
    class Places {
    public:
        void prepare(std::size_t size) { seen_at_.assign(size, 0); }
        void clear() noexcept {
            list_.clear();
            ++round_;
        }
        bool add(std::size_t place) {
            if (seen_at_[place] == round_) {
                return false;
            }
            seen_at_[place] = round_;
            list_.push_back(place);
            return true;
        }
        const std::vector<std::size_t>& list() const noexcept { return list_; }

    private:
        std::vector<std::size_t> list_;
        std::vector<unsigned long long> seen_at_;
        unsigned long long round_ = 1;
    };

    /// What stands before and after a place in the text.
    struct Around {
        bool is_begin;
        bool is_end;
        bool is_word_before;
        bool is_word_after;
    };

    bool follow(std::size_t start, const Around& around, Places& places);
    bool run(std::string_view text);

    std::string literal_; // of a pattern without special characters
    bool is_literal_ = false;
    PatternProgram program_;
    std::string error_;
    std::size_t error_offset_ = 0;
    Places now_;
    Places next_;
    std::vector<std::size_t> pending_;
};

} // namespace bkdoc
