#include "command/arguments.h"
#include "pattern/pattern_program.h"

#include <algorithm>

namespace bkdoc {

namespace {

using Kind = PatternStep::Kind;
using Steps = std::vector<PatternStep>;

constexpr std::size_t most_repeats = 1000;
constexpr std::size_t no_end = static_cast<std::size_t>(-1);

std::int32_t distance(std::size_t steps) noexcept {
    return static_cast<std::int32_t>(steps);
}

/// The complement of the set.
CharacterSet complement(CharacterSet set) {
    std::sort(set.begin(), set.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    CharacterSet others;
    char32_t next = 0;
    for (const CharacterRange& range : set) {
        if (range.first > next) {
            others.push_back({next, range.first - 1});
        }
        next = std::max<char32_t>(next, range.last + 1);
    }
    if (next <= stray_bytes + 0xFF) {
        others.push_back({next, stray_bytes + 0xFF});
    }
    return others;
}

CharacterSet class_set(char letter) {
    switch (letter) {
    case 'd':
        return {{U'0', U'9'}};
    case 's':
        return {{U'\t', U'\r'}, {U' ', U' '}};
    default: // 'w': the same characters as is_word_character
        return {{U'0', U'9'}, {U'A', U'Z'}, {U'_', U'_'}, {U'a', U'z'}, {0x80, stray_bytes + 0xFF}};
    }
}

/// Parses a pattern from left to right. It recurses once for each nested parenthesis, at most most_pattern_depth times.
class PatternParser {
public:
    PatternParser(std::string_view text, const PatternOptions& options, PatternProgram& program)
        : text_(text), options_(options), program_(program) {}

    PatternFault parse() {
        Steps steps = options_.is_fixed ? literal() : alternatives();
        if (!failed() && at_ < text_.size()) {
            fail("this ')' closes nothing; write \\) for the character");
        }
        steps.push_back({Kind::found});
        program_.steps = std::move(steps);
        return std::move(fault_);
    }

private:
    bool failed() const noexcept { return !fault_.message.empty(); }
    void fail(std::string message) { fail_at(std::move(message), at_); }
    void fail_at(std::string message, std::size_t offset) {
        if (!failed()) {
            fault_ = {std::move(message), offset};
        }
    }
    bool is_at(char character) const noexcept { return at_ < text_.size() && text_[at_] == character; }
    bool skip(char character) noexcept {
        const bool is_there = is_at(character);
        at_ += is_there ? 1 : 0;
        return is_there;
    }

    void check_size(const Steps& steps) {
        if (steps.size() > most_pattern_steps) {
            fail("the pattern is too large: written out it has more than " +
                 std::to_string(most_pattern_steps) + " steps");
        }
    }

    static void append(Steps& to, const Steps& steps) { to.insert(to.end(), steps.begin(), steps.end()); }

    Steps literal() {
        Steps steps;
        while (at_ < text_.size() && !failed()) {
            append(steps, character_step(next_character(text_, at_)));
            check_size(steps);
        }
        return steps;
    }

    Steps alternatives() {
        Steps steps = sequence();
        while (!failed() && skip('|')) {
            const Steps other = sequence();
            Steps both{{Kind::fork, 0, 1, distance(steps.size() + 2)}};
            append(both, steps);
            both.push_back({Kind::jump, 0, distance(other.size() + 1)});
            append(both, other);
            check_size(both);
            steps = std::move(both);
        }
        return steps;
    }

    Steps sequence() {
        Steps steps;
        while (!failed() && at_ < text_.size() && !is_at('|') && !is_at(')')) {
            const std::size_t begin = at_;
            const Steps piece = atom();
            append(steps, repeated(piece, begin));
            check_size(steps);
        }
        return steps;
    }

    Steps atom() {
        const char character = text_[at_];
        switch (character) {
        case '(':
            return parentheses();
        case '[':
            return brackets();
        case '\\':
            return escaped();
        case '.':
            ++at_;
            return set_step({{0, stray_bytes + 0xFF}});
        case '^':
            ++at_;
            return {{Kind::begin}};
        case '$':
            ++at_;
            return {{Kind::end}};
        case '*':
        case '+':
        case '?':
            fail(std::string("there is nothing that '") + character + "' could repeat");
            return {};
        default:
            return character_step(next_character(text_, at_));
        }
    }

    Steps parentheses() {
        const std::size_t open = at_++;
        if (text_.substr(at_).starts_with("?:")) {
            at_ += 2;
        } else if (is_at('?')) {
            fail("(? must be followed by a colon, as in (?: )");
        }
        if (++depth_ > most_pattern_depth) {
            fail("more than " + std::to_string(most_pattern_depth) + " nested parentheses");
        }
        Steps steps = failed() ? Steps() : alternatives();
        --depth_;
        if (!failed() && !skip(')')) {
            fail_at("this '(' is not closed; write \\( for the character", open);
        }
        return steps;
    }

    Steps escaped() {
        if (++at_ == text_.size()) {
            fail_at("the pattern ends with a backslash; write \\\\ for the character", at_ - 1);
            return {};
        }
        if (is_at('b') || is_at('B')) {
            return {{text_[at_++] == 'b' ? Kind::boundary : Kind::no_boundary}};
        }
        CharacterSet set = escape();
        return set.size() == 1 && set[0].first == set[0].last ? character_step(set[0].first)
                                                              : set_step(std::move(set));
    }

    /// Parses what follows a backslash.
    CharacterSet escape() {
        const char letter = text_[at_];
        switch (letter) {
        case 'd':
        case 's':
        case 'w':
            ++at_;
            return class_set(letter);
        case 'D':
        case 'S':
        case 'W':
            ++at_;
            return complement(class_set(static_cast<char>(letter + ('a' - 'A'))));
        case 'n':
            ++at_;
            return {{U'\n', U'\n'}};
        case 'r':
            ++at_;
            return {{U'\r', U'\r'}};
        case 't':
            ++at_;
            return {{U'\t', U'\t'}};
        default:
            break;
        }
        const std::size_t begin = at_;
        const char32_t character = next_character(text_, at_);
        if (is_word_character(character) && character < 0x80) {
            fail_at("unknown escape; there are \\d \\w \\s \\D \\W \\S \\b \\B \\n \\r \\t", begin - 1);
        }
        return {{character, character}};
    }

    Steps brackets() {
        const std::size_t open = at_++;
        const bool is_negated = skip('^');
        CharacterSet set;
        for (bool is_first = true; !failed() && (is_first || !is_at(']')); is_first = false) {
            if (at_ >= text_.size()) {
                fail_at("this '[' is not closed; write \\[ for the character", open);
                break;
            }
            add_range(set);
        }
        ++at_; // the "]"
        return set_step(std::move(set), is_negated);
    }

    void add_range(CharacterSet& set) {
        const std::size_t begin = at_;
        CharacterSet first = range_end();
        if (failed() || !is_at('-') || text_.substr(at_).starts_with("-]")) {
            set.insert(set.end(), first.begin(), first.end());
            return;
        }
        ++at_;
        const CharacterSet last = at_ < text_.size() ? range_end() : CharacterSet();
        const auto is_one = [](const CharacterSet& ends) {
            return ends.size() == 1 && ends[0].first == ends[0].last;
        };
        if (!is_one(first) || !is_one(last) || last[0].first < first[0].first) {
            fail_at("this is not a range of characters", begin);
            return;
        }
        set.push_back({first[0].first, last[0].first});
    }

    CharacterSet range_end() {
        if (is_at('\\') && at_ + 1 < text_.size()) {
            ++at_;
            return escape();
        }
        const char32_t character = next_character(text_, at_);
        return {{character, character}};
    }

    Steps character_step(char32_t character) {
        const bool is_letter =
            (character >= U'a' && character <= U'z') || (character >= U'A' && character <= U'Z');
        if (options_.ignores_case && is_letter) {
            return set_step({{character, character}});
        }
        return {{Kind::character, character}};
    }

    Steps set_step(CharacterSet set, bool is_negated = false) {
        if (options_.ignores_case) {
            add_other_case(set);
        }
        program_.sets.push_back(is_negated ? complement(std::move(set)) : std::move(set));
        return {{Kind::set, static_cast<char32_t>(program_.sets.size() - 1)}};
    }

    static void add_other_case(CharacterSet& set) {
        const std::size_t count = set.size();
        for (std::size_t i = 0; i < count; ++i) {
            for (const char32_t from : {U'a', U'A'}) {
                const char32_t first = std::max(set[i].first, from);
                const char32_t last = std::min<char32_t>(set[i].last, from + 25);
                if (first <= last) {
                    set.push_back({first ^ 0x20, last ^ 0x20});
                }
            }
        }
    }

    /// Repeats a piece as often as the count after it says.
    Steps repeated(const Steps& piece, std::size_t begin) {
        Steps steps = piece;
        bool is_repeated = false;
        while (!failed() && at_ < text_.size()) {
            std::size_t least = 0;
            std::size_t most = no_end;
            if (!take_repeat(least, most)) {
                break;
            }
            if (is_repeated) {
                if (least == 0 && most == 1) {
                    continue; // lazy repetition finds the same texts
                }
                fail("a repetition cannot be repeated; put it in ( )");
                break;
            }
            is_repeated = true;
            steps = written_out(piece, least, most, begin);
        }
        return steps;
    }

    bool take_repeat(std::size_t& least, std::size_t& most) {
        if (skip('*')) {
            return true;
        }
        if (skip('+')) {
            least = 1;
            return true;
        }
        if (skip('?')) {
            most = 1;
            return true;
        }
        return is_at('{') && take_counts(least, most);
    }

    /// A brace that begins no count is an ordinary character.
    bool take_counts(std::size_t& least, std::size_t& most) {
        const std::size_t close = text_.find('}', at_);
        if (close == std::string_view::npos) {
            return false;
        }
        const std::string_view inner = text_.substr(at_ + 1, close - at_ - 1);
        const std::size_t comma = inner.find(',');
        const auto low = whole_number(inner.substr(0, comma));
        const auto high = comma == std::string_view::npos ? low : whole_number(inner.substr(comma + 1));
        const bool is_open = comma != std::string_view::npos && comma + 1 == inner.size();
        if (!low || (!high && !is_open)) {
            return false;
        }
        least = *low;
        most = is_open ? no_end : *high;
        if (least > most_repeats || (!is_open && (most > most_repeats || most < least))) {
            fail("a repetition is from 0 to " + std::to_string(most_repeats) + ", the smaller number first");
        }
        at_ = close + 1;
        return true;
    }

    Steps written_out(const Steps& piece, std::size_t least, std::size_t most, std::size_t begin) {
        Steps steps;
        const std::size_t count = most == no_end ? least + 1 : most;
        if ((piece.size() + 2) * count > most_pattern_steps) {
            fail_at("the pattern is too large: written out this has more than " +
                        std::to_string(most_pattern_steps) + " steps",
                    begin);
            return steps;
        }
        for (std::size_t i = 0; i < least; ++i) {
            append(steps, piece);
        }
        if (most == no_end) {
            steps.push_back({Kind::fork, 0, 1, distance(piece.size() + 2)});
            append(steps, piece);
            steps.push_back({Kind::jump, 0, -distance(piece.size() + 1)});
            return steps;
        }
        for (std::size_t i = least; i < most; ++i) {
            steps.push_back({Kind::fork, 0, 1, distance((piece.size() + 1) * (most - i))});
            append(steps, piece);
        }
        return steps;
    }

    std::string_view text_;
    const PatternOptions& options_;
    PatternProgram& program_;
    std::size_t at_ = 0;
    std::size_t depth_ = 0;
    PatternFault fault_;
};

} // namespace

PatternFault parse_pattern(std::string_view text, const PatternOptions& options, PatternProgram& program) {
    return PatternParser(text, options, program).parse();
}

} // namespace bkdoc
