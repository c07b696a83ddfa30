#include "tests/support/enciphered_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

using cipher_reference::enciphered_stating;
using Messages = std::vector<std::string>;

/// A folder with one file, which is read into an object that has an entry "old".
class Refused : public testing::Test {
protected:
    Refused() : file(CoreString{}) { file.get_root().add_entry("old", 0, 0)->add_int(0); }

    /// The messages without the name of the file. Expects that the read fails and changes nothing.
    Messages faults_of(std::string_view bytes, std::string_view key = "key") {
        folder.write("main.bkd", bytes);
        const Reading reading = folder.read_into(file, "main.bkd", key);
        EXPECT_FALSE(reading.result);
        EXPECT_EQ(reading.version, 0.0);
        EXPECT_EQ(reading.tree, " old 0");
        EXPECT_FALSE(file.is_encrypted());
        return reading.messages;
    }

    const EncipheredFolder folder;
    ParserFile file;
};

const Messages is_unreadable = {unreadable("main.bkd")};
const Messages is_incompatible = {incompatible("main.bkd")};

/// Two keys whose first outputs differ by less than `limit`, so that a length under one key is a small length
/// under the other.
std::pair<std::string, std::string> keys_that_differ_by_less_than(std::uint32_t limit) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> outputs;
    for (std::uint32_t seed = 0; seed < 6000; ++seed) {
        outputs.emplace_back(static_cast<std::uint32_t>(std::mt19937(seed)()), seed);
    }
    std::sort(outputs.begin(), outputs.end());
    for (std::size_t i = 1; i < outputs.size(); ++i) {
        if (outputs[i].first - outputs[i - 1].first < limit) {
            return {cipher_reference::key_of_seed(outputs[i].second),
                    cipher_reference::key_of_seed(outputs[i - 1].second)};
        }
    }
    return {};
}

} // namespace

using file_encrypted_fault = Refused;

TEST_F(file_encrypted_fault, a_length_not_below_the_size_of_the_file_is_unreadable) {
    // The file has 4 + 8 + 8 bytes.
    for (const core_uint64 length : {20u, 21u, 1000u}) {
        EXPECT_EQ(faults_of("KWBF" + enciphered_stating(length, "a 1 b 2 ", "key")), is_unreadable) << length;
    }
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(0xFFFFFFFF, "a 1 b 2 ", "key")), is_unreadable);
}

TEST_F(file_encrypted_fault, a_length_below_it_that_does_not_fit_is_incompatible) {
    for (core_uint64 length = 9; length < 20; ++length) {
        EXPECT_EQ(faults_of("KWBF" + enciphered_stating(length, "a 1 b 2 ", "key")), is_incompatible)
            << length;
    }
}

TEST_F(file_encrypted_fault, a_length_with_a_high_half_is_peeked_by_its_low_half_and_incompatible) {
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(0x100000008, "a 1 b 2 ", "key")), is_incompatible);
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(0x8000000000000000, "a 1 b 2 ", "key")), is_incompatible);
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(0x100000020, "a 1 b 2 ", "key")), is_unreadable);
}

TEST_F(file_encrypted_fault, a_payload_that_is_no_multiple_of_four_is_incompatible) {
    const std::string block = enciphered_stating(4, "a 1 b 2 c 3 ", "key");
    for (std::size_t size = 13; size < block.size(); ++size) {
        if (size % 4 != 0) {
            EXPECT_EQ(faults_of("KWBF" + block.substr(0, size)), is_incompatible) << size;
        }
    }
}

TEST_F(file_encrypted_fault, a_key_of_another_sum_is_unreadable) {
    const std::string bytes = cipher_reference::enciphered_file("a 1\n", "key");
    for (const char* key : {"", "kez", "KEY", "another"}) {
        EXPECT_EQ(faults_of(bytes, key), is_unreadable) << key;
    }
}

TEST_F(file_encrypted_fault, a_wrong_key_under_which_the_length_is_small_is_incompatible) {
    const auto [key, wrong_key] = keys_that_differ_by_less_than(2000);
    ASSERT_NE(key, wrong_key);
    const std::string text(2500, ' ');
    const std::string bytes = cipher_reference::enciphered_file(text, key);
    // The length under the wrong key is larger, by less than 2000.
    ASSERT_GE(cipher_reference::peeked_length(std::string_view(bytes).substr(4), wrong_key), text.size());
    EXPECT_EQ(faults_of(bytes + std::string(4000, ' '), wrong_key), is_incompatible);
}

TEST_F(file_encrypted_fault, every_cut_of_a_file_is_refused_by_the_length_that_is_left) {
    const std::string whole = cipher_reference::enciphered_file("a 1 b 2 c 3 d 4 e 5\n", "key");
    for (std::size_t size = 5; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const std::uint32_t length = cipher_reference::peeked_length(std::string_view(cut).substr(4), "key");
        EXPECT_EQ(faults_of(cut), length < size ? is_incompatible : is_unreadable) << size;
    }
}

TEST_F(file_encrypted_fault, a_file_that_ends_inside_its_length_is_peeked_with_zeros) {
    // The first output of the key has a high byte of zero, so a missing byte that counts as zero gives the
    // stated length.
    std::uint32_t seed = 0;
    while (std::mt19937(seed)() >= 0xFFFF00) {
        ++seed;
    }
    const std::string key = cipher_reference::key_of_seed(seed);
    for (const core_uint64 length : {0u, 3u, 6u}) {
        EXPECT_EQ(faults_of("KWBF" + enciphered_stating(length, "", key).substr(0, 3), key), is_incompatible);
    }
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(7, "", key).substr(0, 3), key), is_unreadable);
    EXPECT_EQ(faults_of("KWBF" + enciphered_stating(7, "", key).substr(0, 4), key), is_incompatible);
}

TEST_F(file_encrypted_fault, a_payload_of_a_length_field_alone_is_an_empty_document) {
    folder.write("main.bkd", "KWBF" + enciphered_stating(0, "", "key"));
    EXPECT_TRUE(folder.read_into(file, "main.bkd", "key").result);
    EXPECT_TRUE(file.is_encrypted());
    EXPECT_EQ(written(file.get_root()), "root { old 0 }");
}

TEST_F(file_encrypted_fault, the_name_in_the_message_is_the_one_given) {
    folder.write_enciphered("main.bkd", "a 1\n", "key");
    const std::string path = folder.path("main.bkd");
    EXPECT_EQ(folder.read_into(file, path, "another").messages, Messages{unreadable(path)});
}

TEST_F(file_encrypted_fault, faults_are_not_composed_below_verbosity_2) {
    folder.write_enciphered("main.bkd", "a 1\n", "key");
    RecordingLog errors_only(1);
    EXPECT_FALSE(file.read(folder.core_path("main.bkd"), "another", nullptr));
    EXPECT_TRUE(errors_only.is_empty());
}

TEST_F(file_encrypted_fault, a_read_after_a_wrong_key_succeeds_with_the_right_one) {
    EXPECT_EQ(faults_of(cipher_reference::enciphered_file("a 1\n", "key"), "another"), is_unreadable);
    const Reading reading = folder.read_into(file, "main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, " old 0 a 1");
}
