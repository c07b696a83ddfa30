#include "parser/text/parser_entry_cutter_impl.h"

#include "parser/text/parser_text_scan_impl.h"

#include <bit>

namespace bk {

namespace {

bool is_blank(char character) noexcept {
    return is_char(character, CHAR_BLANK);
}

/// The end of the template or array count that begins at `p`. Null when it needs the grammar, or does not end the word.
const char* end_of_suffix(const char* p, std::string_view& template_name,
                          unsigned int& array_count) noexcept {
    const char* const begin = p + 1;
    if (*p == '[') {
        constexpr std::ptrdiff_t most_digits = 9; // which an int holds
        unsigned int count = 0;
        for (p = begin; is_char(*p, CHAR_DIGIT) && p - begin < most_digits; ++p) {
            count = count * 10 + static_cast<unsigned int>(*p - '0');
        }
        array_count = count;
        return *p == ']' && is_blank(p[1]) ? p + 1 : nullptr;
    }
    if (*p != '<' || !is_char(*begin, CHAR_NAME_START)) {
        return nullptr;
    }
    for (p = begin; is_char(*p, CHAR_NAME); ++p) {
    }
    template_name = {begin, static_cast<std::size_t>(p - begin)};
    return *p == '>' && is_blank(p[1]) && !is_bool_word(template_name) ? p + 1 : nullptr;
}

/// The closing quote of the string that opens at `p`. Null when a line break or the end of the text comes first.
const char* closing_quote(const char* p, const char* end) noexcept {
    do {
        p = find_string_stop(p + 1, end);
    } while (p != end && *p == '"' && p[-1] == '\\');
    return p != end && *p == '"' ? p : nullptr;
}

} // namespace

/// Makes the masks of the next 64 characters. Takes NULs for those after the text.
void EntryCutter::make_record() noexcept {
    const char* const text = begin_ + record_count_ * 64;
    TextMasks masks;
    if (end_ - text >= TextMasks::width) {
        make_masks_(text, masks);
    } else {
        make_last_masks(make_masks_, text < end_ ? text : end_, end_, masks);
    }
    const std::uint64_t after_blanks = masks.blanks << 1 | (follows_blank_ ? 1 : 0);
    const std::uint64_t digit_after = end_ - text > 64 && is_char(text[64], CHAR_DIGIT) ? 1 : 0;
    const std::uint64_t numbers = masks.digits | (masks.dashes & (masks.digits >> 1 | digit_after << 63));
    const std::uint64_t letters = masks.names & ~masks.digits & ~masks.double_marks;
    Record& record = records_[record_count_ % ring_size];
    record.starts = ~masks.blanks & after_blanks;
    record.ends = masks.blanks & ~after_blanks;
    record.stops = (record.starts & ~numbers) | letters | (masks.run_ends & ~masks.blanks);
    record.double_marks = masks.double_marks;
    record.others = ~masks.names;
    record.breaks = masks.breaks;
    record.first = {line_, line_start_};
    if (masks.breaks != 0) {
        line_ += count_ones(masks.breaks);
        line_start_ = text + std::bit_width(masks.breaks);
    }
    follows_blank_ = masks.blanks >> 63 != 0;
    ++record_count_;
}

LinePlace EntryCutter::place() noexcept {
    if (has_head_) {
        return head_->place; // the ring may no longer have its record
    }
    reach(at_);
    return place_of(at_);
}

Token EntryCutter::token_of_brace(const char* p) noexcept {
    reach(p);
    const LinePlace place = place_of(p);
    return {static_cast<unsigned int>(p - begin_), 1, place.line,
            static_cast<core_ulong>(p - place.line_start)};
}

LinePlace EntryCutter::place_of(const char* p) const noexcept {
    const auto offset = static_cast<std::size_t>(p - begin_);
    const Record& record = records_[offset / 64 % ring_size];
    const std::uint64_t before = record.breaks & ((std::uint64_t{1} << offset % 64) - 1);
    if (before == 0) {
        return record.first;
    }
    return {record.first.line + count_ones(before), p - offset % 64 + std::bit_width(before)};
}

/// The first word after `p`, which is a blank.
const char* EntryCutter::next_word_after(const char* p) noexcept {
    do {
        reach(p);
        const std::uint64_t starts = window(&Record::starts, p);
        p += starts != 0 ? std::countr_zero(starts) : 64;
    } while (is_blank(*p));
    return p;
}

/// Whether the name at `p` certainly begins an entry, unless what follows it says otherwise.
bool EntryCutter::look(const char* p, Head& head) {
    if (!is_char(*p, CHAR_NAME_START)) {
        return false;
    }
    reach(p);
    const std::uint64_t others = window(&Record::others, p);
    if (others == 0) {
        return false;
    }
    const char* end = p + std::countr_zero(others);
    head.name = {p, static_cast<std::size_t>(end - p)};
    head.template_name = {};
    head.array_count = no_array;
    if (!is_blank(*end)) {
        end = end_of_suffix(end, head.template_name, head.array_count);
        if (end == nullptr) {
            return false;
        }
    }
    if (head.name.size() <= 3 && is_bool_word(head.name)) {
        return false;
    }
    head.place = place_of(p);
    head.end = end;
    head.value = next_word(end);
    return true;
}

bool EntryCutter::seek(const char* word) {
    at_ = word;
    reach(word);
    const bool is_overwritten = record_count_ > ring_size + static_cast<std::size_t>(word - begin_) / 64;
    has_head_ = !is_overwritten && look(word, *head_);
    return has_head_;
}

bool EntryCutter::cut(KnownEntry& known, bool may_close) {
    const char* next = nullptr;
    if (!has_head_) {
        if (*at_ != '}' || !may_close) {
            return false;
        }
        known.kind = KnownEntry::close;
        known.text = {at_, 1};
        at_ = next_word(at_ + 1);
        has_head_ = look(at_, *head_);
        return true;
    }
    const char* const value = head_->value;
    switch (*value) {
    case '{':
        known.kind = KnownEntry::group;
        brace_ = token_of_brace(value);
        next = next_word(value + 1);
        break;
    case '"': {
        const char* const quote = closing_quote(value, end_);
        if (quote == nullptr || !is_blank(quote[1])) {
            return false;
        }
        known.kind = KnownEntry::string;
        known.text = {value + 1, static_cast<std::size_t>(quote - value - 1)};
        next = next_word(quote + 1);
        break;
    }
    case 'y':
    case 'n': {
        const std::size_t size = *value == 'y' ? 3 : 2;
        known.text = {value, size};
        if (static_cast<std::size_t>(end_ - value) < size || !is_bool_word(known.text) ||
            !is_blank(value[size])) {
            return false;
        }
        known.kind = KnownEntry::boolean;
        next = next_word(value + size);
        break;
    }
    default:
        next = cut_numbers(value, known);
        if (next == nullptr) {
            return false;
        }
        known.kind = KnownEntry::numbers;
    }
    Head* const next_head = head_ == heads_ ? heads_ + 1 : heads_;
    const bool has_head = look(next, *next_head);
    if (!has_head && *next != '}' && known.kind != KnownEntry::group) {
        return false;
    }
    known.head = head_;
    head_ = next_head;
    has_head_ = has_head;
    at_ = next;
    return true;
}

/// Returns the word after the numbers. Null when there are no numbers, or no word follows them.
const char* EntryCutter::cut_numbers(const char* p, KnownEntry& known) {
    const char* const begin = p;
    known.rows.clear();
    for (;;) {
        reach(p);
        const std::uint64_t starts = window(&Record::starts, p) | 1;
        const std::uint64_t stops = window(&Record::stops, p);
        const std::uint64_t ends = window(&Record::ends, p);
        const std::uint64_t stop = stops & -stops;
        if (stop == 1) {
            break;
        }
        const std::uint64_t before = ends & (stop - 1); // all ends, when there is no stop
        if ((stop & ~starts) != 0 || before == 0) {
            return nullptr; // the stop is inside a word, or a word has 64 characters or more
        }
        const int size = 63 - std::countl_zero(before);
        known.rows.push_back({p, starts & ((std::uint64_t{1} << size) - 1), before,
                              window(&Record::double_marks, p), window(&Record::others, p)});
        known.text = {begin, static_cast<std::size_t>(p - begin + size)};
        p = stop != 0 ? p + std::countr_zero(stop) : next_word(p + size);
        if (stop != 0) {
            break;
        }
    }
    return p == begin ? nullptr : p;
}

} // namespace bk
