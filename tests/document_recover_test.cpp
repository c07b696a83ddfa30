#include "document/recover.h"
#include "tests/support/golden.h"
#include "tests/support/loaded_document.h"
#include "tests/support/stored_forms.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

// What a recovery finds in files that are truncated or damaged at any place.

using bk_parser::LoadOptions;
using bk_parser::recover_bytes;
using bk_parser::RecoverResult;

namespace {

constexpr const char* binary_file = "binary_reads_and_is_written_the_same.udfs";
constexpr const char* archive_file = "archive_reads_and_is_written_the_same.kwaf";
constexpr const char* long_archive_file = "archive_of_300_words_has_indices_of_two_bytes.kwaf";
constexpr const char* enciphered_file = "enciphered_under_lantern_reads_and_is_written_the_same.bkd";

LoadOptions with_key(const char* key = "lantern") {
    LoadOptions options;
    options.key = key;
    return options;
}

/// Each entry of the root as text.
std::vector<std::string> entries_of(const bk_parser::Document& document) {
    std::vector<std::string> entries;
    for (const ParserEntry* entry : document.root().get_entries()) {
        CoreString text;
        entry->get_text(text, false, 1);
        entries.emplace_back(text.get_view());
    }
    return entries;
}

struct Shape {
    std::size_t entries = 0;
    std::size_t groups = 0;
    std::size_t values = 0;
};

/// The numbers of the parts of a tree.
Shape shape_of(const ParserGroup& root) {
    Shape shape;
    for (const bk_parser::Visit& visit : bk_parser::walk(root)) {
        const ParserEntry& entry = visit.entry();
        ++shape.entries;
        shape.values += entry.get_value_count();
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            shape.groups += entry.get_value_type(i) == ParserValue::TYPE_GROUP ? 1u : 0u;
        }
    }
    return shape;
}

/// The golden files, and the examples in each stored form.
std::vector<std::string> stored_examples() {
    constexpr std::size_t most_bytes = 1500; // the tests read each truncated file twice
    std::vector<std::string> examples;
    for (const char* name : {binary_file, archive_file, long_archive_file, enciphered_file}) {
        examples.push_back(golden::bytes(name));
    }
    const std::filesystem::path folder = std::filesystem::path(BK_PARSER_SOURCE_DIR) / "examples";
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
        if (file.path().extension() != ".bkd") {
            continue;
        }
        const bk_parser::LoadResult loaded = bk_parser::load(file.path());
        StoredForms forms(bk_parser::to_text(loaded.document.root()));
        for (const std::string& bytes : {forms.binary(), forms.archive(), forms.enciphered("lantern")}) {
            if (bytes.size() <= most_bytes) {
                examples.push_back(bytes);
            }
        }
    }
    return examples;
}

/// Each lost part as "23+4 values of 'a'".
Lines lost_of(const RecoverResult& result) {
    Lines lines;
    for (const bk_parser::LostPart& part : result.lost) {
        lines.push_back(std::to_string(part.offset) + "+" + std::to_string(part.length) + " " + part.what);
    }
    return lines;
}

/// The number of equal entries at the beginning of both.
std::size_t common_start(const std::vector<std::string>& first, const std::vector<std::string>& second) {
    const std::size_t most = std::min(first.size(), second.size());
    return static_cast<std::size_t>(
        std::mismatch(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(most), second.begin())
            .first -
        first.begin());
}

/// The offsets at which the entries of the root of a binary document end.
std::vector<std::size_t> ends_of_entries(const std::string& bytes) {
    std::vector<std::size_t> ends;
    for (std::size_t place = 12; place < bytes.size();) {
        const std::size_t nul = bytes.find('\0', place);
        std::size_t size = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            size |= std::size_t{static_cast<unsigned char>(bytes[nul + 1 + i])} << (8 * i);
        }
        place = nul + 9 + size;
        ends.push_back(place);
    }
    return ends;
}

std::string flipped(std::string bytes, std::size_t at, int bit) {
    bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ (1u << bit));
    return bytes;
}

} // namespace

TEST(document_recover, an_odd_name_costs_the_entry_before_it_nothing) {
    std::string bytes = StoredForms("first 0x0 names 1 last 2").binary();
    bytes.replace(bytes.find("names"), 4, "\x92\x90\x8B\x97");
    // The high half of the size of the data, which a load ignores.
    bytes[bytes.find("first") + 6 + 8 + 1 + 1 + 4] = 1;
    const RecoverResult result = recover_bytes(bytes);
    EXPECT_EQ(entries_of(result.loaded.document),
              (std::vector<std::string>{"first 0x00000000", "____s 1", "last 2"}));
    ASSERT_EQ(result.lost.size(), 4u);
    EXPECT_EQ(result.lost[0].what, "a character of the name '____s'");
}

TEST(document_recover, a_file_without_damage_is_read_as_a_load_reads_it) {
    for (const char* name :
         {binary_file, archive_file, long_archive_file, enciphered_file,
          "binary_of_nothing_is_twelve_bytes.udfs", "archive_of_nothing_is_twenty_bytes.kwaf",
          "enciphered_under_lantern_drops_its_header.bkd"}) {
        const std::string path = golden::path(name);
        const RecoverResult result = bk_parser::recover(path, with_key());
        const bk_parser::LoadResult loaded = bk_parser::load(path, with_key());
        EXPECT_EQ(TreeComparison(loaded.document.root(), result.loaded.document.root()).run(), "") << name;
        EXPECT_EQ(lost_of(result), Lines{}) << name;
        EXPECT_EQ(told(result.loaded), told(loaded)) << name;
        EXPECT_EQ(result.is_whole(), loaded.ok()) << name;
    }
}

TEST(document_recover, a_binary_document_that_is_cut_anywhere_has_every_value_before_the_cut) {
    const std::string bytes = golden::bytes(binary_file);
    const std::vector<std::string> whole = entries_of(recover_bytes(bytes).loaded.document);
    const std::vector<std::size_t> ends = ends_of_entries(bytes);
    ASSERT_EQ(whole.size(), ends.size());
    for (std::size_t size = 4; size < bytes.size(); ++size) {
        const RecoverResult result = recover_bytes(bytes.substr(0, size));
        const auto before = static_cast<std::size_t>(
            std::count_if(ends.begin(), ends.end(), [size](std::size_t end) { return end <= size; }));
        EXPECT_GE(common_start(whole, entries_of(result.loaded.document)), before) << size;
        ASSERT_FALSE(result.lost.empty()) << size;
        const std::size_t announced = size < 12 ? 12 : bytes.size();
        EXPECT_EQ(lost_of(result).back(),
                  std::to_string(size) + "+" + std::to_string(announced - size) + " cut off");
        EXPECT_FALSE(result.is_whole());
        EXPECT_EQ(result.loaded.problems.size(), 1u) << size;
    }
}

TEST(document_recover, a_document_that_is_cut_anywhere_has_every_entry_that_a_load_has) {
    for (const std::string& whole : stored_examples()) {
        for (std::size_t size = 4; size < whole.size(); ++size) {
            const std::string cut = whole.substr(0, size);
            const bk_parser::LoadResult loaded = bk_parser::parse(cut, with_key());
            const RecoverResult result = recover_bytes(cut, with_key());
            const Shape recovered = shape_of(result.loaded.document.root());
            const Shape read = shape_of(loaded.document.root());
            EXPECT_GE(recovered.entries, read.entries) << size << " of " << whole.size();
            EXPECT_GE(recovered.groups, read.groups) << size << " of " << whole.size();
            EXPECT_GE(recovered.values, read.values) << size << " of " << whole.size();
            EXPECT_FALSE(result.lost.empty() && loaded.ok()) << size << " of " << whole.size();
        }
    }
}

TEST(document_recover, a_group_that_is_cut_off_behind_its_type_stays_as_an_empty_one) {
    const std::string bytes = StoredForms("a 1 b { c 2 }").binary();
    const std::size_t size_of_b = bytes.find(std::string("c\0", 2)) - 8;
    const RecoverResult result = recover_bytes(bytes.substr(0, size_of_b + 3));
    EXPECT_EQ(tree_of(result.loaded), " a 1 b { }");
    EXPECT_EQ(lost_of(result), (Lines{std::to_string(size_of_b - 1) + "+4 what is in the group 'b'",
                                      std::to_string(size_of_b + 3) + "+" +
                                          std::to_string(bytes.size() - size_of_b - 3) + " cut off"}));
}

TEST(document_recover, the_values_of_an_entry_that_is_cut_stay) {
    const std::string bytes = StoredForms("a 1 b { c 2 d 3 4 5 } e 4").binary();
    const std::size_t e = bytes.rfind("e");
    const std::size_t half_value = bytes.substr(0, e).size() - 7;
    const RecoverResult result = recover_bytes(bytes.substr(0, half_value));
    EXPECT_EQ(tree_of(result.loaded), " a 1 b { c 2 d 3 }");
    EXPECT_EQ(lost_of(result), (Lines{std::to_string(half_value - 3) + "+3 values of 'b/d'",
                                      std::to_string(half_value) + "+" +
                                          std::to_string(bytes.size() - half_value) + " cut off"}));
    EXPECT_EQ(told(result.loaded), Lines{": error: the document is damaged: 2 parts are lost [damaged]"});
}

TEST(document_recover, a_binary_document_goes_on_behind_a_damaged_entry) {
    std::string bytes = StoredForms("a 1 b { c 2 d 3 4 } e 4").binary();
    const std::size_t d = bytes.find(std::string("d\0", 2));
    bytes[d + 11 + 5] = 99; // an invalid type for the second value
    const RecoverResult result = recover_bytes(bytes);
    EXPECT_EQ(tree_of(result.loaded), " a 1 b { c 2 d 3 } e 4");
    EXPECT_EQ(lost_of(result), Lines{std::to_string(d + 16) + "+5 values of 'b/d'"});
}

TEST(document_recover, a_size_that_is_wrong_is_taken_from_what_it_measures) {
    const std::string bytes = StoredForms("a 1 b { c 2 d 3 4 } e 4").binary();
    const std::string whole = " a 1 b { c 2 d 3 4 } e 4";
    for (const std::size_t at : {bytes.find("a") + 2, bytes.find("b") + 2, bytes.find("c") + 2,
                                 bytes.find("b") + 12, std::size_t{4}}) {
        for (std::size_t i = 0; i < 8; ++i) {
            for (int bit = 0; bit < 8; ++bit) {
                const RecoverResult result = recover_bytes(flipped(bytes, at + i, bit));
                if (at == 4 && i < 4 && tree_of(result.loaded) == whole && !result.lost.empty() &&
                    result.lost.back().offset == bytes.size()) {
                    continue; // like a truncated file
                }
                EXPECT_EQ(tree_of(result.loaded), whole) << at << " " << i << " " << bit;
                EXPECT_EQ(lost_of(result).size(), 1u) << at << " " << i << " " << bit;
            }
        }
    }
}

TEST(document_recover, a_flipped_bit_of_a_binary_document_costs_only_the_entry_that_it_stands_in) {
    const std::string bytes = golden::bytes(binary_file);
    const std::vector<std::string> whole = entries_of(recover_bytes(bytes).loaded.document);
    const std::vector<std::size_t> ends = ends_of_entries(bytes);
    int next_lost = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto damaged = static_cast<std::size_t>(
            std::count_if(ends.begin(), ends.end(), [at](std::size_t end) { return end <= at; }));
        for (int bit = 0; bit < 8; ++bit) {
            const RecoverResult result = recover_bytes(flipped(bytes, at, bit));
            const std::vector<std::string> left = entries_of(result.loaded.document);
            EXPECT_GE(common_start(whole, left), at < 12 ? whole.size() : damaged) << at << " " << bit;
            const std::multiset<std::string> there(left.begin(), left.end());
            for (std::size_t i = 0; i < whole.size(); ++i) {
                const bool is_there = there.count(whole[i]) != 0;
                EXPECT_TRUE(is_there || i == damaged || i == damaged + 1)
                    << at << " " << bit << " loses " << whole[i];
                next_lost += !is_there && i == damaged + 1 ? 1 : 0;
            }
        }
    }
    EXPECT_LE(next_lost, 12); // a wrong size may happen to lead to bytes that look like an entry
}

TEST(document_recover, an_archive_that_is_cut_anywhere_has_every_entry_before_the_cut) {
    for (const char* name : {archive_file, long_archive_file}) {
        const std::string bytes = golden::bytes(name);
        const std::vector<std::string> whole = entries_of(recover_bytes(bytes).loaded.document);
        std::size_t before = 0;
        for (std::size_t size = 4; size < bytes.size(); ++size) {
            const RecoverResult result = recover_bytes(bytes.substr(0, size));
            ASSERT_FALSE(result.lost.empty()) << size;
            EXPECT_EQ(result.lost.back().what, "cut off") << size;
            const std::vector<std::string> left = entries_of(result.loaded.document);
            const std::size_t common = common_start(whole, left);
            EXPECT_LE(left.size(), common + 1) << size; // the last entry may have lost values
            EXPECT_GE(common, before) << size;
            before = common;
        }
        EXPECT_GE(before + 1, whole.size());
    }
}

TEST(document_recover, a_word_of_an_archive_that_is_in_no_list_costs_only_itself) {
    std::string bytes = StoredForms("a 1 b 2 3 c 4").archive();
    const std::size_t three = bytes.size() - 3;
    bytes[three] = 77;
    const RecoverResult result = recover_bytes(bytes);
    EXPECT_EQ(tree_of(result.loaded), " a 1 b 2 c 4");
    EXPECT_EQ(lost_of(result),
              Lines{std::to_string(three) + "+1 word 77, which is not in the list of strings"});
}

TEST(document_recover, the_counts_of_an_archive_are_taken_from_what_they_count) {
    const std::string bytes = StoredForms("a 1 b 2 3 c 4 d { e 5 }").archive();
    const std::string whole = tree_of(bk_parser::parse(bytes));
    const std::size_t words = bytes.size() - 12 - 4;
    ASSERT_EQ(bytes[words], 12);
    for (const std::size_t at : {std::size_t{12}, words}) {
        for (std::size_t i = 0; i < 4; ++i) {
            for (int bit = 0; bit < 8; ++bit) {
                const RecoverResult result = recover_bytes(flipped(bytes, at + i, bit));
                EXPECT_EQ(tree_of(result.loaded), whole) << at << " " << i << " " << bit;
                EXPECT_EQ(lost_of(result).size(), 1u) << at << " " << i << " " << bit;
            }
        }
    }
}

TEST(document_recover, a_string_of_an_archive_that_has_lost_its_end_is_parted_at_the_control_character) {
    std::string bytes = StoredForms("a 1 b 2 c 3").archive();
    const std::size_t end = bytes.find('\0', 16);
    bytes[end] = 2;
    const RecoverResult result = recover_bytes(bytes);
    EXPECT_EQ(tree_of(result.loaded), " a 1 b 2 c 3");
    EXPECT_EQ(lost_of(result), Lines{std::to_string(end) + "+1 the end of a string"});
}

TEST(document_recover, an_enciphered_text_that_is_cut_anywhere_has_every_entry_before_the_cut) {
    const std::string bytes = golden::bytes(enciphered_file);
    const std::vector<std::string> whole = entries_of(recover_bytes(bytes, with_key()).loaded.document);
    ASSERT_GT(whole.size(), 5u);
    std::size_t before = 0;
    for (std::size_t size = 4; size < bytes.size(); ++size) {
        const RecoverResult result = recover_bytes(bytes.substr(0, size), with_key());
        ASSERT_FALSE(result.lost.empty()) << size;
        EXPECT_EQ(result.lost.back().offset, size) << size;
        EXPECT_EQ(result.lost.back().what, "cut off") << size;
        const std::size_t common = common_start(whole, entries_of(result.loaded.document));
        EXPECT_GE(common + 1, before) << size; // a truncated number is another number
        before = std::max(before, common);
    }
    EXPECT_GE(before + 1, whole.size());
}

TEST(document_recover, an_enciphered_text_without_its_length_is_read_to_its_end) {
    const std::string bytes = golden::bytes(enciphered_file);
    const std::string whole = tree_of(recover_bytes(bytes, with_key()).loaded);
    for (std::size_t at = 4; at < 12; ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            const RecoverResult result = recover_bytes(flipped(bytes, at, bit), with_key());
            EXPECT_EQ(tree_of(result.loaded), whole) << at << " " << bit;
            EXPECT_EQ(result.lost.size(), 1u) << at << " " << bit;
        }
    }
}

TEST(document_recover, a_wrong_key_is_told_and_no_key_too) {
    const std::string bytes = golden::bytes(enciphered_file);
    EXPECT_EQ(told(recover_bytes(bytes, with_key("portal")).loaded),
              Lines{": error: the document: wrong key, or a damaged file [wrong-key]"});
    EXPECT_EQ(told(recover_bytes(bytes).loaded),
              Lines{": error: the document is encrypted, and no key is given [no-key]"});
}

TEST(document_recover, a_flipped_bit_of_words_or_of_an_enciphered_text_seldom_costs_more_than_a_quarter) {
    int costly = 0;
    int all = 0;
    for (const char* name : {archive_file, enciphered_file}) {
        const std::string bytes = golden::bytes(name);
        const std::size_t count = entries_of(recover_bytes(bytes, with_key()).loaded.document).size();
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            for (int bit = 0; bit < 8; ++bit) {
                const RecoverResult result = recover_bytes(flipped(bytes, at, bit), with_key());
                const std::size_t left = entries_of(result.loaded.document).size();
                costly += left * 4 < count * 3 ? 1 : 0;
                ++all;
            }
        }
    }
    // For example, a character may become a brace or a quote.
    EXPECT_LE(costly * 100, all * 2) << costly;
}

TEST(document_recover, a_form_is_known_by_three_of_its_four_first_bytes) {
    for (const char* name : {binary_file, archive_file, enciphered_file}) {
        const std::string bytes = golden::bytes(name);
        const std::string whole = tree_of(recover_bytes(bytes, with_key()).loaded);
        for (std::size_t at = 0; at < 4; ++at) {
            std::string damaged = bytes;
            damaged[at] = '?';
            const RecoverResult result = recover_bytes(damaged, with_key());
            EXPECT_EQ(tree_of(result.loaded), whole) << name;
            EXPECT_EQ(lost_of(result), Lines{"0+4 the word that names the form"}) << name;
        }
    }
}

TEST(document_recover, a_text_is_loaded_as_ever) {
    const RecoverResult result = recover_bytes("a 1 b } c 2");
    EXPECT_EQ(lost_of(result), Lines{});
    EXPECT_EQ(told(result.loaded), told(bk_parser::parse("a 1 b } c 2")));
    EXPECT_EQ(tree_of(result.loaded), tree_of(bk_parser::parse("a 1 b } c 2")));
}

TEST(document_recover, groups_below_the_limit_are_lost_and_what_follows_is_read) {
    const std::string bytes = StoredForms("a { b { c { d 1 } } } e 2").binary();
    LoadOptions options;
    options.limits.nesting_depth = 2;
    const RecoverResult result = recover_bytes(bytes, options);
    EXPECT_EQ(tree_of(result.loaded), " a { b { } } e 2");
    ASSERT_EQ(result.lost.size(), 1u);
    EXPECT_EQ(result.lost[0].what, "groups nested too deeply in 'a/b/c'");
}

TEST(document_recover, a_document_with_losses_does_not_replace_its_file_unasked) {
    const ScratchFolder folder;
    const std::string bytes = StoredForms("a 1 b 2").binary();
    const std::string path = folder.write("a.bin", bytes.substr(0, bytes.size() - 3));
    RecoverResult result = bk_parser::recover(path);
    EXPECT_FALSE(bk_parser::save(result.loaded.document, path).ok());
}

TEST(document_recover, hostile_sizes_cost_no_more_than_the_file_is_long) {
    // Nested groups with sizes that lead everywhere, followed by a long row of entries with which each of
    // them could end.
    std::string bytes = "UDFS" + std::string(8, '\x7F');
    for (int i = 0; i < 20'000; ++i) {
        bytes += std::string("g\0", 2) + std::string(8, '\x7F') + std::string(2, '\0') +
                 std::string(7, '\x01') + std::string(1, '\0');
    }
    for (int i = 0; i < 100'000; ++i) {
        bytes += std::string("e\0\1\0\0\0\0\0\0\0\0", 11);
    }
    const RecoverResult result = recover_bytes(bytes + "?");
    EXPECT_FALSE(result.is_whole());
}

TEST(document_recover, a_cancelled_recovery_gives_nothing) {
    LoadOptions options;
    options.progress = [](double) { return false; };
    const RecoverResult result = recover_bytes(golden::bytes(binary_file), options);
    EXPECT_TRUE(result.loaded.cancelled);
    EXPECT_FALSE(result.is_whole());
    EXPECT_EQ(tree_of(result.loaded), "");
}
