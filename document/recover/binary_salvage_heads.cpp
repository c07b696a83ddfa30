#include "core/text/core_bytes_impl.h"
#include "document/recover/binary_salvage_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

// Heads of entries and sizes of groups, and which of them to trust.

namespace bk_parser {

namespace {

constexpr std::size_t longest_likely_name = 1000;

bool is_control(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == '\x7F';
}

/// Whether a name may have this character after its first.
bool is_in_names(char character) {
    const char name[] = {'a', character};
    bool is_keyword = false;
    return bk::is_entry_name({name, sizeof name}, is_keyword);
}

} // namespace

bool BinarySalvage::is_tag(char character) noexcept {
    return static_cast<unsigned char>(character) <= ParserValue::TYPE_BINARY_DATA;
}

std::uint64_t BinarySalvage::number_at(std::size_t place) const noexcept {
    return bk::load_le64(reinterpret_cast<const unsigned char*>(data_.data() + place));
}

/// Reads the head of the entry at `place`, which must be completely before `end`. Does not check its size. The name is not empty.
bool BinarySalvage::read_head(std::size_t place, std::size_t end, Head& head) const noexcept {
    const std::size_t length = data_.substr(place, end - place).find('\0');
    if (length == 0 || length == std::string_view::npos || end - place - length < 1 + size_width) {
        return false;
    }
    head.begin = place;
    head.name_size = length;
    head.size = number_at(place + length + 1);
    head.values = place + length + 1 + size_width + bk::reserved_size;
    return true;
}

/// Whether the bytes at `place` look like the beginning of an entry that ends before `end`.
bool BinarySalvage::is_likely_head(std::size_t place, std::size_t end) const noexcept {
    Head head;
    const std::size_t near = std::min(end, place + longest_likely_name + 1 + size_width);
    if (is_control(data_[place]) || !read_head(place, near, head)) {
        return false;
    }
    const std::string_view name = data_.substr(place, head.name_size);
    const std::size_t body = head.values - bk::reserved_size;
    if (std::any_of(name.begin(), name.end(), is_control) || head.size == 0 || body >= end ||
        data_[body] != '\0') {
        return false;
    }
    const bool is_cut = announced_end_ > data_.size() && end == data_.size();
    if (head.size > (is_cut ? announced_end_ : end) - body) {
        return false;
    }
    return head.size == 1 || (head.values < end && is_tag(data_[head.values]));
}

/// Whether the sizes of entries lead from one to the next up to `end`.
bool BinarySalvage::chain_ends_at(std::size_t begin, std::size_t end) noexcept {
    while (begin < end) {
        Head head;
        if (!read_head(begin, end, head)) {
            return false;
        }
        const std::size_t work = head.name_size + size_width;
        if (work > work_left_) {
            return false;
        }
        work_left_ -= work;
        const std::size_t body = head.values - bk::reserved_size;
        if (head.size == 0 || head.size > end - body) {
            return false;
        }
        begin = body + static_cast<std::size_t>(head.size);
    }
    return begin == end;
}

/// The end of the group whose size is stored at `size_at`. It is at most `parent_end`.
std::size_t BinarySalvage::group_end(std::size_t size_at, std::size_t parent_end, bool is_root) {
    const std::uint64_t size = number_at(size_at);
    const std::size_t begin = size_at + size_width;
    const bool fits = size <= parent_end - begin;
    const std::size_t end = fits ? begin + static_cast<std::size_t>(size) : parent_end;
    // Nothing follows the root.
    const bool has_more =
        is_root && end < parent_end && is_likely_head(end, parent_end) && chain_ends_at(end, parent_end);
    if (fits && !has_more && chain_ends_at(begin, end)) {
        return end;
    }
    if (is_root && !fits && size <= bk::max_binary_size) {
        announced_end_ = begin + size;
        return parent_end;
    }
    if ((!fits || end != parent_end) && begin < parent_end && chain_ends_at(begin, parent_end)) {
        lost_.add(size_at, size_width, "the size of a group");
        return parent_end;
    }
    if (!fits && (size > announced_end_ || begin + size > announced_end_)) {
        lost_.add(size_at, size_width, "the size of a group");
    }
    return end;
}

void BinarySalvage::take_head(Level& level, const Head& head) const noexcept {
    const std::size_t body = head.values - bk::reserved_size;
    const bool fits = head.size != 0 && head.size <= level.group_end - body;
    level.head = head;
    level.entry_end = fits ? body + static_cast<std::size_t>(head.size) : 0;
    level.is_sure = fits && (is_sound_ || ends_well(level, level.entry_end));
}

std::string BinarySalvage::name_of(const Head& head) const {
    return std::string(data_.substr(head.begin, head.name_size));
}

bool BinarySalvage::has_good_name(const Head& head) const {
    bool is_keyword = false;
    return bk::is_entry_name(data_.substr(head.begin, head.name_size), is_keyword);
}

/// The head if the first character that no name has was once the NUL after the name. Returns the same head when that does not fit.
BinarySalvage::Head BinarySalvage::head_with_lost_nul(const Head& head, std::size_t end) const {
    Head shorter = head;
    shorter.name_size = 1;
    while (shorter.name_size < head.name_size && is_in_names(data_[head.begin + shorter.name_size])) {
        ++shorter.name_size;
    }
    const std::size_t body = head.begin + shorter.name_size + 1 + size_width;
    if (shorter.name_size == head.name_size || body >= end || !has_good_name(shorter)) {
        return head;
    }
    shorter.size = number_at(body - size_width);
    shorter.values = body + bk::reserved_size;
    Level level;
    level.group_end = end;
    take_head(level, shorter);
    return level.is_sure ? shorter : head;
}

/// The name of the entry. In a name that no entry may have, replaces the invalid characters.
std::string BinarySalvage::mended_name(const Head& head) {
    std::string name = name_of(head);
    bool is_keyword = false;
    if (bk::is_entry_name(name, is_keyword)) {
        return name;
    }
    const std::string stored = name;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (!is_in_names(name[i]) && (i != 0 || name[i] != '#')) {
            name[i] = '_';
        }
    }
    if (!bk::is_entry_name(name, is_keyword)) {
        name.front() = '_';
    }
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] != stored[i]) {
            lost_.add(head.begin + i, 1, "a character of the name '" + name + "'");
        }
    }
    return name;
}

} // namespace bk_parser
