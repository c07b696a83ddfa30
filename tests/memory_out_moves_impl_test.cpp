#include "tests/support/run_out.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

// Memory runs out while entries are moved and removed. This throws. Each entry is then in one group or in
// none, and is destroyed once.

namespace {

using Edit = std::function<void(ParserGroup& group, ParserGroup& dest)>;

struct NamedEdit {
    const char* name;
    Edit edit;
    unsigned int removed; // how many entries the edit deletes
};

const NamedEdit edits[] = {
    {"move one", [](ParserGroup& group, ParserGroup&) { group.move_entry(0u, 5u); }, 0},
    {"move one to its own end", [](ParserGroup& group, ParserGroup&) { group.move_entry(1u, group); }, 0},
    {"move one away", [](ParserGroup& group, ParserGroup& dest) { group.move_entry(1u, dest); }, 0},
    {"move the ordinary ones away", [](ParserGroup& group, ParserGroup& dest) { group.move_entries(dest); },
     0},
    {"move the ordinary ones to the end", [](ParserGroup& group, ParserGroup&) { group.move_entries(group); },
     0},
    {"move all away", [](ParserGroup& group, ParserGroup& dest) { group.move_entries(dest, 1); }, 0},
    {"remove some",
     [](ParserGroup& group, ParserGroup&) {
         group.remove_entries(CoreBasicArray<unsigned int>{0, 3, 6});
     },
     3},
    {"remove by name", [](ParserGroup& group, ParserGroup&) { group.remove_entry(CoreString("b")); }, 2},
    {"remove one", [](ParserGroup& group, ParserGroup&) { group.remove_entry(2u); }, 1},
};

constexpr const char* group_text = "a 1 #k 2 b 3 c 4 #l 5 b 6 d 7 e 8 f 9";
constexpr const char* dest_text = "x 1 #y 2 z 3 w 4";

std::vector<const ParserEntry*> entries_of(const ParserGroup& one, const ParserGroup& two) {
    std::vector<const ParserEntry*> entries(one.get_entries().begin(), one.get_entries().end());
    entries.insert(entries.end(), two.get_entries().begin(), two.get_entries().end());
    std::sort(entries.begin(), entries.end());
    return entries;
}

/// Expects each ordinal to give an entry of the group, whatever the index knows.
void read_all(const ParserGroup& group) {
    for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
        ASSERT_NE(group.get_entry(i), nullptr);
    }
}

/// Runs the edit with request n failing. False when it makes fewer requests. With `changed`, a host first
/// sets the raw-text flags of entries, which the index does not know yet.
bool fails_at(std::size_t n, const NamedEdit& edit, bool changed) {
    ParserGroup group("group");
    ParserGroup dest("dest");
    group.set_text(CoreString(group_text), default_parser_serial_version, nullptr);
    dest.set_text(CoreString(dest_text), default_parser_serial_version, nullptr);
    for (unsigned int i = 0; changed && i < group.get_entries().get_count(); ++i) {
        group.get_entries()[i]->set_as_raw_text(i % 3 != 0);
    }
    const std::vector<const ParserEntry*> before = entries_of(group, dest);
    bool has_thrown = false;
    FailingMemory::fail_at(n);
    try {
        edit.edit(group, dest);
    } catch (const std::bad_alloc&) {
        has_thrown = true;
    }
    const bool has_failed = FailingMemory::disarm();
    EXPECT_EQ(has_thrown, has_failed) << edit.name << ' ' << n;
    const std::vector<const ParserEntry*> after = entries_of(group, dest);
    EXPECT_EQ(std::adjacent_find(after.begin(), after.end()), after.end()) << "listed twice: " << edit.name;
    EXPECT_TRUE(std::includes(before.begin(), before.end(), after.begin(), after.end())) << edit.name;
    const std::size_t lost = before.size() - after.size();
    EXPECT_TRUE(lost == edit.removed || (has_failed && lost == 0)) << edit.name << ' ' << n << ": " << lost;
    read_all(group);
    read_all(dest);
    return has_failed;
}

} // namespace

TEST(memory_out_of_a_move, every_entry_is_listed_once_and_dies_once) {
    for (const NamedEdit& edit : edits) {
        for (const bool changed : {false, true}) {
            const long live = FailingMemory::live();
            std::size_t n = 1;
            while (fails_at(n, edit, changed)) {
                ++n;
            }
            EXPECT_EQ(FailingMemory::live(), live) << edit.name;
            EXPECT_LT(n, 12u) << edit.name;
        }
    }
}
