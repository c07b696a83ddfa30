#pragma once

#include "verbs/edit/literals.h"
#include "verbs/find/match.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// What `set` does to values: "=VALUES", "+=N", "-=N", "*=N", "/=N".
class ValueChange {
public:
    ValueChange(std::string_view text, WantedType type);

    /// Why it is no change, as one line; empty when it is.
    const std::string& refusal() const noexcept { return refusal_; }

    struct Result {
        std::size_t changed = 0; // values that are now others
        std::string refusal;     // why the entry stayed as it was
    };
    /// Changes one value of an entry, or the entry: "=" its values up to its first group, the others every number in
    /// it, and "+=" with a string every string.
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
