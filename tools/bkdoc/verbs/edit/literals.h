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

/// How many characters of a word of the command line a message shows.
inline constexpr std::size_t shown_text = 80;

inline bool is_number(ParserValue::Type type) noexcept {
    return type == ParserValue::TYPE_INT || type == ParserValue::TYPE_DOUBLE;
}

/// What --type asks for.
enum class WantedType { as_it_is, boolean, integer, real, string };
WantedType wanted_type(std::string_view word) noexcept;

/// Values as the command line spells them: as in a document, "60.0 80.0", or a text without quotes, which is a string.
class Literals {
public:
    /// A row of values, or with WantedType::string one string where the text is not a row of strings. Groups only
    /// when they are allowed.
    Literals(std::string_view text, WantedType type, bool may_have_groups);

    /// Why the text is no row of values of that type, as one line; empty when it is.
    const std::string& refusal() const noexcept { return refusal_; }
    unsigned int count() const noexcept { return entry_ == nullptr ? 1 : entry_->get_value_count(); }
    bool is_group(unsigned int i) const noexcept { return entry_ != nullptr && entry_->is_value_group(i); }
    const ParserGroup& group(unsigned int i) const { return *entry_->get_group(i); }
    ParserValue::Type type(unsigned int i) const noexcept;
    /// Refers to this.
    bk_parser::GivenValue given(unsigned int i) const;

private:
    void convert();
    std::string why_no_numbers(std::string_view text) const;
    bool read(std::string_view text, bool may_have_groups);

    WantedType type_;
    std::string refusal_;
    std::string problem_; // that the reading found
    bk_parser::Document source_;
    const ParserEntry* entry_ = nullptr; // null when the whole is one string
    std::string string_;
};

} // namespace bkdoc
