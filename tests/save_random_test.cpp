#include "document/document.h"
#include "tests/support/line_difference.h"
#include "tests/support/plain_text.h"
#include "tests/support/random_layout.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <vector>

// Random documents in random layouts, with includes, are changed at random and saved several times.

using namespace bk_parser;

namespace {

constexpr unsigned int rounds = 4;

/// The heads and places of all entries.
std::vector<std::pair<std::string, std::string>> places_of(const ParserGroup& root) {
    std::vector<std::pair<std::string, std::string>> places;
    std::vector<const ParserGroup*> pending{&root};
    while (!pending.empty()) {
        const ParserGroup& group = *pending.back();
        pending.pop_back();
        for (const ParserEntry* const entry : group.get_entries()) {
            places.emplace_back(
                plain(entry->get_name()) + "<" + plain(entry->get_template()) + "[" +
                    std::to_string(entry->get_array_count()) + "/" + std::to_string(entry->get_type()),
                std::to_string(entry->get_line()) + ":" + std::to_string(entry->get_column()));
            const unsigned int last = entry->get_value_count() - 1;
            if (entry->has_value() && entry->is_value_group(last)) {
                pending.push_back(entry->get_group(last));
            }
        }
    }
    return places;
}

class SaveRandom : public testing::TestWithParam<unsigned int> {};

using save_random = SaveRandom;

} // namespace

TEST_P(save_random, what_is_saved_loads_as_the_tree_and_only_lines_of_the_edits_differ) {
    RandomLayout random(GetParam());
    const ScratchFolder folder;
    for (const auto& [name, text] : random.files()) {
        folder.write(name, text);
    }
    LoadResult loaded = load(folder.path("document"));
    for (unsigned int round = 0; round < rounds; ++round) {
        std::vector<std::string> old;
        for (const auto& [name, text] : random.files()) {
            old.push_back(folder.read(name));
        }
        const unsigned int lines = random.edit(loaded.document.root());
        const SaveResult result = save(loaded.document);
        ASSERT_TRUE(result.ok()) << result.reason << "\nround " << round << "\n"
                                 << testing::PrintToString(old);
        const LoadResult again = load(folder.path("document"));
        ASSERT_EQ(content_difference(loaded.document.root(), again.document.root()), "") << old[0];
        const std::vector<std::pair<std::string, std::string>> places = places_of(again.document.root());
        ASSERT_EQ(places_of(loaded.document.root()), places) << old[0] << "\n-----\n"
                                                             << folder.read("document");
        std::size_t changed = 0;
        for (std::size_t i = 0; i < old.size(); ++i) {
            changed += changed_lines(old[i], folder.read(random.files()[i].first));
        }
        EXPECT_LE(changed, lines) << "round " << round << "\n"
                                  << old[0] << "\n-----\n"
                                  << folder.read("document");
    }
}

INSTANTIATE_TEST_SUITE_P(each_seed, save_random, testing::Range(0u, 150u));
