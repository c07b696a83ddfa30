#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

struct VerbSpec;

/// A parsed command line. Options are found by their name in the command table.
class Arguments {
public:
    explicit Arguments(const VerbSpec& verb) : verb_(&verb) {}

    const VerbSpec& verb() const noexcept { return *verb_; }

    bool has(std::string_view option) const noexcept { return find(option) != nullptr; }
    /// Returns the value of an option, or nothing when the option is missing.
    std::optional<std::string> value(std::string_view option) const;
    std::string value_or(std::string_view option, std::string_view fallback) const;
    /// Returns the values of an option that may be repeated, in the order of the command line.
    std::vector<std::string> values(std::string_view option) const;
    /// The value of a whole_number option. The parser of the command line has checked it.
    std::size_t number_or(std::string_view option, std::size_t fallback) const;

    /// The operands: all words that are not options.
    const std::vector<std::string>& operands() const noexcept { return operands_; }

    void add_option(std::string_view name, std::string value) { given_.push_back({name, std::move(value)}); }
    void add_operand(std::string word) { operands_.push_back(std::move(word)); }

private:
    struct Given {
        std::string_view name; // as in the table
        std::string value;
    };

    const Given* find(std::string_view option) const noexcept;

    const VerbSpec* verb_;
    std::vector<Given> given_;
    std::vector<std::string> operands_;
};

/// Parses a decimal number. Returns nothing for any other text, or for a number that is too large.
std::optional<std::size_t> whole_number(std::string_view text) noexcept;

} // namespace bkdoc
