#pragma once

#include "document/format.h"
#include "document/layout/source_tokens_impl.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Writes the tokens of a text as `format_text` lays them out.
class LayoutPrinter {
public:
    LayoutPrinter(std::string_view source, const SourceTokens& tokens, const FormatOptions& options);

    /// False when the text would be larger than a text may be.
    bool run();
    std::string& text() noexcept { return out_; }

private:
    std::uint64_t largest_size() const noexcept;
    std::size_t indentation_at(std::size_t depth) const noexcept;
    void put(std::size_t i);
    void put_name(std::size_t i);
    void put_in_line(std::size_t i);
    void put_comment(std::size_t i);
    void put_directive(std::size_t i);
    void put_close_brace(std::size_t i);
    void begin_line(std::size_t i);
    void break_line(std::size_t depth);
    void append(std::string_view text);
    std::size_t line_breaks_before(std::size_t i) const noexcept;
    bool continues_entry(std::size_t i) const noexcept;
    bool may_wrap(std::size_t i) const noexcept;
    bool fits(std::size_t i) const noexcept;

    std::string_view source_;
    const std::vector<SourceToken>& tokens_;
    const FormatOptions& options_;
    bool ends_with_name_;
    std::string_view line_end_ = "\n";
    std::vector<bool>
        continues_; // for each token: whether the next word continues the entry that the token is in or after
    std::string out_;
    std::size_t depth_ = 0;
    std::size_t column_ = 0;
    std::size_t last_word_ = 0;     // the index of the last word in the tokens
    bool is_at_line_start_ = true;  // the line is empty so far
    bool needs_line_break_ = false; // nothing may follow in the line
};

} // namespace bk_parser
