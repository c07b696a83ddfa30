#include "document/document.h"
#include "tests/support/odd_layout.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

// Documents in odd layouts are changed in every way and saved. The saved file must load as the changed tree,
// and a refused save must change nothing. A comment may be lost only with an entry that was removed. A word
// that was not read is never lost.

using namespace bk_parser;

namespace {

/// Changes a tree at random.
class Editor {
public:
    explicit Editor(unsigned int seed) : random_(seed) {}

    bool has_removed = false; // an entry was removed, perhaps with a comment in or after it
    bool has_crossed = false; // an entry has left its group

    void edit(ParserGroup& root) {
        ParserGroup& group = any_group(root);
        const unsigned int count = group.get_entries().get_count();
        if (count == 0 || below(6) == 0) {
            return add(group);
        }
        const unsigned int at = below(count);
        ParserEntry& entry = *group.get_entries()[at];
        switch (below(12)) {
        case 0:
            has_removed = true;
            group.remove_entry(at);
            return;
        case 1:
        case 2:
            group.move_entry(at, below(count));
            return;
        case 3:
            return cross(root, group, at);
        case 4:
            return insert_copy(group, at);
        case 5:
            has_removed = true;
            group.clear();
            return;
        case 6:
            entry.rename(entry.get_type() == ParserEntry::TYPE_KEYWORD ? "#other" : "other");
            return;
        case 7:
            return undo(group, at);
        case 8:
            return change_head(entry);
        default:
            return change_values(entry);
        }
    }

private:
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

    static ParserGroup* group_of(ParserEntry& entry) {
        const unsigned int last = entry.get_value_count() - 1;
        return entry.has_value() && entry.is_value_group(last) ? entry.get_group(last) : nullptr;
    }

    ParserGroup& any_group(ParserGroup& root) {
        ParserGroup* group = &root;
        while (below(3) != 0) {
            std::vector<ParserGroup*> inner;
            for (ParserEntry* const entry : group->get_entries()) {
                if (ParserGroup* const one = group_of(*entry)) {
                    inner.push_back(one);
                }
            }
            if (inner.empty()) {
                break;
            }
            group = inner[below(static_cast<unsigned int>(inner.size()))];
        }
        return *group;
    }

    void add(ParserGroup& group) {
        const unsigned int count = group.get_entries().get_count();
        if (below(3) == 0) {
            ParserGroup& made = *group.add_group("made");
            made.add_entry("one", 0, 0)->add_int(1);
        } else {
            group.add_entry("made", 0, 0)->add_int(1);
        }
        group.move_entry(count, below(count + 1));
    }

    void cross(ParserGroup& root, ParserGroup& group, unsigned int at) {
        has_removed = true;
        has_crossed = true;
        std::unique_ptr<ParserEntry> taken = take(group, at);
        ParserGroup& target = any_group(root);
        insert(target, below(target.get_entries().get_count() + 1), std::move(taken));
    }

    void insert_copy(ParserGroup& group, unsigned int at) {
        auto copy = std::make_unique<ParserEntry>(*group.get_entries()[at]);
        if (below(2) == 0) {
            copy->rename(copy->get_type() == ParserEntry::TYPE_KEYWORD ? "#copy" : "copy");
        } else if (copy->has_value() && !copy->is_value_group(0)) {
            copy->set_int(77, 0);
        } else if (ParserGroup* const inner = group_of(*copy)) {
            add(*inner);
        }
        insert(group, below(group.get_entries().get_count() + 1), std::move(copy));
    }

    void undo(ParserGroup& group, unsigned int at) {
        if (below(2) == 0) {
            const unsigned int to = below(group.get_entries().get_count());
            group.move_entry(at, to);
            group.move_entry(to, at);
        } else {
            insert(group, at, take(group, at));
        }
    }

    void change_head(ParserEntry& entry) {
        if (entry.get_type() != ParserEntry::TYPE_ENTRY) {
            return;
        }
        if (below(2) == 0) {
            entry.set_array(false, 0);
            entry.set_template(below(2) == 0 ? "t2" : "");
        } else {
            entry.set_template("");
            entry.set_array(true, 3);
        }
    }

    void change_values(ParserEntry& entry) {
        const unsigned int count = entry.get_value_count();
        ParserGroup* const inner = group_of(entry);
        const unsigned int plain = count - (inner != nullptr ? 1 : 0);
        switch (below(6)) {
        case 0:
            if (inner == nullptr) {
                entry.add_double(0.5);
            }
            return;
        case 1:
            if (plain != 0) {
                has_removed = true;
                entry.remove_value(below(plain));
            }
            return;
        case 2:
            has_removed = true;
            entry.reset();
            return;
        case 3:
            if (inner == nullptr && entry.get_type() != ParserEntry::TYPE_FUNCTION_CALL) {
                entry.add_group(nullptr)->add_entry("inner", 0, 0)->add_bool(true);
            } else if (inner != nullptr) {
                has_removed = true;
                entry.remove_value(count - 1);
            }
            return;
        case 4:
            if (plain > 1) {
                entry.move_value(below(plain), below(plain));
            }
            return;
        default:
            if (plain != 0) {
                entry.set_string("new \"text\"", below(plain));
            }
            return;
        }
    }

    std::mt19937 random_;
};

/// How often the files contain each comment, or each word that was not read.
std::map<std::string, int> marks_of(const std::vector<std::string>& texts, char begin) {
    std::map<std::string, int> marks;
    for (const std::string& text : texts) {
        for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
            const std::size_t end = text.find_first_not_of("0123456789", at + 1);
            const bool is_comment =
                begin == 'c' && at >= 2 && (text.substr(at - 2, 2) == "//" || text.substr(at - 2, 2) == "/ ");
            if (at + 1 < text.size() && end != at + 1 && (begin == '%' || is_comment)) {
                ++marks[text.substr(at, (end == std::string::npos ? text.size() : end) - at)];
            }
        }
    }
    return marks;
}

class SaveEdits : public testing::TestWithParam<unsigned int> {};

using save_edits = SaveEdits;

} // namespace

TEST_P(save_edits, lose_nothing) {
    const OddLayout layout(GetParam());
    Editor editor(GetParam());
    const ScratchFolder folder;
    for (const auto& [name, text] : layout.files()) {
        folder.write(name, text);
    }
    const auto all = [&] {
        std::vector<std::string> texts;
        for (const auto& file : layout.files()) {
            texts.push_back(folder.read(file.first));
        }
        return texts;
    };
    LoadResult loaded = load(folder.path("document"));
    ASSERT_TRUE(loaded.ok() || layout.has_faults());
    for (unsigned int round = 0; round < 4; ++round) {
        const std::vector<std::string> before = all();
        for (unsigned int i = 0; i <= round; ++i) {
            editor.edit(loaded.document.root());
        }
        const SaveResult result = save(loaded.document);
        const std::vector<std::string> after = all();
        const std::string shown =
            testing::PrintToString(before) + "\n-----\n" + testing::PrintToString(after);
        if (!result.ok()) {
            EXPECT_EQ(before, after);
            EXPECT_TRUE(layout.has_faults() || layout.has_shared_part() || editor.has_crossed ||
                        editor.has_removed)
                << result.reason << "\n"
                << shown;
            return;
        }
        const LoadResult again = load(folder.path("document"));
        ASSERT_EQ(content_difference(loaded.document.root(), again.document.root()), "") << shown;
        ASSERT_EQ(marks_of(before, '%'), marks_of(after, '%')) << shown;
        if (!editor.has_removed && !layout.has_shared_part()) {
            ASSERT_EQ(marks_of(before, 'c'), marks_of(after, 'c')) << shown;
        }
        for (const auto& [mark, count] : marks_of(after, 'c')) {
            ASSERT_TRUE(count == 1 || layout.has_shared_part()) << mark << " " << shown;
        }
        const SaveResult unchanged = save(loaded.document);
        ASSERT_TRUE(unchanged.ok()) << unchanged.reason << "\n" << shown;
        EXPECT_TRUE(unchanged.written.empty()) << shown;
    }
}

INSTANTIATE_TEST_SUITE_P(each_seed, save_edits, testing::Range(0u, 250u));
