#include "document/paths/path_place_impl.h"

#include "document/path.h"
#include "document/paths/tree_cursor_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::size_t longest_key = 64; // a number is easier to read than a longer one

} // namespace

bool find_key(const ParserEntry& entry, std::string_view& key) noexcept {
    if (entry.get_value_count() == 0 || !entry.is_value_string(0)) {
        return false;
    }
    key = bk::EntryAccess::value(entry, 0).string();
    return key.size() <= longest_key && std::none_of(key.begin(), key.end(), [](char character) {
               return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
           });
}

Likeness Likeness::of(const ParserGroup& group, const ParserEntry& entry) {
    Likeness likeness;
    std::string_view key;
    const bool has_key = find_key(entry, key);
    bool is_passed = false;
    for (const ParserEntry* other : group.get_entries()) {
        if (other == nullptr || !(other->get_name() == entry.get_name())) {
            continue;
        }
        is_passed = is_passed || other == &entry;
        std::string_view other_key;
        ++likeness.name_count;
        likeness.number += is_passed ? 0 : 1;
        likeness.key_count += has_key && find_key(*other, other_key) && other_key == key ? 1 : 0;
        likeness.template_count += other->get_template() == entry.get_template() ? 1 : 0;
    }
    return likeness;
}

unsigned int count_groups(const ParserEntry& entry) noexcept {
    unsigned int count = 0;
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        count += entry.is_value_group(i) ? 1 : 0;
    }
    return count;
}

void append_step(std::string& path, const ParserEntry& entry, const Likeness& likeness) {
    path += path_name(entry.get_name().get_view());
    std::string_view key;
    if (likeness.name_count == 1) {
        return;
    }
    if (likeness.key_count == 1 && find_key(entry, key)) {
        path += '[' + path_string(key) + ']';
    } else if (likeness.template_count == 1 && entry.is_template()) {
        path += '<' + path_name(entry.get_template().get_view()) + '>';
    } else {
        path += '[' + std::to_string(likeness.number) + ']';
    }
}

void append_descent(std::string& path, const ParserEntry& entry, unsigned int value) {
    if (count_groups(entry) > 1) {
        path += '@' + std::to_string(value);
    }
    path += '/';
}

namespace {

/// Walks a cursor until it has reached the entry or group that is looked for.
template <class IsFound>
bool walk_to(TreeCursor& cursor, const IsFound& is_found) {
    while (cursor.next()) {
        if (is_found(*cursor.entry())) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string path_of(const ParserGroup& root, const ParserEntry& entry) {
    TreeCursor cursor(root);
    std::string path;
    if (!walk_to(cursor, [&](const ParserEntry& found) { return &found == &entry; })) {
        return path;
    }
    const std::vector<TreeCursor::Level>& levels = cursor.levels();
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (i != 0) {
            append_descent(path, *levels[i - 1].entry, levels[i - 1].value - 1);
        }
        append_step(path, *levels[i].entry, Likeness::of(*levels[i].group, *levels[i].entry));
    }
    return path;
}

ParserGroup* parent_of(const ParserGroup& root, const ParserEntry& entry) {
    TreeCursor cursor(root);
    return walk_to(cursor, [&](const ParserEntry& found) { return &found == &entry; }) ? &cursor.group()
                                                                                       : nullptr;
}

ParserEntry* parent_of(const ParserGroup& root, const ParserGroup& group) {
    TreeCursor cursor(root);
    const auto holds = [&](const ParserEntry& entry) {
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            if (bk::EntryAccess::value(entry, i).group() == &group) {
                return true;
            }
        }
        return false;
    };
    return walk_to(cursor, holds) ? cursor.entry() : nullptr;
}

} // namespace bk_parser
