#pragma once

#include "document/load.h"
#include "document/values.h"
#include "parser/parser_entry.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// How many characters of an operand a message shows.
inline constexpr std::size_t shown_text = 80;

inline bool is_number(ParserValue::Type type) noexcept {
    return type == ParserValue::TYPE_INT || type == ParserValue::TYPE_DOUBLE;
}

/// The type that --type asks for.
enum class WantedType { as_it_is, boolean, integer, real, string };
WantedType wanted_type(std::string_view word) noexcept;

/// Values that the command line spells: as in a document, such as "60.0 80.0", or as a string without quotes.
class Literals {
public:
    /// Parses a row of values. With WantedType::string, a text that is not a row of strings becomes one string. Groups are
    /// refused unless `may_have_groups`.
    Literals(std::string_view text, WantedType type, bool may_have_groups);

    /// Why the text is not a row of values of that type, in one line; empty when it is.
    const std::string& refusal() const noexcept { return refusal_; }
    unsigned int count() const noexcept { return entry_ == nullptr ? 1 : entry_->get_value_count(); }
    bool is_group(unsigned int i) const noexcept { return entry_ != nullptr && entry_->is_value_group(i); }
    const ParserGroup& group(unsigned int i) const { return *entry_->get_group(i); }
    ParserValue::Type type(unsigned int i) const noexcept;
    /// Refers to memory of this object.
    bk_parser::GivenValue given(unsigned int i) const;

private:
    void convert();
    std::string why_no_numbers(std::string_view text) const;
    bool read(std::string_view text, bool may_have_groups);

    WantedType type_;
    std::string refusal_;
    std::string problem_; // found by the parse
    bk_parser::Document source_;
    const ParserEntry* entry_ = nullptr; // null when the whole text is one string
    std::string string_;
};

} // namespace bkdoc
