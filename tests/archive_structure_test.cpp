#include "core/core_hash.h"
#include "tests/support/archive_form.h"

#include <gtest/gtest.h>

#include <random>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace {

using namespace archive_form;

std::string numbered(unsigned int i) {
    return "word" + std::to_string(i);
}

ParserArchive archive_of(unsigned int words) {
    ParserArchive archive;
    for (unsigned int i = 0; i < words; ++i) {
        archive += core(numbered(i));
    }
    return archive;
}

void expect_empty(const ParserArchive& archive) {
    EXPECT_EQ(archive.strings.get_count(), 0u);
    EXPECT_EQ(archive.indices.get_count(), 0u);
}

/// Expects that the archive finds its words and takes a new one.
void expect_at_work(ParserArchive& archive, unsigned int words) {
    for (unsigned int i = 0; i < words; ++i) {
        archive += core(numbered(i));
        EXPECT_EQ(archive.indices[archive.indices.get_count() - 1], i);
    }
    archive += "another";
    EXPECT_EQ(archive.strings.get_count(), words + 1);
    EXPECT_EQ(archive.indices[archive.indices.get_count() - 1], words);
}

/// Sizes around the powers of two at which a lookup may change its method, and larger ones.
constexpr unsigned int sizes[] = {0, 1, 2, 7, 8, 9, 16, 17, 31, 32, 33, 64, 65, 100, 128, 129, 1000};

} // namespace

TEST(archive_structure, a_new_archive_is_empty) {
    expect_empty(ParserArchive());
}

TEST(archive_structure, words_get_indices_in_order_of_first_appearance) {
    ParserArchive archive;
    for (const char* word : {"b", "a", "b", "c", "a", "b"}) {
        archive += word;
    }
    EXPECT_EQ(strings_of(archive), (Strings{"b", "a", "c"}));
    EXPECT_EQ(indices_of(archive), (Indices{0, 1, 0, 2, 1, 0}));
}

TEST(archive_structure, any_bytes_are_a_word) {
    ParserArchive archive;
    const Strings words = {"", std::string(1, '\0'), std::string("a\0b", 3), "a", "A", "\x80\xFF", "\x0F"};
    for (int round = 0; round < 2; ++round) {
        for (const std::string& word : words) {
            archive += core(word);
        }
    }
    EXPECT_EQ(strings_of(archive), words);
    EXPECT_EQ(indices_of(archive), (Indices{0, 1, 2, 3, 4, 5, 6, 0, 1, 2, 3, 4, 5, 6}));
}

TEST(archive_structure, the_lookup_never_changes_what_index_a_word_gets) {
    ParserArchive archive;
    std::unordered_map<std::string, unsigned int> expected;
    std::mt19937 random(1);
    for (unsigned int i = 0; i < 30000; ++i) {
        const std::string word = numbered(static_cast<unsigned int>(random()) % (1 + i / 3));
        const auto next = static_cast<unsigned int>(expected.size());
        const unsigned int index = expected.emplace(word, next).first->second;
        archive += core(word);
        ASSERT_EQ(archive.indices[i], index) << i;
        ASSERT_EQ(archive.strings.get_count(), expected.size());
        ASSERT_EQ(plain(archive.strings[index]), word);
    }
    EXPECT_GT(expected.size(), 1000u);
}

TEST(archive_structure, strings_that_a_host_has_listed_are_found_one_and_all) {
    constexpr unsigned int count = 101;
    const auto word = [](unsigned int i) { return CoreString(("word" + std::to_string(i)).c_str()); };
    ParserArchive archive;
    for (unsigned int i = 0; i < count; ++i) {
        archive.strings.add(word(i));
    }
    for (unsigned int i = 0; i < count; ++i) {
        archive += word(i);
        ASSERT_EQ(archive.indices[i], i);
    }
    EXPECT_EQ(archive.strings.get_count(), count);
}

TEST(archive_structure, words_of_equal_hash_are_told_apart) {
    std::unordered_map<unsigned int, std::string> seen;
    Strings pairs;
    for (unsigned int i = 0; i < 300000; ++i) {
        const std::string word = numbered(i);
        const auto [place, is_new] = seen.emplace(CoreHash::generate_jenkins(word.data(), word.size()), word);
        if (!is_new) {
            pairs.insert(pairs.end(), {place->second, word});
        }
    }
    ASSERT_GE(pairs.size(), 2u);
    ParserArchive archive = archive_of(200); // enough words for a hash table
    for (const std::string& word : pairs) {
        archive += core(word);
    }
    for (unsigned int i = 0; i < 200 + pairs.size(); ++i) {
        EXPECT_EQ(archive.indices[i], i);
    }
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        archive += core(pairs[i]);
        EXPECT_EQ(archive.indices[archive.indices.get_count() - 1], 200 + i);
    }
}

TEST(archive_structure, a_copy_is_equal_and_independent) {
    for (const unsigned int size : sizes) {
        ParserArchive archive = archive_of(size);
        ParserArchive copy(archive);
        EXPECT_EQ(strings_of(copy), strings_of(archive));
        EXPECT_EQ(indices_of(copy), indices_of(archive));
        expect_at_work(copy, size);
        EXPECT_EQ(archive.strings.get_count(), size) << "the copy's words are its own";
        EXPECT_EQ(archive.indices.get_count(), size);
        expect_at_work(archive, size);
    }
}

TEST(archive_structure, a_copy_outlives_its_source) {
    auto archive = std::make_unique<ParserArchive>(archive_of(100));
    ParserArchive copy(*archive);
    archive.reset();
    expect_at_work(copy, 100);
}

TEST(archive_structure, assigning_replaces_everything) {
    for (const unsigned int size : sizes) {
        for (const unsigned int before : {0u, 1u, 100u}) {
            const ParserArchive archive = archive_of(size);
            ParserArchive other = archive_of(before);
            other = archive;
            EXPECT_EQ(strings_of(other), strings_of(archive));
            EXPECT_EQ(indices_of(other), indices_of(archive));
            expect_at_work(other, size);
        }
    }
}

TEST(archive_structure, assigning_an_archive_to_itself_changes_nothing) {
    ParserArchive archive = archive_of(100);
    const ParserArchive& itself = archive;
    archive = itself;
    EXPECT_EQ(archive.strings.get_count(), 100u);
    expect_at_work(archive, 100);
}

TEST(archive_structure, a_moved_archive_leaves_its_source_empty_and_usable) {
    for (const unsigned int size : sizes) {
        ParserArchive source = archive_of(size);
        ParserArchive target(std::move(source));
        expect_at_work(target, size);
        expect_empty(source);
        expect_at_work(source, 0);
    }
}

TEST(archive_structure, a_move_assignment_replaces_everything_and_leaves_its_source_empty_and_usable) {
    for (const unsigned int size : sizes) {
        for (const unsigned int before : {0u, 1u, 100u}) {
            ParserArchive source = archive_of(size);
            ParserArchive target = archive_of(before);
            target = std::move(source);
            expect_at_work(target, size);
            expect_empty(source);
            expect_at_work(source, 0);
        }
    }
}

TEST(archive_structure, moving_cannot_fail) {
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<ParserArchive>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<ParserArchive>);
}

TEST(archive_structure, strings_are_moved_and_not_copied) {
    ParserArchive source;
    source += core(std::string(1000, 'x'));
    const char* const data = source.strings[0].get_data();
    const ParserArchive target(std::move(source));
    EXPECT_EQ(target.strings[0].get_data(), data);
}
