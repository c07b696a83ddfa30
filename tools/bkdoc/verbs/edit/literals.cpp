#include "verbs/edit/literals.h"

#include "document/access.h"
#include "document/ranges.h"
#include "output/display/text_display.h"

#include <algorithm>

namespace bkdoc {

namespace {

// In this version strings have escapes.
constexpr std::string_view probe = "#Brellwick_Serial_Version 1.2\nx ";

std::size_t digits_at(std::string_view word, std::size_t at) noexcept {
    return std::min(word.find_first_not_of("0123456789", at), word.size()) - at;
}

/// Matches a sign, digits with or without a point, and an exponent; or hexadecimal digits after 0x.
bool looks_like_number(std::string_view word) noexcept {
    std::size_t at = word.starts_with('-') || word.starts_with('+') ? 1 : 0;
    if (word.substr(at).starts_with("0x") || word.substr(at).starts_with("0X")) {
        return word.find_first_not_of("0123456789abcdefABCDEF", at + 2) == std::string_view::npos;
    }
    const std::size_t whole = digits_at(word, at);
    at += whole;
    std::size_t fraction = 0;
    if (word.substr(at).starts_with('.')) {
        fraction = digits_at(word, at + 1);
        at += 1 + fraction;
    }
    if (whole + fraction == 0) {
        return false;
    }
    if (word.substr(at).starts_with('e') || word.substr(at).starts_with('E')) {
        ++at;
        at += word.substr(at).starts_with('-') || word.substr(at).starts_with('+') ? 1 : 0;
        const std::size_t exponent = digits_at(word, at);
        return exponent != 0 && at + exponent == word.size();
    }
    return at == word.size();
}

} // namespace

WantedType wanted_type(std::string_view word) noexcept {
    return word == "bool"     ? WantedType::boolean
           : word == "int"    ? WantedType::integer
           : word == "double" ? WantedType::real
           : word == "string" ? WantedType::string
                              : WantedType::as_it_is;
}

Literals::Literals(std::string_view text, WantedType type, bool may_have_groups) : type_(type) {
    const std::string quoted = "'" + shown(text, shown_text) + "'";
    if (read(text, may_have_groups)) {
        convert();
        return;
    }
    refusal_ = type == WantedType::string ? std::string() : why_no_numbers(text);
    if (!refusal_.empty()) {
        return;
    }
    if (type == WantedType::boolean || text == "true" || text == "false") {
        if (type != WantedType::string) {
            refusal_ = quoted + " is not a boolean; booleans are yes and no";
            return;
        }
    }
    const bool is_bare = text.find_first_of("\"{}") == std::string_view::npos && !text.empty();
    if (type != WantedType::string && (!is_bare || type != WantedType::as_it_is)) {
        refusal_ = quoted + " is not a list of values; write numbers, strings in quotes, yes or no";
        return;
    }
    string_ = text;
}

/// The library parses the values, so that there is one syntax.
bool Literals::read(std::string_view text, bool may_have_groups) {
    bk_parser::LoadOptions options;
    options.follow_includes = false;
    bk_parser::LoadResult result = bk_parser::parse(std::string(probe) + std::string(text), options);
    const auto& entries = result.document.root().get_entries();
    if (!result.problems.empty()) {
        problem_ = result.problems.front().message;
    }
    if (!result.problems.empty() || entries.get_count() != 1 || !result.document.includes().empty()) {
        return false;
    }
    const ParserEntry* const entry = entries[0];
    if (entry->get_type() != ParserEntry::TYPE_ENTRY || !entry->has_value()) {
        return false;
    }
    for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
        if ((entry->is_value_group(i) && !may_have_groups) ||
            (type_ == WantedType::string && !entry->is_value_string(i))) {
            return false;
        }
    }
    entry_ = entry;
    source_ = std::move(result.document);
    return true;
}

/// Why a text that looks like a number is not one. Empty for other texts, which are strings.
std::string Literals::why_no_numbers(std::string_view text) const {
    bool is_any = false;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of(" \t,"), rest.size());
        if (end != 0 && !looks_like_number(rest.substr(0, end))) {
            return {};
        }
        is_any = is_any || end != 0;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (!is_any || problem_.empty()) {
        return {};
    }
    constexpr std::string_view is_read = "' is read as ";
    std::string reason = problem_;
    if (const std::size_t at = reason.find(is_read); at != std::string::npos) {
        reason.replace(at, is_read.size(), "' would be read as ");
    }
    return reason + "; in quotes it is a string";
}

/// Converts the values to `type_`. The entry belongs to this object.
void Literals::convert() {
    auto& entry = const_cast<ParserEntry&>(*entry_);
    for (unsigned int i = 0; i < entry.get_value_count() && refusal_.empty(); ++i) {
        const ParserValue::Type has = entry.get_value_type(i);
        const bool is_kept = type_ == WantedType::as_it_is || type_ == WantedType::string ||
                             has == ParserValue::TYPE_GROUP ||
                             (type_ == WantedType::boolean && has == ParserValue::TYPE_BOOL) ||
                             (type_ == WantedType::integer && has == ParserValue::TYPE_INT) ||
                             (type_ == WantedType::real && has == ParserValue::TYPE_DOUBLE);
        if (is_kept) {
            continue;
        }
        const auto whole = bk_parser::get<int>(entry, i);
        if (type_ == WantedType::real && is_number(has)) {
            entry.set_double(entry.get_double(i), i);
        } else if (type_ == WantedType::integer && is_number(has) && whole) {
            entry.set_int(*whole, i);
        } else {
            const std::string_view wanted = type_ == WantedType::boolean
                                                ? "a boolean; booleans are yes and no"
                                            : type_ == WantedType::integer ? "an int"
                                                                           : "a number";
            refusal_ =
                "'" + shown(entry.get_word(i).get_view(), shown_text) + "' is not " + std::string(wanted);
        }
    }
}

ParserValue::Type Literals::type(unsigned int i) const noexcept {
    return entry_ == nullptr ? ParserValue::TYPE_STRING : entry_->get_value_type(i);
}

bk_parser::GivenValue Literals::given(unsigned int i) const {
    switch (type(i)) {
    case ParserValue::TYPE_BOOL:
        return bk_parser::GivenValue(entry_->get_bool(i));
    case ParserValue::TYPE_INT:
        return bk_parser::GivenValue(entry_->get_int(i));
    case ParserValue::TYPE_DOUBLE:
        return bk_parser::GivenValue(entry_->get_double(i));
    case ParserValue::TYPE_BINARY_DATA:
        return bk_parser::GivenValue(*bk_parser::get<std::span<const std::byte>>(*entry_, i));
    default:
        return entry_ == nullptr ? bk_parser::GivenValue(std::string_view(string_))
                                 : bk_parser::GivenValue(entry_->get_string(i).get_view());
    }
}

} // namespace bkdoc
