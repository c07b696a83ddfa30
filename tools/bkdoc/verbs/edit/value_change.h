#pragma once

#include "verbs/edit/literals.h"
#include "verbs/find/match.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// A change that `set` makes to values: "=VALUES", "+=N", "-=N", "*=N" or "/=N".
class ValueChange {
public:
    ValueChange(std::string_view text, WantedType type);

    /// Why the text is not a change, in one line; empty when it is.
    const std::string& refusal() const noexcept { return refusal_; }

    struct Result {
        std::size_t changed = 0; // values that are different now
        std::string refusal;     // why the entry did not change
    };
    /// Changes one value of an entry, or the whole entry. "=" replaces the values up to the first group. The other operations
    /// change every number in the entry, and "+=" with a string changes every string.
    Result apply(ParserEntry& entry, unsigned int value) const;

private:
    Result set(ParserEntry& entry, unsigned int value) const;
    Result calculate(ParserEntry& entry, unsigned int value) const;
    std::string calculate_value(ParserEntry& entry, unsigned int i) const;
    std::string type_refusal(const ParserEntry& entry, unsigned int i, unsigned int given) const;

    WantedType type_;
    char operation_ = '='; // '=', '+', '-', '*' or '/'
    std::string operand_;
    Literals literals_;
    std::string refusal_;
};

} // namespace bkdoc
