#pragma once

#include "pattern/pattern_program.h"

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// A regular expression that is looked for in texts. It is matched character by character, in all ways at once: the time
/// is at most the length of the text times the size of the pattern, whatever pattern it is, and no stack grows.
///
/// Texts are UTF-8; a byte that belongs to no character is one by itself. Known are . [a-z] [^a-z] \d \w \s and \D \W
/// \S, \b, ^ and $ (begin and end of the text), | ( ) (?: ) * + ? and {2} {2,} {2,5}. There are no references back.
/// With ignores_case, ASCII letters fit both cases.
class Pattern {
public:
    Pattern(std::string_view text, const PatternOptions& options);

    /// Why the pattern is malformed, as one line; empty when it is not.
    const std::string& error() const noexcept { return error_; }
    /// In bytes of the pattern.
    std::size_t error_offset() const noexcept { return error_offset_; }

    /// Whether the pattern fits somewhere in the text. Not for several threads at once.
    bool fits(std::string_view text);

private:
    /// Instructions to go on at, each once.
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

    /// What is around a place in the text.
    struct Around {
        bool is_begin;
        bool is_end;
        bool is_word_before;
        bool is_word_behind;
    };

    bool follow(std::size_t start, const Around& around, Places& places);
    bool run(std::string_view text);

    std::string literal_; // when the pattern is nothing else
    bool is_literal_ = false;
    PatternProgram program_;
    std::string error_;
    std::size_t error_offset_ = 0;
    Places now_;
    Places next_;
    std::vector<std::size_t> pending_;
};

} // namespace bkdoc
